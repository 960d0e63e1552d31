// Converts twips of the window designs to pixels and back. A twip is 1/1,440 inch at 96 dots per
// inch, times the ratio of the real font to the designs' font, so that every text fits as designed.
#pragma once

#include "core/design/designedControl.h"

#include <QFont>
#include <QRect>

namespace veltrona {

class TwipScale {
public:
    /// `measured` are labels as wide as their texts in the designs' font.
    TwipScale(const QFont &font, WindowDesign measured);

    /// Grows so that `pixels` fit into `twips`.
    void makeRoom(int pixels, float twips);

    double pixelsPerTwip() const { return m_ratio / twipsPerPixel; }

    int toPixels(float twips) const;
    /// Edges are rounded, not lengths, so that neighbours neither overlap nor leave a gap.
    QRect toPixels(const TwipRect &rect) const;
    float toTwips(int pixels) const;

private:
    double m_ratio; // real font to designs' font, at least 1
};

} // namespace veltrona
