#include "core/picture/cJPEG.h"

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {

/// A position between two neighbours of the source along one axis.
struct Sample {
    std::int32_t first;
    std::int32_t second; // equal to the first at the last pixel
    float weight;        // of the second
};

Sample sampleAt(std::int32_t target, float scale, std::int32_t sourceSize) {
    const float at = static_cast<float>(target) * scale;
    const float whole = std::floor(at);
    const auto first = std::min(static_cast<std::int32_t>(whole), sourceSize - 1);
    return {first, std::min(first + 1, sourceSize - 1), at - whole};
}

/// Rounds to a whole number, ties to even.
float blend(float weight, float first, float second) {
    return std::nearbyint((1.0F - weight) * first + weight * second);
}

} // namespace

// The divisor is the target's size, not its size less one: the last target pixel falls short of
// the source's last one. Kept on purpose, as is the rounding between the two directions.
void cJPEG::resampleBits(cJPEG &target) const {
    if (m_bits == nullptr)
        return;
    const float xScale = static_cast<float>(Width() - 1) / static_cast<float>(target.Width());
    const float yScale = static_cast<float>(Height() - 1) / static_cast<float>(target.Height());
    const std::ptrdiff_t stride = BytesPerScanLine();
    for (std::int32_t y = 0; y < target.Height(); ++y) {
        const Sample rows = sampleAt(y, yScale, Height());
        const std::uint8_t *lower = m_bits + rows.first * stride;
        const std::uint8_t *upper = m_bits + rows.second * stride;
        std::uint8_t *out = target.m_bits + std::ptrdiff_t(y) * target.BytesPerScanLine();
        for (std::int32_t x = 0; x < target.Width(); ++x) {
            const Sample columns = sampleAt(x, xScale, Width());
            for (std::ptrdiff_t channel = 0; channel < 3; ++channel) {
                const std::ptrdiff_t left = std::ptrdiff_t(columns.first) * 3 + channel;
                const std::ptrdiff_t right = std::ptrdiff_t(columns.second) * 3 + channel;
                const float l = blend(rows.weight, lower[left], upper[left]);
                const float r = blend(rows.weight, lower[right], upper[right]);
                *out++ = static_cast<std::uint8_t>(
                    std::clamp(blend(columns.weight, l, r), 0.0F, 255.0F));
            }
        }
    }
}

} // namespace veltrona
