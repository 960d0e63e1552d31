// Where a picture has pixels of some kind.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

namespace veltrona::test {

/// The smallest rectangle with all pixels whose colour matches; null if none does.
template<class Matches>
QRect areaOf(const QImage &image, Matches matches) {
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (matches(image.pixelColor(x, y)))
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

} // namespace veltrona::test
