#include "core/analysis/records/recordWalk.h"

#include "core/base/failureNumbers.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <algorithm>

namespace veltrona {

namespace {

using Code = TextDictionary::Code;

const char *nameOf(NameColumn column) {
    return nameColumns[static_cast<std::size_t>(column)];
}

struct CodedCondition {
    NameColumn column;
    Code value; // `none` holds for no leaf
};

std::vector<CodedCondition> codedConditions(const NodePath &path, const TextDictionary &names) {
    std::vector<CodedCondition> coded;
    for (const NodeCondition &condition : conditionsOf(path))
        coded.push_back({condition.column, names.find(storedBytes(condition.value).toStdString())});
    return coded;
}

/// The group of each leaf, by its code.
std::vector<int> leafGroups(const LeafDictionary &leaves, const RecordQuestion &question) {
    const std::vector<CodedCondition> conditions = codedConditions(question.path, leaves.names());
    constexpr int unknown = -2;
    std::vector<int> groupOfName(leaves.names().size(), unknown);
    const auto groupOf = [&](std::size_t leaf) {
        for (const CodedCondition &condition : conditions) {
            if (leaves.nameCode(leaf, condition.column) != condition.value)
                return -1;
        }
        if (!question.groupedBy)
            return 0;
        const Code name = leaves.nameCode(leaf, *question.groupedBy);
        if (groupOfName[name] == unknown)
            groupOfName[name] = question.groupOf(leaves.names().text(name));
        return groupOfName[name];
    };
    std::vector<int> groups(leaves.size());
    for (std::size_t leaf = 0; leaf < groups.size(); ++leaf)
        groups[leaf] = groupOf(leaf);
    return groups;
}

DateValue dateOf(std::string_view text, const QString &path) {
    if (const auto date = dateOfIsoText(text))
        return *date;
    throw Failure(unreadableDate,
                  QStringLiteral("The project \"%1\" holds a date that can't be read: \"%2\".")
                      .arg(path, shortened(textOf(text), 40, u"")));
}

} // namespace

const RecordColumns *recordWalk::columnsFor(ProjectRecords &records, const RecordQuestion &question,
                                            NodeRecords &fromEngine) {
    if (const RecordColumns *columns = records.held())
        return columns;
    fromEngine = nodeRecords(records.connection(), question.path, question.range);
    return fromEngine.areFew ? nullptr : records.read();
}

void recordWalk::visitColumns(const RecordColumns &columns, const RecordQuestion &question,
                              std::span<const double> exactScales,
                              const RecordColumns::Visitor &visitor) {
    columns.visit(leafGroups(columns.leaves(), question), dateGroups(columns.dates(), question),
                  question.figures, exactScales, visitor);
}

std::vector<int> recordWalk::dateGroups(const TextDictionary &dates,
                                        const RecordQuestion &question) {
    // Dates compare byte by byte, as in the engine.
    const DateTexts texts = dateTextsOf(question.range);
    const std::string first = texts.first.toStdString();
    const std::string last = texts.last.toStdString();
    std::vector<int> groups(dates.size());
    for (std::size_t date = 0; date < groups.size(); ++date) {
        const std::string &text = dates.text(static_cast<Code>(date));
        const bool isWithin = text >= first && text <= last;
        groups[date] = !isWithin ? -1 : question.groupedBy ? 0 : question.groupOf(text);
    }
    return groups;
}

std::string recordWalk::engineColumns(const RecordQuestion &question) {
    std::string columns = question.groupedBy ? nameOf(*question.groupedBy) : "GoogleDate";
    for (const Figure figure : question.figures)
        columns.append(", ").append(figureColumns[static_cast<std::size_t>(figure)]);
    return columns;
}

std::optional<DateRange> tableDates(ProjectRecords &records) {
    const QString &path = records.connection().path();
    if (const RecordColumns *columns = records.held()) {
        const TextDictionary &dates = columns->dates();
        if (dates.size() == 0)
            return std::nullopt;
        std::string_view first = dates.text(0);
        std::string_view last = first;
        for (Code date = 1; date < dates.size(); ++date) {
            first = std::min<std::string_view>(first, dates.text(date));
            last = std::max<std::string_view>(last, dates.text(date));
        }
        return DateRange{dateOf(first, path), dateOf(last, path)};
    }
    sqlite::Statement statement =
        records.connection().prepare("SELECT (SELECT min(GoogleDate) FROM tblGoogleDays), "
                                     "(SELECT max(GoogleDate) FROM tblGoogleDays)");
    if (!statement.step() || statement.type(0) == sqlite::ValueType::Null)
        return std::nullopt;
    return DateRange{dateOf(statement.utf8(0), path), dateOf(statement.utf8(1), path)};
}

} // namespace veltrona
