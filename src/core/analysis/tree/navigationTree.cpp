#include "core/analysis/tree/navigationTree.h"

#include "core/analysis/records/readingOrder.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/base/storedText.h"
#include "core/base/text.h"
#include "core/database/projectFile.h"

#include <QDir>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <deque>
#include <numeric>
#include <span>
#include <string>

namespace veltrona {

namespace {

constexpr int folderImage = 1;
constexpr std::string_view rootName; // it has a title instead
constexpr std::array columns = {NameColumn::Campaign, NameColumn::Adgroup, NameColumn::KeyWord,
                                NameColumn::KwType};
constexpr std::size_t levels = columns.size();

using Row = std::array<std::string_view, levels>;

/// A name, and where the names below it are in the list of the next level.
struct Name {
    TextDictionary::Code text;
    quint32 firstBelow;
    quint32 endBelow;
};

/// A list for each level; the names below one name are next to each other.
using LevelNames = std::array<std::deque<Name>, levels>;

struct Names {
    LevelNames levels;
    TextDictionary texts;
};

/// Makes the lists of names from rows in the order of their bytes.
class NameReader {
public:
    NameReader(const QString &path, std::size_t maxBytes) : m_path(path), m_maxBytes(maxBytes) {}

    /// False if the row repeats the one before. Throws Failure.
    bool add(const Row &row) {
        std::size_t first = 0;
        auto &names = m_names.levels;
        while (!names[0].empty() && first < levels && m_last[first].utf8 == row[first])
            ++first;
        for (std::size_t level = first; level < levels; ++level) {
            const quint32 below = level + 1 < levels ? count(level + 1) : 0;
            names[level].push_back({code(m_last[level], row[level]), below, below});
            m_nodeBytes +=
                (columns[level] == NameColumn::Adgroup ? 3 : 1) * bytesOfNode + sizeof(Name);
            if (level > 0)
                names[level - 1].back().endBelow = count(level);
        }
        if (m_nodeBytes + m_names.texts.bytes() > m_maxBytes)
            throw Failure(largeProject,
                          u"The file \"%1\" can't be opened: the tree of its names takes "
                          "more than 1 GiB of memory."_s.arg(QDir::toNativeSeparators(m_path)));
        return first < levels;
    }
    std::string_view last(std::size_t level) const { return m_last[level].utf8; }
    Names takeNames() { return std::move(m_names); }

private:
    struct Last {
        std::string utf8;
        TextDictionary::Code text = TextDictionary::none;
    };

    quint32 count(std::size_t level) const {
        return static_cast<quint32>(m_names.levels[level].size());
    }
    TextDictionary::Code code(Last &last, std::string_view utf8) {
        if (last.text == TextDictionary::none || last.utf8 != utf8) {
            last.utf8 = utf8;
            last.text = m_names.texts.add(withoutBlanks(utf8));
        }
        return last.text;
    }

    QString m_path;
    std::size_t m_maxBytes;
    std::size_t m_nodeBytes = 0;
    Names m_names;
    std::array<Last, levels> m_last;
};

/// By the index of names. After many repeats a seek skips the rest of a row: x'' sorts after any
/// text, so it is beyond the last date.
Names namesOf(const sqlite::Connection &connection, std::size_t maxBytes) {
    static constexpr int manyRepeats = 20; // a seek takes about as long
    const std::string select = "SELECT Campaign, Adgroup, KeyWord, kwType FROM tblGoogleDays ";
    const std::string order = "ORDER BY Campaign, Adgroup, KeyWord, kwType";
    sqlite::Statement all = connection.prepare(select + order);
    sqlite::Statement after = connection.prepare(
        select + "WHERE (Campaign, Adgroup, KeyWord, kwType, GoogleDate) > (?, ?, ?, ?, x'') " +
        order);
    NameReader reader(connection.path(), maxBytes);
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
    return reader.takeNames();
}

/// By the leaves in memory, sorted as SQLite sorts them.
Names namesOf(const LeafDictionary &leaves, const QString &path, std::size_t maxBytes) {
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
    NameReader reader(path, maxBytes);
    for (const auto &row : rows)
        reader.add({texts.text(codes[row[0]]), texts.text(codes[row[1]]), texts.text(codes[row[2]]),
                    texts.text(codes[row[3]])});
    return reader.takeNames();
}

void sortForReader(std::vector<Name> &names, const TextDictionary &texts) {
    // The order of bytes is mostly the reader's already.
    const auto outOfOrder = [&](const Name &a, const Name &b) {
        return !inReadingOrder(texts.text(a.text), texts.text(b.text));
    };
    if (std::adjacent_find(names.begin(), names.end(), outOfOrder) == names.end())
        return;
    std::vector<std::pair<ReadingKey, Name>> sorted;
    sorted.reserve(names.size());
    for (const Name &name : names)
        sorted.emplace_back(ReadingKey(textOf(texts.text(name.text))), name);
    std::sort(sorted.begin(), sorted.end(),
              [](const auto &a, const auto &b) { return a.first < b.first; });
    std::ranges::transform(sorted, names.begin(), [](const auto &each) { return each.second; });
}

TreeNode *add(Tree &tree, TreeNode *parent, const std::string_view &name) {
    return tree.Nodes().addByName(parent, navigationTexts, name, folderImage);
}

void addNames(Tree &tree, TreeNode *parent, const LevelNames &names, std::size_t level,
              quint32 begin, quint32 end) {
    std::vector<Name> siblings(names[level].begin() + begin, names[level].begin() + end);
    sortForReader(siblings, tree.Nodes().names());
    parent->Children.reserve(static_cast<qsizetype>(siblings.size()));
    for (const Name &name : siblings) {
        TreeNode *node = add(tree, parent, tree.Nodes().names().text(name.text));
        if (level + 1 == levels)
            continue;
        TreeNode *above = node;
        if (columns[level] == NameColumn::Adgroup) {
            // All keywords are below the search branch, also those of content records alone.
            node->Children.reserve(2);
            above = add(tree, node, branches[0].name);
            add(tree, node, branches[1].name);
        }
        addNames(tree, above, names, level + 1, name.firstBelow, name.endBelow);
    }
}

void rebuild(Tree &tree, const QString &projectTitle, Names names) {
    tree.beginRebuild();
    const auto end = qScopeGuard([&tree] { tree.endRebuild(); });
    tree.Nodes().Clear(std::move(names.texts));
    TreeNode *root = add(tree, nullptr, rootName);
    root->setText(projectTitle);
    root->Expanded = true;
    addNames(tree, root, names.levels, 0, 0, static_cast<quint32>(names.levels[0].size()));
}

} // namespace

void buildNavigationTree(const sqlite::Connection &connection, const QString &projectTitle,
                         Tree &tree, std::size_t maxBytes) {
    rebuild(tree, projectTitle, namesOf(connection, maxBytes));
}

void buildNavigationTree(ProjectRecords &records, const QString &projectTitle, Tree &tree) {
    const sqlite::Connection &connection = records.connection();
    if (const RecordColumns *held = records.held())
        rebuild(tree, projectTitle, namesOf(held->leaves(), connection.path(), maxTreeBytes));
    else
        buildNavigationTree(connection, projectTitle, tree);
}

TreeNode *nodeOfRow(const TreeNode &node, const QString &row) {
    const auto found = std::ranges::find_if(
        node.Children, [&](const TreeNode *child) { return storedName(*child) == row; });
    return found == node.Children.end() ? nullptr : *found;
}

} // namespace veltrona
