// The paper that reports are printed on.
#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPagedPaintDevice;

namespace veltrona {

/// In pixels of the printer, from the paper's top left.
struct Paper {
    QSizeF size;
    QRectF printed;          // between the margins
    double footHeight = 0;   // of the place for the page's number, at the bottom of `printed`
    double footFontSize = 0; // in pixels

    QSizeF body() const { return printed.size() - QSizeF(0, footHeight); }
};

/// The paper of a printer or a PDF file, whose margins become 10 mm where they are smaller.
Paper paperOf(QPagedPaintDevice &device);
Paper a4Paper();

/// The font of the page's number, sized for the printer.
QFont footFont();
QString footText(int page, int pages);

} // namespace veltrona
