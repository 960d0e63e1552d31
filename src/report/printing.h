// How a report's page gets to a printer. It stands behind a seam, so that a system on which nothing
// can be printed, and one on which printing fails, can both be had at will.
#pragma once

#include <QTextDocument>

class QPrinter;
class QWidget;

namespace veltrona {

class Printing {
public:
    virtual ~Printing() = default;

    /// Whether something can be printed at this moment; throws Failure if that can't be told.
    virtual bool isEnabled() = 0;
    /// Asks the user by the system's print dialog and prints; throws Failure.
    virtual void print(const QTextDocument &page, QWidget *owner) = 0;
};

/// The printing in force: the system's unless another one has been installed.
Printing &printing();

/// Installs a printing that the caller keeps alive; null brings the system's back.
void setPrinting(Printing *printing);

/// Prints a page that was laid out for ReportDocument::pageWidth: what fits the width of the
/// preview fits the width of the paper. Throws Failure if the printer or the file refuses.
void printPage(const QTextDocument &page, QPrinter &printer);

} // namespace veltrona
