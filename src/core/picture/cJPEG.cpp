#include "core/picture/cJPEG.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>

namespace veltrona {

namespace {

/// A drawing context for one transfer, with a bitmap selected into it.
class TemporaryContext {
    Q_DISABLE_COPY_MOVE(TemporaryContext)
public:
    explicit TemporaryContext(drawing::Handle bitmap)
        : m_dc(drawing::createCompatibleDC()), m_before(drawing::selectBitmap(m_dc, bitmap)) {}
    ~TemporaryContext() {
        drawing::selectBitmap(m_dc, m_before);
        drawing::deleteDC(m_dc);
    }

    drawing::Handle hDC() const { return m_dc; }
    bool isReady() const { return m_before != 0; }

private:
    drawing::Handle m_dc;
    drawing::Handle m_before;
};

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

bool cJPEG::Create(std::int32_t lWidth, std::int32_t lHeight) {
    ClearUp();
    m_hDC = drawing::createCompatibleDC();
    if (m_hDC == 0)
        return false;
    if (!CreateDIB(m_hDC, lWidth, lHeight, m_hDib)) {
        drawing::deleteDC(m_hDC);
        m_hDC = 0;
        return false;
    }
    m_hBmpOld = drawing::selectBitmap(m_hDC, m_hDib);
    return true;
}

bool cJPEG::CreateDIB(drawing::Handle lhDC, std::int32_t lWidth, std::int32_t lHeight,
                      drawing::Handle &hDib) {
    m_info.biSize = 40;
    m_info.biWidth = lWidth;
    m_info.biHeight = lHeight;
    m_info.biPlanes = 1;
    m_info.biBitCount = 24;
    m_info.biCompression = drawing::BI_RGB;
    m_info.biSizeImage = static_cast<std::int32_t>(std::int64_t(BytesPerScanLine()) * lHeight);
    hDib = drawing::createDIBSection(lhDC, m_info, m_bits);
    return hDib != 0;
}

void cJPEG::CreateFromPicture(const drawing::Picture &PictureSource) {
    m_pictureLoaded = false;
    const auto source = drawing::describeBitmap(PictureSource.Handle());
    if (!Create(source ? source->width : 0, source ? source->height : 0))
        return;
    const TemporaryContext context(PictureSource.Handle());
    if (!context.isReady())
        return;
    LoadPictureBlt(context.hDC());
    m_pictureLoaded = true;
}

void cJPEG::LoadPictureBlt(drawing::Handle lhDC, std::int32_t lSrcLeft, std::int32_t lSrcTop,
                           std::int32_t lSrcWidth, std::int32_t lSrcHeight, std::uint32_t eRop) {
    drawing::bitBlt(m_hDC, 0, 0, lSrcWidth < 0 ? Width() : lSrcWidth,
                    lSrcHeight < 0 ? Height() : lSrcHeight, lhDC, lSrcLeft, lSrcTop, eRop);
}

void cJPEG::PaintPicture(drawing::Handle lhDC, std::int32_t lDestLeft, std::int32_t lDestTop,
                         std::int32_t lDestWidth, std::int32_t lDestHeight, std::int32_t lSrcLeft,
                         std::int32_t lSrcTop, std::uint32_t eRop) const {
    drawing::bitBlt(lhDC, lDestLeft, lDestTop, lDestWidth < 0 ? Width() : lDestWidth,
                    lDestHeight < 0 ? Height() : lDestHeight, m_hDC, lSrcLeft, lSrcTop, eRop);
}

bool cJPEG::CopyToClipboard() const {
    if (m_hDC == 0)
        return false;
    drawing::Picture copy(drawing::createCompatibleBitmap(Width(), Height()));
    {
        const TemporaryContext context(copy.Handle());
        if (!context.isReady())
            return false;
        PaintPicture(context.hDC());
    }
    const bool taken = drawing::setClipboardBitmap(copy.Handle());
    if (taken)
        copy.release();
    return taken;
}

void cJPEG::RandomiseBits(bool bGray) {
    if (m_bits == nullptr)
        return;
    std::mt19937 source(
        static_cast<std::uint32_t>(std::chrono::system_clock::now().time_since_epoch().count()));
    std::uniform_real_distribution<float> zeroToOne(0.0F, 1.0F);
    const auto draw = [&] {
        return static_cast<std::uint8_t>(std::lrint(zeroToOne(source) * 255.0F));
    };
    const std::ptrdiff_t stride = BytesPerScanLine();
    if (bGray) {
        for (std::int32_t y = 0; y < Height(); ++y) {
            std::uint8_t *row = m_bits + y * stride;
            for (std::ptrdiff_t x = 0; x < Width(); ++x)
                row[x * 3] = row[x * 3 + 1] = row[x * 3 + 2] = draw();
        }
        return;
    }
    for (std::int32_t x = 0; x < Width(); ++x) {
        for (std::int32_t y = 0; y < Height(); ++y) {
            std::uint8_t *pixel = m_bits + y * stride + std::ptrdiff_t(x) * 3;
            pixel[0] = 0;
            pixel[1] = draw();
            pixel[2] = draw();
        }
    }
}

void cJPEG::ClearUp() {
    m_pictureLoaded = false;
    if (m_hDC != 0) {
        if (m_hDib != 0) {
            drawing::selectBitmap(m_hDC, m_hBmpOld);
            drawing::deleteBitmap(m_hDib);
        }
        drawing::deleteDC(m_hDC);
    }
    m_hDC = m_hDib = m_hBmpOld = 0;
    m_bits = nullptr;
}

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

std::unique_ptr<cJPEG> cJPEG::Resample(std::int32_t lNewHeight, std::int32_t lNewWidth) const {
    auto scaled = std::make_unique<cJPEG>();
    if (!scaled->Create(lNewWidth, lNewHeight))
        return nullptr;
    if (lNewWidth == Width() && lNewHeight == Height())
        scaled->LoadPictureBlt(m_hDC);
    else
        resampleBits(*scaled);
    return scaled;
}

} // namespace veltrona
