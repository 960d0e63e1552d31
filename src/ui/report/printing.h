// How a report gets to a printer. It stands behind a seam, so that a system on which nothing can be
// printed, and one on which printing fails, can both be had at will.
#pragma once

class QPrinter;
class QWidget;

namespace veltrona {

class ReportDocument;

class Printing {
public:
    virtual ~Printing() = default;

    /// Whether something can be printed at this moment; throws Failure if that can't be told.
    virtual bool isEnabled() = 0;
    /// Asks the user by the system's print dialog and prints; throws Failure.
    virtual void print(const ReportDocument &report, QWidget *owner) = 0;
};

/// The printing in force: that of the services, or else the system's.
Printing &printing();

/// Prints what the preview shows, as wide as the paper between its margins, and numbers the pages.
/// Throws Failure if printer or file refuses; a file that stood there before is unharmed then.
void printReport(const ReportDocument &report, QPrinter &printer);

} // namespace veltrona
