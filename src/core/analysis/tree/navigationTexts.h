// The texts of the navigation tree's nodes, made from a node's place and the names above it.
#pragma once

#include "core/analysis/records/nodePath.h"
#include "core/controls/tree.h"

#include <QString>

#include <array>

namespace veltrona {

/// Key and Tag of the root, of campaigns, ad groups, their two branches (the first for search, the
/// second for content), keywords and keyword types. Children go by the names of the nodes above
/// them, whatever texts were set there.
const NodeTexts &navigationTexts();

/// The path of a node by its place and the names it and its parents were added by.
NodePath pathOf(const TreeNode &node);
/// The Key without its level prefix: "Campain: 'shoes' > Adgroup: 'boots'".
QString captionOf(const NodePath &path);

/// The two branches of an ad group.
struct Branch {
    QString name;       // in the tree
    QString adwordsTyp; // of its records
};
const std::array<Branch, 2> &branches();

} // namespace veltrona
