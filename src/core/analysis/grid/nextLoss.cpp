#include "core/analysis/grid/nextLoss.h"

#include "core/analysis/grid/lossMarks.h"

#include <algorithm>
#include <utility>

namespace veltrona {

class LossOrder::Walk {
public:
    Walk(const NodeSums &sums, LossOrder &order) : m_sums(sums), m_order(order) {}

    /// Whether the node or one below it loses money.
    bool add(TreeNode *node) {
        const std::size_t place = m_order.m_nodes.size();
        m_order.m_nodes.push_back(node);
        std::vector<std::pair<double, TreeNode *>> children;
        for (TreeNode *child : node->Children)
            children.emplace_back(-lossOf(child), child);
        std::ranges::stable_sort(children, {}, &std::pair<double, TreeNode *>::first);
        bool hasLoss = false;
        for (const auto &[loss, child] : children)
            hasLoss = add(child) || hasLoss;
        const auto found = m_sums.find(node);
        if (hasLoss || found == m_sums.end() || !found->second.isLoss())
            return hasLoss;
        m_order.m_losses.push_back(place);
        return true;
    }

private:
    /// Below zero for a gain.
    double lossOf(TreeNode *node) const {
        const auto found = m_sums.find(node);
        return found == m_sums.end() ? 0 : found->second.cost - found->second.conversionValue;
    }

    const NodeSums &m_sums;
    LossOrder &m_order;
};

LossOrder::LossOrder(ProjectRecords &records, const DateRange &range, const Nodes &nodes) {
    if (nodes.Count() > 0)
        Walk(sumsOfNodes(records, range, nodes), *this).add(nodes.Item(1));
}

TreeNode *LossOrder::after(const TreeNode *node) const {
    if (m_losses.empty())
        return nullptr;
    const auto place = static_cast<std::size_t>(std::ranges::find(m_nodes, node) - m_nodes.begin());
    const auto next = std::ranges::upper_bound(m_losses, place);
    return m_nodes[next == m_losses.end() ? m_losses.front() : *next];
}

} // namespace veltrona
