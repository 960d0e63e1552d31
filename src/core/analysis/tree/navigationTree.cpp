#include "core/analysis/tree/navigationTree.h"

#include "core/analysis/records/readingOrder.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <QScopeGuard>
#include <QSet>

#include <algorithm>
#include <array>
#include <numeric>
#include <span>
#include <string>

namespace veltrona {

namespace {

constexpr int folderImage = 1;
constexpr std::array columns = {NameColumn::Campaign, NameColumn::Adgroup, NameColumn::KeyWord,
                                NameColumn::KwType};
constexpr std::size_t levels = columns.size();

using Row = std::array<std::string_view, levels>;

/// A name, and where the names below it are in the list of the next level.
struct Name {
    QString text;
    std::size_t firstBelow;
    std::size_t endBelow;
};
/// A list of names for each level; the names below one name are next to each other.
using Names = std::array<std::vector<Name>, levels>;

/// Makes the lists of names from rows in the order of their bytes.
class NameReader {
public:
    NameReader() { m_pool.reserve(100'000); } // growing costs more than the memory

    /// False if the row repeats the one before.
    bool add(const Row &row) {
        std::size_t first = 0;
        while (!names[0].empty() && first < levels && m_last[first].utf8 == row[first])
            ++first;
        for (std::size_t level = first; level < levels; ++level) {
            const std::size_t below = level + 1 < levels ? names[level + 1].size() : 0;
            names[level].push_back({text(m_last[level], row[level]), below, below});
            if (level > 0)
                names[level - 1].back().endBelow = names[level].size();
        }
        return first < levels;
    }
    std::string_view last(std::size_t level) const { return m_last[level].utf8; }

    Names names;

private:
    struct Last {
        std::string utf8;
        QString text;
    };
    /// Equal names share their memory.
    const QString &text(Last &last, std::string_view utf8) {
        if (last.text.isNull() || last.utf8 != utf8)
            last = {std::string(utf8), *m_pool.insert(textOf(withoutBlanks(utf8)))};
        return last.text;
    }

    std::array<Last, levels> m_last;
    QSet<QString> m_pool;
};

/// By the index of names. After many repeats a seek skips the rest of a row: x'' sorts after any
/// text, so it is beyond the last date.
Names namesOf(const sqlite::Connection &connection) {
    static constexpr int manyRepeats = 20; // a seek takes about as long
    const std::string select = "SELECT Campaign, Adgroup, KeyWord, kwType FROM tblGoogleDays ";
    const std::string order = "ORDER BY Campaign, Adgroup, KeyWord, kwType";
    sqlite::Statement all = connection.prepare(select + order);
    sqlite::Statement after = connection.prepare(
        select + "WHERE (Campaign, Adgroup, KeyWord, kwType, GoogleDate) > (?, ?, ?, ?, x'') " +
        order);
    NameReader reader;
    int repeats = 0;
    for (sqlite::Statement *rows = &all; rows->step();) {
        Row row;
        bool areTexts = true;
        for (int i = 0; std::string_view & name : row) {
            areTexts = areTexts && rows->type(i) == sqlite::ValueType::Text;
            name = rows->utf8(i++);
        }
        repeats = reader.add(row) ? 0 : repeats + 1;
        // Blobs, in a foreign project, sort after texts: a seek by their bytes would go back.
        if (repeats != manyRepeats || !areTexts)
            continue;
        after.reset();
        for (std::size_t i = 0; i < levels; ++i)
            after.bind(static_cast<int>(i) + 1, reader.last(i));
        rows = &after;
    }
    return std::move(reader.names);
}

/// By the leaves in memory, sorted as SQLite sorts them.
Names namesOf(const LeafDictionary &leaves) {
    using Code = TextDictionary::Code;
    const TextDictionary &texts = leaves.names();
    std::vector<Code> codes(texts.size()); // by rank
    std::iota(codes.begin(), codes.end(), Code(0));
    std::ranges::sort(codes, {}, [&](Code code) -> std::string_view { return texts.text(code); });
    std::vector<Code> ranks(codes.size()); // by code
    for (std::size_t rank = 0; rank < codes.size(); ++rank)
        ranks[codes[rank]] = static_cast<Code>(rank);

    std::vector<std::array<Code, levels>> rows(leaves.size()); // of ranks
    for (std::size_t leaf = 0; leaf < rows.size(); ++leaf)
        std::ranges::transform(columns, rows[leaf].begin(), [&](NameColumn column) {
            return ranks[leaves.nameCode(leaf, column)];
        });
    std::ranges::sort(rows);
    NameReader reader;
    for (const auto &row : rows)
        reader.add({texts.text(codes[row[0]]), texts.text(codes[row[1]]), texts.text(codes[row[2]]),
                    texts.text(codes[row[3]])});
    return std::move(reader.names);
}

void sortForReader(std::span<Name> names) {
    // The order of bytes is mostly the reader's already.
    const auto outOfOrder = [](const Name &a, const Name &b) {
        return !inReadingOrder(a.text, b.text);
    };
    if (std::adjacent_find(names.begin(), names.end(), outOfOrder) == names.end())
        return;
    std::vector<std::pair<ReadingKey, Name>> sorted;
    sorted.reserve(names.size());
    for (Name &name : names)
        sorted.emplace_back(ReadingKey(name.text), std::move(name));
    std::sort(sorted.begin(), sorted.end(),
              [](const auto &a, const auto &b) { return a.first < b.first; });
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = std::move(sorted[i].second);
}

TreeNode *add(Tree &tree, TreeNode *parent, QString name) {
    return tree.Nodes().addByName(parent, navigationTexts, std::move(name), folderImage);
}

void addNames(Tree &tree, TreeNode *parent, Names &names, std::size_t level, std::size_t begin,
              std::size_t end) {
    const auto siblings = std::span(names[level]).subspan(begin, end - begin);
    sortForReader(siblings);
    parent->Children.reserve(static_cast<qsizetype>(siblings.size()));
    for (Name &name : siblings) {
        TreeNode *node = add(tree, parent, std::move(name.text));
        if (level + 1 == levels)
            continue;
        TreeNode *above = node;
        if (columns[level] == NameColumn::Adgroup) {
            // All keywords are below the search branch, also those of content records alone.
            above = add(tree, node, branches()[0].name);
            add(tree, node, branches()[1].name);
        }
        addNames(tree, above, names, level + 1, name.firstBelow, name.endBelow);
    }
}

void rebuild(Tree &tree, const QString &projectTitle, Names names) {
    tree.beginRebuild();
    const auto end = qScopeGuard([&tree] { tree.endRebuild(); });
    tree.Nodes().Clear();
    TreeNode *root = add(tree, nullptr, projectTitle);
    root->Expanded = true;
    addNames(tree, root, names, 0, 0, names[0].size());
}

} // namespace

void buildNavigationTree(const sqlite::Connection &connection, const QString &projectTitle,
                         Tree &tree) {
    rebuild(tree, projectTitle, namesOf(connection));
}

void buildNavigationTree(ProjectRecords &records, const QString &projectTitle, Tree &tree) {
    if (const RecordColumns *held = records.held())
        rebuild(tree, projectTitle, namesOf(held->leaves()));
    else
        buildNavigationTree(records.connection(), projectTitle, tree);
}

TreeNode *nodeOfRow(const TreeNode &node, const QString &row) {
    const auto found = std::ranges::find_if(
        node.Children, [&](const TreeNode *child) { return storedName(*child) == row; });
    return found == node.Children.end() ? nullptr : *found;
}

} // namespace veltrona
