#include "core/report/reportWriter.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/base/blanks.h"
#include "core/base/failure.h"
#include "core/picture/modJPEG.h"
#include "core/platform/desktop/replacementFile.h"
#include "core/platform/dialogs/dialogs.h"
#include "core/platform/services.h"
#include "core/report/reportNames.h"

#include <QFile>
#include <QFileInfo>

namespace veltrona {

namespace {

ReportContent contentOf(const ReportSource &source, bool doColor) {
    const TreeNode root;
    const TreeNode &node = source.selected ? *source.selected : root;
    const QChar separator = dateSeparator(source.locale);
    ReportContent content;
    content.details = reportDetails(node.Key(), node.Tag(), node.Text());
    content.now = source.locale.toString(services().now(), QLocale::ShortFormat);
    content.start = reportDate(source.range.start, separator);
    content.end = reportDate(source.range.end, separator);
    content.metric = source.metric;
    content.options = source.options;
    content.doColor = doColor;
    return content;
}

void tellPictureFailure(int number, const QString &description, const QString &details) {
    dialogs().messageWithDetails(
        MessageStyle::OkExclamation, QStringLiteral("  Error Saving JPEG"),
        QStringLiteral("The following error occured while trying to save the JPEG file:\r\r"
                       "Error Number = ") +
            QString::number(number) + QStringLiteral("\rError Description = ") + description,
        details);
}

bool savePicture(const ReportSource &source, const QString &path, const QString &target) {
    cJPEG jpeg;
    if (const drawing::Picture *chart = source.copyChart ? source.copyChart() : nullptr)
        jpeg.CreateFromPicture(*chart);
    std::int32_t number = 0;
    QString description, reason;
    const bool saved = modJPEG::saveJPEG(jpeg, path, 85, false, number, description, &reason);
    if (!saved)
        tellPictureFailure(number, description,
                           QStringLiteral("The picture \"%1\" wasn't written: %2")
                               .arg(target, reason.isEmpty() ? description : reason));
    return saved;
}

bool putInPlace(desktop::ReplacementFile &picture) {
    try {
        picture.commit();
        return true;
    } catch (const Failure &failure) {
        tellPictureFailure(failure.number(), failure.text(), failure.text());
        return false;
    }
}

} // namespace

ReportPlaces writeReport(const QString &strFilename, bool doColor, const ReportSource &source) {
    const QString fileName = withoutBlanks(strFilename).toString();
    desktop::ReplacementFile page(fileName);
    ReportPlaces places;
    page.write(reportText(contentOf(source, doColor), *source.grid, &places));
    if (source.options.details) {
        source.grid->setRow(gridRow::summary(source.grid->Rows()));
        source.grid->setCol(gridColumn::Transactions);
    }
    const QString graph = graphPath(fileName);
    desktop::ReplacementFile picture(graph);
    const bool saved = source.options.graph && savePicture(source, picture.path(), graph);
    page.commit();
    // An older picture would pass for one of this report.
    if (source.options.graph && !(saved && putInPlace(picture)) && QFileInfo(graph).isFile())
        QFile::remove(graph);
    return places;
}

} // namespace veltrona
