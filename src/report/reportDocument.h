// A report's HTML file as a document that can be shown and printed. It reads the one picture beside
// the report and nothing else: no other file, no network, no script.
#pragma once

#include <QTextDocument>

namespace veltrona {

class ReportDocument : public QTextDocument {
    Q_OBJECT

public:
    /// The width of the page that a report is laid out for, in pixels: its tables and the margin.
    static constexpr int pageWidth = 824;

    explicit ReportDocument(QObject *parent = nullptr) : QTextDocument(parent) {}

    /// Throws Failure if the file can't be read. Lays nothing out yet.
    void load(const QString &path);

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    QString m_graph; // the one file that may be read
};

} // namespace veltrona
