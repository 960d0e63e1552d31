// The order in which a user is led from loss to loss in the tree.
#pragma once

#include "core/base/dateValue.h"
#include "core/controls/tree.h"
#include "core/database/projectRecords.h"

#include <cstddef>
#include <vector>

namespace veltrona {

/// Valid as long as the tree, the period and the records stay the same.
class LossOrder {
public:
    /// Reads the records of the whole account. Throws Failure.
    LossOrder(ProjectRecords &records, const DateRange &range, const Nodes &nodes);

    /// The next node after `node` that loses money while none below it does; within a branch the
    /// largest loss comes first. After the last one the first, null if there is none.
    TreeNode *after(const TreeNode *node) const;

private:
    class Walk;
    std::vector<TreeNode *> m_nodes;   // all of them, a node before those below it
    std::vector<std::size_t> m_losses; // their places in m_nodes
};

} // namespace veltrona
