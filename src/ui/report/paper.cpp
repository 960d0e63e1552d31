#include "ui/report/paper.h"

#include "core/base/text.h"

#include <QBuffer>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPdfWriter>

namespace veltrona {

Paper paperOf(QPagedPaintDevice &device) {
    constexpr double minMargin = 10; // millimetres
    const QMarginsF own = device.pageLayout().margins(QPageLayout::Millimeter);
    device.setPageMargins({qMax(own.left(), minMargin), qMax(own.top(), minMargin),
                           qMax(own.right(), minMargin), qMax(own.bottom(), minMargin)},
                          QPageLayout::Millimeter);
    const int resolution = device.logicalDpiX();
    const QFont font(footFont(), &device);
    const QPageLayout layout = device.pageLayout();
    return {layout.fullRectPixels(resolution).size(), layout.paintRectPixels(resolution),
            2 * QFontMetricsF(font).height(), QFontInfo(font).pixelSize() * 1.};
}

Paper a4Paper() {
    QBuffer nothing;
    QPdfWriter writer(&nothing);
    writer.setPageSize(QPageSize(QPageSize::A4));
    return paperOf(writer);
}

QFont footFont() {
    QFont font(u"Arial"_s);
    font.setPointSize(8);
    return font;
}

QString footText(int page, int pages) {
    return u"Page %1 of %2"_s.arg(page).arg(pages);
}

} // namespace veltrona
