// A report's HTML file as a document that can be shown and printed. It reads the one picture beside
// the report and nothing else: no other file, no network, no script. Values are plain text,
// whatever they look like.
#pragma once

#include "core/report/reportFile.h"
#include "ui/report/reportSheet.h"

#include <QImage>
#include <QTextDocument>

namespace veltrona {

class ReportLayout;

class ReportDocument : public QTextDocument {
    Q_OBJECT

public:
    /// Reads the file that the places belong to, and its picture. Throws Failure.
    ReportDocument(const QString &path, ReportPlaces places);

    double zoom() const { return m_zoom; }
    /// Lays the report out again, larger or smaller.
    void setZoom(double zoom);

    /// The report laid out for paper, whatever the zoom; it must not outlive the document.
    ReportSheet paperSheet() const;

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    void fillRows(const ReportSheet &sheet);

    ReportFile m_file;
    QImage m_graph; // null if there is none
    double m_zoom = 1;
    ReportLayout *m_layout; // owned by the document
};

} // namespace veltrona
