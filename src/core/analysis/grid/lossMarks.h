// Which nodes of the tree didn't earn back their cost in the period shown: those that make a red
// row in the grid of the node above them.
#pragma once

#include "core/base/dateValue.h"
#include "core/controls/tree.h"
#include "core/database/projectRecords.h"

#include <optional>

namespace veltrona {

class LossMarks {
public:
    /// Marks the nodes of a tree that buildNavigationTree has made, or none if `shown` is false.
    /// Asks for the records, all in one walk, only if period, records or tree are others than at
    /// the last call. Throws Failure.
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
