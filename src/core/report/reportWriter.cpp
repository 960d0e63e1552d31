#include "core/report/reportWriter.h"

#include "core/base/failure.h"
#include "core/base/text.h"
#include "core/design/product.h"
#include "core/picture/modJPEG.h"
#include "core/platform/desktop/replacementFile.h"
#include "core/platform/dialogs/dialogs.h"
#include "core/report/reportText.h"

#include <QFile>
#include <QFileInfo>

namespace veltrona {

namespace {

constexpr int changedReport = 75; // the number of that failure

void reportPictureFailure(int number, const QString &description, const QString &details) {
    dialogs().message(MessageStyle::OkExclamation, u"  Error Saving JPEG"_s,
                      u"The following error occured while trying to save the JPEG file:\r\r"
                      "Error Number = "_s +
                          QString::number(number) + u"\rError Description = "_s + description,
                      details);
}

bool savePicture(const ReportSource &source, const desktop::ReplacementFile &file,
                 const QString &target) {
    cJPEG jpeg;
    if (const drawing::Picture *chart = source.copyChart ? source.copyChart() : nullptr)
        jpeg.CreateFromPicture(*chart);
    std::int32_t number = 0;
    QString description, reason;
    const bool saved = modJPEG::saveJPEG(jpeg, file.path(), 85, false, number, description, &reason,
                                         file.handle());
    if (!saved)
        reportPictureFailure(number, description,
                             u"The picture \"%1\" wasn't written: %2"_s.arg(
                                 target, reason.isEmpty() ? description : reason));
    return saved;
}

bool putInPlace(desktop::ReplacementFile &picture) {
    try {
        picture.commit();
        return true;
    } catch (const Failure &failure) {
        reportPictureFailure(failure.number(), failure.text(), failure.text());
        return false;
    }
}

} // namespace

QString reportFileName(const QString &name) {
    const QString trimmed = withoutBlanks(name).toString();
    const bool isHtml = trimmed.endsWith(".htm"_L1, Qt::CaseInsensitive) ||
                        trimmed.endsWith(".html"_L1, Qt::CaseInsensitive);
    return isHtml ? trimmed : trimmed + u".html"_s;
}

QString printReportPath(const QString &dataFolder, QChar separator) {
    return dataFolder + separator + productName + separator + u"Report.html"_s;
}

QString graphPath(const QString &reportFile, QChar separator) {
    const QStringView trimmed = withoutBlanks(reportFile);
    return trimmed.first(trimmed.lastIndexOf(separator) + 1).toString() + u"graph.jpg"_s;
}

Report writeReport(const QString &strFilename, bool doColor, const ReportSource &source) {
    const QString fileName = withoutBlanks(strFilename).toString();
    desktop::ReplacementFile page(fileName);
    Report report = makeReport(source, doColor);
    page.write(reportText(report));
    if (source.options.details) {
        source.grid->setRow(gridRow::summary(source.grid->Rows()));
        source.grid->setCol(gridColumn::Transactions);
    }
    const QString graph = graphPath(fileName);
    desktop::ReplacementFile picture(graph);
    const bool saved = source.options.graph && savePicture(source, picture, graph);
    page.commit();
    // An older picture would be taken for one of this report.
    if (source.options.graph && !(saved && putInPlace(picture)) && QFileInfo(graph).isFile())
        QFile::remove(graph);
    return report;
}

void requireWritten(const Report &report, const QString &path) {
    QFile file(path);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (file.error() != QFile::NoError)
        throw Failure(file.error(),
                      u"Can't read the report \"%1\": %2."_s.arg(path, file.errorString()));
    if (bytes != QByteArrayView(reportText(report)))
        throw Failure(changedReport,
                      u"The report \"%1\" has been changed by another program "
                      "since it was written. Close this window and print again."_s.arg(path));
}

} // namespace veltrona
