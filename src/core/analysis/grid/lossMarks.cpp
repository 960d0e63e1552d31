#include "core/analysis/grid/lossMarks.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/cellText.h"
#include "core/analysis/records/leafSums.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <QHash>

#include <unordered_map>

namespace veltrona {

namespace {

struct Sums {
    double conversionValue = 0;
    double cost = 0;
};

/// Adds the leaves up to the nodes above them.
class NodeSums {
public:
    explicit NodeSums(const Nodes &nodes) : m_root(nodes.Item(1)) {
        m_children.reserve(nodes.Count());
        for (int item = 2; item <= nodes.Count(); ++item) {
            TreeNode *node = nodes.Item(item);
            m_children.insert({node->Parent, node->name()}, node);
        }
    }

    void add(const LeafSums &leaf) {
        addTo(m_root, leaf);
        TreeNode *adGroup =
            below(below(m_root, leaf, NameColumn::Campaign), leaf, NameColumn::Adgroup);
        const auto type = leaf.names[static_cast<std::size_t>(NameColumn::AdwordsTyp)];
        TreeNode *branch = adGroup ? nodeOfRow(*adGroup, textOf(type)) : nullptr;
        if (!branch)
            return;
        addTo(branch, leaf);
        below(below(branch, leaf, NameColumn::KeyWord), leaf, NameColumn::KwType);
    }

    void mark() const {
        for (const auto &[node, sums] : m_sums)
            node->IsLoss = isLoss(sums.conversionValue, sums.cost);
    }

private:
    /// Adds the leaf to the child that has its name, if there is one.
    TreeNode *below(TreeNode *parent, const LeafSums &leaf, NameColumn column) {
        if (!parent)
            return nullptr;
        const QString name = textOf(withoutBlanks(leaf.names[static_cast<std::size_t>(column)]));
        TreeNode *node = m_children.value({parent, name});
        if (node)
            addTo(node, leaf);
        return node;
    }

    void addTo(TreeNode *node, const LeafSums &leaf) {
        Sums &sums = m_sums[node];
        addAsCell(sums.conversionValue, leaf.conversionValue);
        addAsCell(sums.cost, leaf.cost);
    }

    TreeNode *m_root;
    QHash<std::pair<const TreeNode *, QString>, TreeNode *> m_children;
    std::unordered_map<TreeNode *, Sums> m_sums;
};

void clearMarks(const Nodes &nodes) {
    for (int item = 1; item <= nodes.Count(); ++item)
        nodes.Item(item)->IsLoss = false;
}

} // namespace

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
    NodeSums sums(nodes);
    if (areLeafSumsCheap(records, range))
        visitLeafSums(records, range, [&](const LeafSums &leaf) { sums.add(leaf); });
    clearMarks(nodes);
    sums.mark();
    m_marked = now;
    tree.marksChanged();
}

} // namespace veltrona
