// The texts of the navigation tree's nodes, worked out of a node's place and the names above it.
#pragma once

#include "core/controls/tree.h"

namespace veltrona {

/// Key and Tag of the root, of campaigns, ad groups, their two branches (the first for search, the
/// second for content), keywords and keyword types. Children go by the names of the nodes above
/// them, whatever texts were set there.
const NodeTexts &navigationTexts();

/// The records' `AdwordsTyp` that a branch stands for.
QString branchType(const TreeNode &branch);

} // namespace veltrona
