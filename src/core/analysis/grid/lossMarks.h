// Which nodes of the tree didn't earn back their cost in the period shown: those that make a red
// row in the grid of the node above them.
#pragma once

#include "core/analysis/records/cellText.h"
#include "core/base/dateValue.h"
#include "core/controls/tree.h"
#include "core/database/projectRecords.h"

#include <functional>
#include <optional>
#include <unordered_map>

namespace veltrona {

/// Cost and conversion value in currency units, added up as in cells.
struct LossSums {
    double cost = 0;
    double conversionValue = 0;
    bool hasRecords = false;

    void add(double moreCost, double moreValue) {
        addAsCell(cost, moreCost);
        addAsCell(conversionValue, moreValue);
        hasRecords = true;
    }
    bool isLoss() const;
};

/// The names are as stored, by NameColumn, and valid during the visit.
using LeafVisitor = std::function<void(const LeafDictionary::Names &, const LossSums &)>;
/// Visits each leaf of the account that has records in the period, in no order. Times of day of the
/// range don't count. Throws Failure.
void visitLeafSums(ProjectRecords &records, const DateRange &range, const LeafVisitor &visitor);

/// By node; a node without records in the period has none.
using NodeSums = std::unordered_map<TreeNode *, LossSums>;
/// Of the nodes of a tree that buildNavigationTree has made. Throws Failure.
NodeSums sumsOfNodes(ProjectRecords &records, const DateRange &range, const Nodes &nodes);

class LossMarks {
public:
    /// Marks the nodes of a tree that buildNavigationTree has made, or none if `shown` is false.
    /// Reads the records, all in one walk, only if period, records or tree have changed since the
    /// last call. Throws Failure.
    void update(ProjectRecords &records, const DateRange &range, bool shown, Tree &tree);
    /// The tree has been built anew.
    void forget() { m_marked.reset(); }

private:
    struct Marked {
        DateRange range;
        ProjectRecords::Version version;
        friend bool operator==(const Marked &, const Marked &) = default;
    };
    std::optional<Marked> m_marked;
};

} // namespace veltrona
