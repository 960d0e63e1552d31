#include "core/import/columnCheck.h"

#include "core/base/failure.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <QDir>

namespace veltrona {

namespace {

constexpr auto campaign = static_cast<std::size_t>(reportColumn("campaign"));
constexpr auto date = static_cast<std::size_t>(reportColumn("date"));

void declare(ReportColumnNames &names, std::string_view name) {
    for (std::size_t i = 0; i < reportColumns.size(); ++i) {
        if (isSameName(name, reportColumns[i].name))
            names[i] = textOf(name);
    }
}

Failure refused(const xml::Document &document, ReportFault number, const QString &reason) {
    return {number, u"The report \"%1\" can't be imported: %2. Nothing has been stored."_s.arg(
                        QDir::toNativeSeparators(document.path()), reason)};
}

} // namespace

QString parserReport(const xml::ParseError &error) {
    // "load" and "due" are joined without a blank; the reason ends in a line end.
    return u"Your XML Document failed to loaddue the following error.\r\n"
           "Error #: %1: %2Line #: %3\r\nLine Position: %4\r\n"
           "Position In File: %5\r\nSource Text: %6\r\nDocument URL: %7"_s.arg(
               QString::number(error.errorCode), error.reason, QString::number(error.line),
               QString::number(error.linepos), QString::number(error.filepos), error.srcText,
               QDir::toNativeSeparators(error.url));
}

ColumnCheck checkColumns(const xml::Document &document) {
    if (!document.refusal().isEmpty())
        throw refused(document, unreadableReport, document.refusal());
    ColumnCheck check;
    xml::NodeReader walk = document.nodes();
    for (auto step = walk.next(); step != xml::NodeReader::Step::End; step = walk.next()) {
        // The required columns must be declared by the end of the first child list that ends.
        if (step == xml::NodeReader::Step::ListEnd) {
            check.passed = !check.names[campaign].isEmpty() && !check.names[date].isEmpty();
            if (!check.passed)
                return check;
        } else if (walk.name() == "column") {
            const xml::Attribute *name = walk.attribute("name");
            if (name == nullptr)
                throw refused(document, unreadableReport,
                              u"the column in line %1 has no name"_s.arg(walk.line()));
            declare(check.names, name->value);
        } else if (walk.name() == "row") {
            ++check.rowCount;
        }
    }
    if (check.rowCount > maxReportRows) {
        const QString reason = u"it has %1 rows, and an import takes at most %2, so fetch reports "
                               "of shorter periods and import one after another"_s;
        throw refused(document, tooManyRows, reason.arg(check.rowCount).arg(maxReportRows));
    }
    return check;
}

} // namespace veltrona
