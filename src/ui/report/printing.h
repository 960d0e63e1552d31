// Prints reports. `Printing` is an interface, so that tests can simulate missing and failing
// printers.
#pragma once

#include "ui/report/paper.h"

class QPrinter;
class QWidget;

namespace veltrona {

class ReportDocument;

class Printing {
public:
    virtual ~Printing() = default;

    /// Whether printing is possible at this moment; throws Failure if that is unknown.
    virtual bool isEnabled() = 0;
    /// The paper of the default printer, or A4.
    virtual Paper paper() = 0;
    /// Shows the system's print dialog and prints; throws Failure.
    virtual void print(const ReportDocument &report, QWidget *owner) = 0;
};

/// The one in `Services`, or else the system's.
Printing &printing();

/// Prints the report as wide as the paper between its margins, with page numbers. Throws Failure if
/// the printer or the file can't be written to; an older file is then kept.
///
/// After a second a box over `owner` shows the page, with Cancel: an older file is then kept, a job
/// is withdrawn, and nothing is thrown.
void printReport(const ReportDocument &report, QPrinter &printer, QWidget *owner = nullptr);

} // namespace veltrona
