// What a tree node's Tag says: conditions that narrow the day records to the node, and the column
// that orders its children. A Tag reads " AND campaign='O''Neil' ORDER BY adGroup"; apostrophes in
// values are doubled, so that a value may hold any text, " ORDER " included.
#pragma once

#include <QString>

#include <vector>

namespace veltrona {

struct NodeCondition {
    QString column; // in the Tag's own spelling: campaign, adGroup, adWordsTyp, Keyword
    QString value;  // apostrophes single
};

struct NodeTag {
    std::vector<NodeCondition> conditions;
    QString orderBy;

    /// The value of a condition by the column's exact spelling, or the empty text.
    QString value(QStringView column) const;
};

/// The column names come from a fixed list of the tree's own; another text gives an empty NodeTag.
NodeTag readNodeTag(const QString &tag);

/// `value` with every apostrophe doubled.
QString doubledApostrophes(const QString &value);

} // namespace veltrona
