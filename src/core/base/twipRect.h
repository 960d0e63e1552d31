// A rectangle in twips, 1,440 to the inch.
#pragma once

namespace veltrona {

struct TwipRect {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    bool operator==(const TwipRect &) const = default;
};

} // namespace veltrona
