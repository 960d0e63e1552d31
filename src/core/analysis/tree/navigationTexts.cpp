#include "core/analysis/tree/navigationTexts.h"

#include "core/base/storedText.h"

#include <algorithm>
#include <array>

namespace veltrona {

namespace {

struct LevelTexts {
    QStringView caption;   // before the name in the Key
    QStringView condition; // before the name in the Tag; empty where the name has none
    QStringView orderBy;
};

/// By NodeLevel. "Campain" is spelled like that in every Key.
constexpr std::array<LevelTexts, 6> levels = {{
    {u"Campaign Summary", u"", u"campaign"},
    {u"Campain: '", u" AND campaign='", u"adGroup"},
    {u" > Adgroup: '", u" AND adGroup='", u"adWordsTyp"},
    {u" > ", u" AND adWordsTyp='", u"Keyword"},
    {u" > Keyword: '", u" AND Keyword='", u"kwType"},
    {u" > KeywordType: '", u"", u"kwType"},
}};

QString branchName(const QString &adwordsTyp) {
    const auto found = std::ranges::find(branches, adwordsTyp, &Branch::adwordsTyp);
    return found == branches.end() ? adwordsTyp : textOf(found->name);
}

QString keyOf(const TreeNode &node) {
    const NodePath path = pathOf(node);
    return QString::number(path.names.size()) + u'-' + captionOf(path);
}

QString tagOf(const TreeNode &node) {
    const NodePath path = pathOf(node);
    QString tag;
    for (std::size_t level = 1; QString name : path.names) {
        const QStringView condition = levels[level++].condition;
        if (!condition.isEmpty())
            tag.append(condition).append(name.replace(u'\'', QLatin1String("''"))).append(u'\'');
    }
    return tag.append(u" ORDER BY ").append(levels[static_cast<std::size_t>(path.level())].orderBy);
}

} // namespace

const NodeTexts navigationTexts = {keyOf, tagOf};

QString storedName(const TreeNode &node) {
    int level = 0;
    for (const TreeNode *above = node.Parent; above; above = above->Parent)
        ++level;
    return level == static_cast<int>(NodeLevel::Branch)
               ? branches.at(static_cast<std::size_t>(node.IndexInParent)).adwordsTyp
               : node.name();
}

NodePath pathOf(const TreeNode &node) {
    NodePath path;
    for (const TreeNode *each = &node; each->Parent; each = each->Parent)
        path.names.prepend(storedName(*each));
    return path;
}

QString captionOf(const NodePath &path) {
    if (path.names.isEmpty())
        return levels.front().caption.toString();
    QString caption;
    for (qsizetype i = 0; i < path.names.size(); ++i) {
        const std::size_t level = static_cast<std::size_t>(i) + 1;
        caption.append(levels[level].caption);
        if (static_cast<NodeLevel>(level) == NodeLevel::Branch)
            caption.append(branchName(path.names[i]));
        else
            caption.append(path.names[i]).append(u'\'');
    }
    return caption;
}

} // namespace veltrona
