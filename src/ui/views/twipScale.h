// From the twips of the window designs to pixels of the screen and back. A twip is 1/1,440 inch at
// 96 dots per inch, times the ratio of the real font to the one that the designs assume, so that
// every text has the room that its design gives it.
#pragma once

#include "core/base/designedControl.h"

#include <QFont>
#include <QRect>

namespace veltrona {

class TwipScale {
public:
    /// `measured` are the labels that tell how wide texts come out in the font that the designs
    /// assume.
    TwipScale(const QFont &font, WindowDesign measured);

    /// Real font to assumed font, at least 1.
    double ratio() const { return m_ratio; }

    int toPixels(float twips) const;
    /// Edges are rounded, not lengths, so that neighbours neither overlap nor part.
    QRect toPixels(const TwipRect &rect) const;
    float toTwips(int pixels) const;

private:
    double m_ratio;
};

} // namespace veltrona
