// Bitmaps and drawing contexts in memory, for copying pixels by block transfer. Objects are
// identified by handles and owned by a table until they are deleted; an unknown handle is refused.
// Not thread-safe.
//
// Every bitmap has the same layout: 24 bits per pixel in the order blue, green, red, the bottom row
// first, rows padded to a multiple of 4 bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

namespace veltrona::drawing {

/// 0 is no object.
using Handle = std::uint32_t;

/// Raster operations: bits 16 to 23 are a truth table of pattern, source and target.
inline constexpr std::uint32_t SRCCOPY = 0x00CC0020;
inline constexpr std::uint32_t SRCPAINT = 0x00EE0086;
inline constexpr std::uint32_t SRCAND = 0x008800C6;
inline constexpr std::uint32_t SRCINVERT = 0x00660046;
inline constexpr std::uint32_t DSTINVERT = 0x00550009;
inline constexpr std::uint32_t BLACKNESS = 0x00000042;
inline constexpr std::uint32_t WHITENESS = 0x00FF0062;

inline constexpr std::int32_t BI_RGB = 0;

struct BITMAPINFOHEADER {
    std::int32_t biSize = 0;
    std::int32_t biWidth = 0;
    std::int32_t biHeight = 0; // positive: bottom-up
    std::int16_t biPlanes = 0;
    std::int16_t biBitCount = 0;
    std::int32_t biCompression = 0;
    std::int32_t biSizeImage = 0;
    std::int32_t biXPelsPerMeter = 0;
    std::int32_t biYPelsPerMeter = 0;
    std::int32_t biClrUsed = 0;
    std::int32_t biClrImportant = 0;
};

/// A bitmap's properties; `bits` is valid until the bitmap is deleted.
struct BitmapView {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bytesPerRow = 0;
    std::uint8_t *bits = nullptr; // the bottom row
};

/// Width times three, rounded up to a multiple of 4; 0 if that exceeds 32 bits.
std::int32_t bytesPerRow(std::int32_t width);

/// A drawing context, compatible with the screen, with a bitmap of one pixel selected into it.
Handle createCompatibleDC();
bool deleteDC(Handle dc);

/// Both give 0 on failure: no context, an impossible size, no memory. New pixels are black.
Handle createDIBSection(Handle dc, const BITMAPINFOHEADER &info, std::uint8_t *&bits);
Handle createCompatibleBitmap(std::int32_t width, std::int32_t height);
/// From top-down rows of blue, green and red, `rowStride` bytes apart.
Handle createBitmap(std::int32_t width, std::int32_t height, const std::uint8_t *topRow,
                    std::ptrdiff_t rowStride);
/// Refused while the bitmap is selected into a context.
bool deleteBitmap(Handle bitmap);
/// None if the handle isn't a bitmap.
std::optional<BitmapView> describeBitmap(Handle bitmap);

/// Returns the previous bitmap of the context, 0 on failure. A bitmap is in one context at most.
Handle selectBitmap(Handle dc, Handle bitmap);

/// Copies a rectangle between the bitmaps of two contexts, clipped to both. The pattern is white.
/// An operation that doesn't use the source needs none.
bool bitBlt(Handle target, std::int32_t left, std::int32_t top, std::int32_t width,
            std::int32_t height, Handle source, std::int32_t sourceLeft, std::int32_t sourceTop,
            std::uint32_t operation);

/// Puts a bitmap onto the services' clipboard in the place of what was there; on true the clipboard
/// owns it. Without a clipboard always false.
bool setClipboardBitmap(Handle bitmap);

/// Owns one bitmap.
class Picture {
public:
    Picture() = default;
    explicit Picture(drawing::Handle bitmap) : m_bitmap(bitmap) {}
    Picture(Picture &&other) noexcept : m_bitmap(other.release()) {}
    Picture &operator=(Picture other) noexcept {
        std::swap(m_bitmap, other.m_bitmap);
        return *this;
    }
    ~Picture() { deleteBitmap(m_bitmap); }

    drawing::Handle Handle() const { return m_bitmap; }
    /// Gives up the ownership.
    drawing::Handle release() { return std::exchange(m_bitmap, 0); }

private:
    drawing::Handle m_bitmap = 0;
};

} // namespace veltrona::drawing
