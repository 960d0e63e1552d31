// A report's HTML file as a document that can be shown and printed. It reads the one picture beside
// the report and nothing else: no other file, no network, no script. The statistics of a long
// report come in parts, tables that look like one.
#pragma once

#include "core/report/reportParts.h"

#include <QImage>
#include <QTextDocument>

class QTextTable;

namespace veltrona {

class ReportDocument : public QTextDocument {
    Q_OBJECT

public:
    /// The width of the page that a report is laid out for, in pixels: its tables and the margin.
    static constexpr int pageWidth = 824;

    /// Where the statistics stand: pixels from the document's top.
    struct Statistics {
        double top = 0;
        double headingsEnd = 0;
        double bottom = 0;
    };

    explicit ReportDocument(QObject *parent = nullptr);

    /// Loads the file's beginning, which is all of a report that isn't long. Throws Failure.
    void load(const QString &path);
    bool isComplete() const { return m_complete; }
    /// Appends a part, in some hundredths of a second. Only before the document is complete.
    void loadMore();
    int loadedRows() const { return static_cast<int>(m_loadedRows); }
    int rows() const { return static_cast<int>(m_parts.rows.size()); }

    /// All 0 if the report has none.
    Statistics statistics() const;

    /// Paper takes the graph in all its pixels, the screen as many as it shows. The graph takes the
    /// same place on both.
    void showGraphFor(bool paper);

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    QString page(const QString &body) const;
    void measureColumns();
    void appendRows(qsizetype count);
    void takeColumnWidths(QTextTable &table, bool continues);
    QTextTable *lastTable() const;

    ReportParts m_parts;
    qsizetype m_loadedRows = 0;
    bool m_complete = false;
    QList<double> m_columnWidths; // of the tables that a long report's statistics are made of
    QTextTable *m_firstTable = nullptr;
    QTextTable *m_lastTable = nullptr;
    QImage m_graph; // null if there is none
};

} // namespace veltrona
