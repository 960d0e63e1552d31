// A report as a document that can be shown and printed. It reads the report's file and picture and
// nothing else: no other file, no network, no script. Values are plain text, whatever they look
// like. The document refers to the report, which must outlive it.
#pragma once

#include "core/report/report.h"
#include "ui/report/reportSheet.h"

#include <QImage>
#include <QTextDocument>

namespace veltrona {

class ReportLayout;

class ReportDocument : public QTextDocument {
    Q_OBJECT

public:
    /// Throws Failure unless the file holds the report.
    ReportDocument(const QString &path, const Report &report);

    double zoom() const { return m_zoom; }
    /// Lays the report out again.
    void setZoom(double zoom);

    /// The report laid out for paper, at zoom 1; it must not outlive the document.
    ReportSheet paperSheet() const;

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    void fillRows(const ReportSheet &sheet);

    const Report &m_report;
    QImage m_graph; // null if there is none
    double m_zoom = 1;
    ReportLayout *m_layout; // owned by the document
};

} // namespace veltrona
