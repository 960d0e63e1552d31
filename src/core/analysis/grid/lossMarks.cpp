#include "core/analysis/grid/lossMarks.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/recordWalk.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <QHash>

#include <algorithm>
#include <utility>
#include <vector>

namespace veltrona {

namespace {

enum Field { Cost, ConvValue };
constexpr std::array figures = {Figure::Cost, Figure::ConvValue};

RecordQuery queryOf(const DateRange &range, LeafDictionary &leaves) {
    return {NodePath(),
            range,
            {NameColumn::Campaign, NameColumn::Adgroup, NameColumn::AdwordsTyp, NameColumn::KeyWord,
             NameColumn::KwType},
            [&leaves](std::span<const std::string_view> names) {
                LeafDictionary::Names leaf;
                std::ranges::copy(names, leaf.begin());
                return static_cast<int>(leaves.add(leaf));
            },
            figures};
}

/// Adds the leaves up to the nodes above them.
class LeafAdder {
public:
    explicit LeafAdder(const Nodes &nodes) : m_root(nodes.Item(1)) {
        m_children.reserve(nodes.Count());
        for (int item = 2; item <= nodes.Count(); ++item) {
            TreeNode *node = nodes.Item(item);
            m_children.insert({node->Parent, storedName(*node)}, node);
        }
    }

    void add(const LeafDictionary::Names &leaf, const LossSums &sums) {
        TreeNode *node = m_root;
        for (std::size_t column = 0; node; ++column) {
            m_sums[node].add(sums.cost, sums.conversionValue);
            if (column == leaf.size())
                return;
            // The records of a branch have its AdwordsTyp to the letter.
            const bool isBranch = static_cast<NameColumn>(column) == NameColumn::AdwordsTyp;
            node = m_children.value(
                {node, textOf(isBranch ? leaf[column] : withoutBlanks(leaf[column]))});
        }
    }

    NodeSums take() { return std::move(m_sums); }

private:
    TreeNode *m_root;
    QHash<std::pair<const TreeNode *, QString>, TreeNode *> m_children;
    NodeSums m_sums;
};

void clearMarks(const Nodes &nodes) {
    for (int item = 1; item <= nodes.Count(); ++item)
        nodes.Item(item)->IsLoss = false;
}

void mark(const NodeSums &sums) {
    for (const auto &[node, each] : sums)
        node->IsLoss = each.isLoss();
}

/// False where the records are neither in memory nor few: one plain scan is faster then.
bool areLeafSumsCheap(ProjectRecords &records, const DateRange &range) {
    LeafDictionary leaves;
    return isCheap(records, queryOf(range, leaves));
}

} // namespace

void visitLeafSums(ProjectRecords &records, const DateRange &range, const LeafVisitor &visitor) {
    LeafDictionary leaves;
    std::vector<LossSums> sums;
    visitRecords(records, queryOf(range, leaves), [&](const RecordBatch &batch, auto) {
        sums.resize(leaves.size());
        forEachRecord(batch, [&sums](int leaf, const auto &record) {
            sums[static_cast<std::size_t>(leaf)].add(numberOf(record[Cost]) / millionths,
                                                     numberOf(record[ConvValue]));
        });
    });
    for (std::size_t leaf = 0; leaf < sums.size(); ++leaf) {
        if (sums[leaf].hasRecords)
            visitor(leaves.namesOf(leaf), sums[leaf]);
    }
}

NodeSums sumsOfNodes(ProjectRecords &records, const DateRange &range, const Nodes &nodes) {
    LeafAdder adder(nodes);
    visitLeafSums(records, range, [&adder](const auto &...leaf) { adder.add(leaf...); });
    return adder.take();
}

bool LossSums::isLoss() const {
    return veltrona::isLoss(conversionValue, cost);
}

void LossMarks::update(ProjectRecords &records, const DateRange &range, bool shown, Tree &tree) {
    const Nodes &nodes = tree.Nodes();
    if (!shown || nodes.Count() == 0) {
        if (m_marked) {
            clearMarks(nodes);
            tree.marksChanged();
        }
        m_marked.reset();
        return;
    }
    const Marked now{range, records.version()};
    if (m_marked == now)
        return;
    const NodeSums sums =
        areLeafSumsCheap(records, range) ? sumsOfNodes(records, range, nodes) : NodeSums();
    clearMarks(nodes);
    mark(sums);
    m_marked = now;
    tree.marksChanged();
}

} // namespace veltrona
