// What the tour answers by itself: the file dialogs and the system's print dialog. Message boxes
// are the real ones; one that no step waits for fails the tour.
#pragma once

#include "tour/guide.h"
#include "ui/report/printing.h"
#include "ui/views/dialogs/qtDialogs.h"

#include <QPrinter>

namespace veltrona::tour {

class TourDialogs : public QtDialogs {
public:
    explicit TourDialogs(Guide &guide) : m_guide(guide) {}

    QString reportFile; // is opened
    QString exportFile; // is saved
    QString awaited;    // how the text of the next message begins

    Answer message(MessageStyle style, const QString &title, const QString &text,
                   const QString &details) override {
        const QString expected = std::exchange(awaited, {});
        if (!expected.isEmpty() && text.startsWith(expected))
            return QtDialogs::message(style, title, text, details);
        m_guide.fail(QString("a message that nobody expected: %1: %2").arg(title, text));
        return Answer::Cancel;
    }

    int choose(const QString &title, const QString &text, const QStringList &buttons) override {
        m_guide.fail(QString("a question that nobody expected: %1: %2").arg(title, text));
        return static_cast<int>(buttons.size()) - 1;
    }

    QString openFile(const FileDialogSetup &) override { return reportFile; }
    QString saveFile(const FileDialogSetup &) override { return exportFile; }

private:
    Guide &m_guide;
};

class TourPrinting : public Printing {
public:
    Paper paper() override { return a4Paper(); }
    QString file;

    bool isEnabled() override { return true; }

    void print(const ReportDocument &report, QWidget *) override {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file);
        printReport(report, printer);
    }
};

} // namespace veltrona::tour
