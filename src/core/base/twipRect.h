// Lengths of the design in twips, 1,440 to the inch, and a rectangle of them.
#pragma once

namespace veltrona {

constexpr double twipsPerPixel = 15; // at 96 dots per inch

struct TwipRect {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    bool operator==(const TwipRect &) const = default;
};

} // namespace veltrona
