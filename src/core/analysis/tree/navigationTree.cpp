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
constexpr std::size_t levels = 4; // campaign, ad group, keyword, keyword type

/// A name, and where the names below it stand in the list of the next level.
struct Name {
    QString text;
    std::size_t firstBelow;
    std::size_t endBelow;
};
/// A list of names for each level; the names below one name stand side by side.
using Names = std::array<std::vector<Name>, levels>;

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

/// The same rows, out of the leaves in memory.
class LeafRows {
public:
    explicit LeafRows(const LeafDictionary &leaves)
        : m_names(leaves.names()), m_rows(leaves.size()) {
        const std::vector<Code> ranks = ranksOfNames();
        for (std::size_t leaf = 0; leaf < m_rows.size(); ++leaf) {
            for (std::size_t i = 0; i < levels; ++i)
                m_rows[leaf][i] = ranks[leaves.nameCode(leaf, columns[i])];
        }
        std::sort(m_rows.begin(), m_rows.end());
    }

    std::size_t next() {
        for (; m_next < m_rows.size(); ++m_next) {
            const std::size_t level = m_next == 0 ? 0 : firstDifference();
            if (level == levels) // the other branch of a row
                continue;
            for (std::size_t i = level; i < levels; ++i)
                m_row[i] = m_names.text(m_codes[m_rows[m_next][i]]);
            ++m_next;
            return level;
        }
        return levels;
    }
    const Columns &row() const { return m_row; }

private:
    using Code = TextDictionary::Code;
    static constexpr std::array<NameColumn, levels> columns = {
        NameColumn::Campaign, NameColumn::Adgroup, NameColumn::KeyWord, NameColumn::KwType};

    /// The place of each name in the engine's order, byte by byte.
    std::vector<Code> ranksOfNames() {
        m_codes.resize(m_names.size());
        std::iota(m_codes.begin(), m_codes.end(), Code(0));
        std::sort(m_codes.begin(), m_codes.end(),
                  [this](Code a, Code b) { return m_names.text(a) < m_names.text(b); });
        std::vector<Code> ranks(m_codes.size());
        for (std::size_t rank = 0; rank < m_codes.size(); ++rank)
            ranks[m_codes[rank]] = static_cast<Code>(rank);
        return ranks;
    }
    std::size_t firstDifference() const {
        const auto &row = m_rows[m_next];
        return static_cast<std::size_t>(
            std::mismatch(row.begin(), row.end(), m_rows[m_next - 1].begin()).first - row.begin());
    }

    const TextDictionary &m_names;
    std::vector<Code> m_codes;                    // by rank
    std::vector<std::array<Code, levels>> m_rows; // of ranks
    std::size_t m_next = 0;
    Columns m_row;
};

/// Gives equal names one and the same memory.
class NamePool {
public:
    NamePool() { m_names.reserve(manyNames); }

    QString name(std::size_t level, const std::string &utf8) {
        Last &last = m_last[level];
        if (last.name.isNull() || last.utf8 != utf8)
            last = {utf8, *m_names.insert(nameOf(utf8))};
        return last.name;
    }

private:
    struct Last {
        std::string utf8;
        QString name;
    };
    static constexpr qsizetype manyNames = 100'000; // growing costs more than the room

    std::array<Last, levels> m_last;
    QSet<QString> m_names;
};

template<class Rows>
Names readNames(Rows &&rows) {
    NamePool pool;
    Names names;
    for (std::size_t first = rows.next(); first < levels; first = rows.next()) {
        for (std::size_t level = first; level < levels; ++level) {
            const std::size_t below = level + 1 < levels ? names[level + 1].size() : 0;
            names[level].push_back({pool.name(level, rows.row()[level]), below, below});
            if (level > 0)
                names[level - 1].back().endBelow = names[level].size();
        }
    }
    return names;
}

void sortForReader(std::span<Name> names) {
    // The engine's order is mostly the reader's already.
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

class Builder {
public:
    Builder(Tree &tree, Names names) : m_nodes(tree.Nodes()), m_names(std::move(names)) {}

    void build(const QString &projectTitle) {
        TreeNode *root = add(nullptr, projectTitle);
        root->Expanded = true;
        addNames(root, 0, 0, m_names[0].size());
    }

private:
    enum : std::size_t { AdGroup = 1 };

    TreeNode *add(TreeNode *parent, QString name) {
        return m_nodes.addByName(parent, navigationTexts(), std::move(name), folderImage);
    }

    void addNames(TreeNode *parent, std::size_t level, std::size_t begin, std::size_t end) {
        const auto siblings = std::span(m_names[level]).subspan(begin, end - begin);
        sortForReader(siblings);
        parent->Children.reserve(static_cast<qsizetype>(siblings.size()));
        for (Name &name : siblings) {
            TreeNode *node = add(parent, std::move(name.text));
            if (level + 1 == levels)
                continue;
            TreeNode *above = node;
            if (level == AdGroup) {
                // All keywords are below the search branch, also those of content records alone.
                above = add(node, branches()[0].name);
                add(node, branches()[1].name);
            }
            addNames(above, level + 1, name.firstBelow, name.endBelow);
        }
    }

    Nodes &m_nodes;
    Names m_names;
};

void rebuild(Tree &tree, const QString &projectTitle, Names names) {
    Builder builder(tree, std::move(names));
    tree.beginRebuild();
    const auto end = qScopeGuard([&tree] { tree.endRebuild(); });
    tree.Nodes().Clear();
    builder.build(projectTitle);
}

} // namespace

void buildNavigationTree(const sqlite::Connection &connection, const QString &projectTitle,
                         Tree &tree) {
    rebuild(tree, projectTitle, readNames(NameRows(connection)));
}

void buildNavigationTree(ProjectRecords &records, const QString &projectTitle, Tree &tree) {
    if (const RecordColumns *columns = records.held())
        rebuild(tree, projectTitle, readNames(LeafRows(columns->leaves())));
    else
        buildNavigationTree(records.connection(), projectTitle, tree);
}

TreeNode *nodeOfRow(const TreeNode &node, const QString &row) {
    const auto found =
        std::find_if(node.Children.begin(), node.Children.end(),
                     [&](const TreeNode *child) { return pathOf(*child).names.last() == row; });
    return found == node.Children.end() ? nullptr : *found;
}

} // namespace veltrona
