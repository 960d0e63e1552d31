// Builds the navigation tree from the day records: campaigns, ad groups, their search and content
// branches, keywords and keyword types.
#pragma once

#include "core/controls/tree.h"
#include "core/database/projectRecords.h"

#include <cstddef>

namespace veltrona {

inline constexpr std::size_t maxTreeBytes = std::size_t(1) << 30;

/// Replaces the content of `tree`; selects nothing. All names are read first, so that a Failure
/// leaves the tree unchanged, such as that for a tree of more than `maxBytes`.
void buildNavigationTree(const sqlite::Connection &connection, const QString &projectTitle,
                         Tree &tree, std::size_t maxBytes = maxTreeBytes);
/// The same, from the records in memory if there are any.
void buildNavigationTree(ProjectRecords &records, const QString &projectTitle, Tree &tree);

/// The child of `node` that a row of its statistics stands for; null if it has none.
TreeNode *nodeOfRow(const TreeNode &node, const QString &row);

} // namespace veltrona
