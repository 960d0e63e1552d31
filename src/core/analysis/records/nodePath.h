// A node of the navigation tree as a value: its level and the names that lead to it.
#pragma once

#include "core/database/leafDictionary.h"

#include <QString>
#include <QStringList>

#include <algorithm>

namespace veltrona {

enum class NodeLevel { Root, Campaign, AdGroup, Branch, Keyword, KeywordType };

struct NodePath {
    /// From the campaign's name down to the node's own; none for the root. A branch is named by the
    /// AdwordsTyp of its records.
    QStringList names;

    NodeLevel level() const { return static_cast<NodeLevel>(names.size()); }
    /// Null for the root and for a level below the node.
    QString name(NodeLevel level) const { return names.value(static_cast<int>(level) - 1); }
    /// The names that its records have, by NameColumn; a keyword type has its keyword's records.
    QStringList recordNames() const { return names.mid(0, static_cast<int>(NameColumn::KwType)); }
    /// The column of the node's children; a keyword type has its keyword's.
    NameColumn columnBelow() const {
        return static_cast<NameColumn>(std::min<qsizetype>(names.size(), nameColumns.size() - 1));
    }
};

} // namespace veltrona
