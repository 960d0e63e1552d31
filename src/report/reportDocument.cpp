#include "report/reportDocument.h"

#include "platform/failure.h"
#include "report/reportNames.h"
#include "report/reportText.h"

#include <QFile>
#include <QImageReader>
#include <QTextTable>
#include <QUrl>

namespace veltrona {

namespace {

/// The reader of rich text takes a style sheet between comment marks for a comment.
void uncommentStyles(QString &html) {
    const qsizetype begin = html.indexOf(QLatin1String("<style"));
    const qsizetype end = html.indexOf(QLatin1String("</style>"), begin);
    if (begin < 0 || end < 0)
        return;
    QString styles = html.mid(begin, end - begin);
    styles.remove(QLatin1String("<!--")).remove(QLatin1String("-->"));
    html.replace(begin, end - begin, styles);
}

/// The statistics table has as many columns as no other; its headings come again on each page.
void repeatHeadings(QTextDocument &document) {
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (!table || table->columns() <= 2)
            continue;
        QTextTableFormat format = table->format();
        format.setHeaderRowCount(1);
        table->setFormat(format);
    }
}

} // namespace

void ReportDocument::load(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(
            file.error(),
            QStringLiteral("Can't read the report \"%1\": %2.").arg(path, file.errorString()));
    m_graph = graphPath(path);
    setUndoRedoEnabled(false);
    QString html = textOfAnsi(file.readAll());
    uncommentStyles(html);
    setHtml(html);
    repeatHeadings(*this);
}

QVariant ReportDocument::loadResource(int type, const QUrl &name) {
    if (type != ImageResource || name.toString() != QLatin1String("graph.jpg"))
        return {};
    QImageReader reader(m_graph, "jpg");
    return reader.read();
}

} // namespace veltrona
