#include "core/analysis/tree/navigationTexts.h"

#include "core/analysis/records/nodeTag.h"

#include <array>

namespace veltrona {

namespace {

enum Level : std::size_t { Root, Campaign, AdGroup, Branch, Keyword, KeywordType, LevelCount };

struct LevelTexts {
    QStringView path;      // stands in front of the name in the Key
    QStringView condition; // stands in front of the name in the Tag; empty where the name has none
    QStringView orderBy;
};

// "Campain" is spelled like that in every Key.
constexpr std::array<LevelTexts, LevelCount> levels = {{
    {u"Campaign Summary", u"", u"campaign"},
    {u"Campain: '", u" AND campaign='", u"adGroup"},
    {u" > Adgroup: '", u" AND adGroup='", u"adWordsTyp"},
    {u" > ", u" AND adWordsTyp='", u"Keyword"},
    {u" > Keyword: '", u" AND Keyword='", u"kwType"},
    {u" > KeywordType: '", u"", u"kwType"},
}};

/// The node and those above it, the root first.
struct Way {
    explicit Way(const TreeNode &last) {
        for (const TreeNode *node = &last; node; node = node->Parent)
            ++length;
        std::size_t level = length;
        for (const TreeNode *node = &last; node; node = node->Parent)
            nodes.at(--level) = node;
    }
    std::array<const TreeNode *, LevelCount> nodes{};
    std::size_t length = 0;
};

class NavigationTexts : public NodeTexts {
public:
    QString key(const TreeNode &node) const override {
        const Way way(node);
        QString key = QString::number(way.length - 1) + u'-';
        if (way.length == 1)
            return key.append(levels[Root].path);
        for (std::size_t level = Campaign; level < way.length; ++level) {
            key.append(levels[level].path).append(way.nodes[level]->name());
            if (level != Branch)
                key += u'\'';
        }
        return key;
    }

    QString tag(const TreeNode &node) const override {
        const Way way(node);
        QString tag;
        for (std::size_t level = Campaign; level < way.length; ++level) {
            if (levels[level].condition.isEmpty())
                continue;
            tag.append(levels[level].condition)
                .append(level == Branch ? branchType(*way.nodes[level])
                                        : doubledApostrophes(way.nodes[level]->name()))
                .append(u'\'');
        }
        return tag.append(u" ORDER BY ").append(levels[way.length - 1].orderBy);
    }
};

} // namespace

const NodeTexts &navigationTexts() {
    static const NavigationTexts texts;
    return texts;
}

QString branchType(const TreeNode &branch) {
    return branch.IndexInParent == 0 ? QStringLiteral("Search Only")
                                     : QStringLiteral("Content Only");
}

} // namespace veltrona
