#include "core/analysis/navigationTree.h"

#include "core/analysis/nodeTag.h"
#include "core/analysis/readingOrder.h"
#include "core/base/blanks.h"
#include "core/base/storedText.h"

#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <string>

namespace veltrona {

namespace {

constexpr int folderImage = 1;
constexpr std::size_t levels = 4; // campaign, ad group, keyword, keyword type

/// A name and, one level down, the names below it.
struct Name {
    explicit Name(const QString &name) : text(name), key(name) {}
    QString text;
    ReadingKey key;
    std::vector<Name> below;
};

QString nameOf(std::string_view utf8) {
    return textOf(withoutBlanks(utf8));
}

using Columns = std::array<std::string, levels>;

/// Steps through the distinct rows of the index of names. Where a row goes on repeating, one seek
/// skips the rest of it: a blob stands behind every date.
class NameRows {
public:
    explicit NameRows(const sqlite::Connection &connection)
        : m_all(connection.prepare(select + order)),
          m_behind(connection.prepare(
              select +
              "WHERE (Campaign, Adgroup, KeyWord, kwType, GoogleDate) > (?, ?, ?, ?, x'') " +
              order)) {}

    /// The first level whose name differs from the row before; `levels` behind the last row.
    std::size_t next() {
        for (int repeats = 0; m_rows->step(); ++repeats) {
            const std::size_t level = m_isFirst ? 0 : firstDifference();
            m_isFirst = false;
            if (level < levels) {
                for (std::size_t i = level; i < levels; ++i)
                    m_row[i] = m_rows->utf8(static_cast<int>(i));
                return level;
            }
            if (repeats == manyRepeats)
                seekBehindRow();
        }
        return levels;
    }
    const Columns &row() const { return m_row; }

private:
    static constexpr int manyRepeats = 20; // a seek takes about as long
    static inline const std::string select =
        "SELECT Campaign, Adgroup, KeyWord, kwType FROM tblGoogleDays ";
    static inline const std::string order = "ORDER BY Campaign, Adgroup, KeyWord, kwType";

    std::size_t firstDifference() const {
        std::size_t level = 0;
        while (level < levels && m_rows->utf8(static_cast<int>(level)) == m_row[level])
            ++level;
        return level;
    }
    void seekBehindRow() {
        m_behind.reset();
        for (std::size_t i = 0; i < levels; ++i)
            m_behind.bind(static_cast<int>(i) + 1, std::string_view(m_row[i]));
        m_rows = &m_behind;
    }

    sqlite::Statement m_all;
    sqlite::Statement m_behind;
    sqlite::Statement *m_rows = &m_all;
    Columns m_row;
    bool m_isFirst = true;
};

std::vector<Name> readNames(const sqlite::Connection &connection) {
    NameRows rows(connection);
    std::vector<Name> campaigns;
    for (std::size_t first = rows.next(); first < levels; first = rows.next()) {
        std::vector<Name> *siblings = &campaigns;
        for (std::size_t level = 0; level < levels; ++level) {
            if (level >= first)
                siblings->emplace_back(nameOf(rows.row()[level]));
            siblings = &siblings->back().below;
        }
    }
    return campaigns;
}

void sortForReader(std::vector<Name> &names) {
    std::sort(names.begin(), names.end(),
              [](const Name &a, const Name &b) { return a.key < b.key; });
    for (Name &name : names)
        sortForReader(name.below);
}

TreeNode *addNode(Tree &tree, TreeNode *parent, const QString &key, const QString &text,
                  const QString &tag) {
    TreeNode *node = tree.Nodes().Add(parent, TreeRelationship::Child, key, text, folderImage);
    node->Tag = tag;
    return node;
}

void addKeywords(Tree &tree, TreeNode *branch, const QString &path, const QString &conditions,
                 const std::vector<Name> &keywords) {
    for (const Name &keyword : keywords) {
        const QString keywordPath = path + QStringLiteral(" > Keyword: '") + keyword.text + u'\'';
        const QString tag = conditions + QStringLiteral(" AND Keyword='") +
                            doubledApostrophes(keyword.text) + QStringLiteral("' ORDER BY kwType");
        TreeNode *node =
            addNode(tree, branch, QStringLiteral("4-") + keywordPath, keyword.text, tag);
        for (const Name &type : keyword.below)
            addNode(tree, node,
                    QStringLiteral("5-") + keywordPath + QStringLiteral(" > KeywordType: '") +
                        type.text + u'\'',
                    type.text, tag);
    }
}

void addAdGroup(Tree &tree, TreeNode *campaign, const QString &campaignPath,
                const QString &campaignCondition, const Name &adGroup) {
    const QString path = campaignPath + QStringLiteral(" > Adgroup: '") + adGroup.text + u'\'';
    const QString condition = campaignCondition + QStringLiteral(" AND adGroup='") +
                              doubledApostrophes(adGroup.text) + u'\'';
    TreeNode *node = addNode(tree, campaign, QStringLiteral("2-") + path, adGroup.text,
                             condition + QStringLiteral(" ORDER BY adWordsTyp"));

    const QString searchPath = path + QStringLiteral(" > Search keywords");
    const QString searchCondition = condition + QStringLiteral(" AND adWordsTyp='Search Only'");
    TreeNode *search =
        addNode(tree, node, QStringLiteral("3-") + searchPath, QStringLiteral("Search keywords"),
                searchCondition + QStringLiteral(" ORDER BY Keyword"));
    addNode(tree, node, QStringLiteral("3-") + path + QStringLiteral(" > Content"),
            QStringLiteral("Content"),
            condition + QStringLiteral(" AND adWordsTyp='Content Only' ORDER BY Keyword"));
    // All keywords stand under the search branch, those of content records alone too.
    addKeywords(tree, search, searchPath, searchCondition, adGroup.below);
}

void addCampaign(Tree &tree, TreeNode *root, const Name &campaign) {
    const QString path = QStringLiteral("Campain: '") + campaign.text + u'\'';
    const QString condition =
        QStringLiteral(" AND campaign='") + doubledApostrophes(campaign.text) + u'\'';
    TreeNode *node = addNode(tree, root, QStringLiteral("1-") + path, campaign.text,
                             condition + QStringLiteral(" ORDER BY adGroup"));
    for (const Name &adGroup : campaign.below)
        addAdGroup(tree, node, path, condition, adGroup);
}

} // namespace

void buildNavigationTree(const sqlite::Connection &connection, const QString &projectTitle,
                         Tree &tree) {
    std::vector<Name> campaigns = readNames(connection);
    sortForReader(campaigns);

    tree.beginRebuild();
    const auto end = qScopeGuard([&tree] { tree.endRebuild(); });
    tree.Nodes().Clear();
    TreeNode *root = addNode(tree, nullptr, QStringLiteral("0-Campaign Summary"), projectTitle,
                             QStringLiteral(" ORDER BY campaign"));
    for (const Name &campaign : campaigns)
        addCampaign(tree, root, campaign);
    root->Expanded = true;
}

} // namespace veltrona
