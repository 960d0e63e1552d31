// The texts of the navigation tree's nodes, made from a node's place and the names above it.
#pragma once

#include "core/analysis/records/nodePath.h"
#include "core/controls/tree.h"

#include <QString>

#include <array>
#include <string_view>

namespace veltrona {

/// Key and Tag of the root, of campaigns, ad groups, their two branches (the first for search, the
/// second for content), keywords and keyword types: by the names that they and their parents were
/// added by, whatever texts were set.
extern const NodeTexts navigationTexts;

/// The name as the node's records have it; a branch has their AdwordsTyp. The root has none.
QString storedName(const TreeNode &node);
NodePath pathOf(const TreeNode &node);
/// The Key without its level prefix: "Campain: 'shoes' > Adgroup: 'boots'".
QString captionOf(const NodePath &path);

/// The two branches of an ad group.
struct Branch {
    std::string_view name;        // in the tree
    QLatin1StringView adwordsTyp; // of its records
};
inline constexpr std::array<Branch, 2> branches = {
    {{"Search keywords", QLatin1StringView("Search Only")},
     {"Content", QLatin1StringView("Content Only")}}};

} // namespace veltrona
