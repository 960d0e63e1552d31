#include "core/picture/drawing.h"

#include "core/platform/services.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>
#include <vector>

namespace veltrona::drawing {

namespace {

struct Bitmap {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t stride = 0;
    std::unique_ptr<std::uint8_t[]> bits;
    Handle selectedInto = 0;

    /// `y` counts from the top.
    std::uint8_t *pixel(std::int32_t x, std::int32_t y) {
        return bits.get() + std::ptrdiff_t(height - 1 - y) * stride + std::ptrdiff_t(x) * 3;
    }
};

struct Context {
    Handle bitmap = 0;
    Handle ownPixel = 0; // the bitmap of one pixel that it was created with
};

struct Table {
    std::unordered_map<Handle, Bitmap> bitmaps;
    std::unordered_map<Handle, Context> contexts;
    Handle last = 0;
};

Table &table() {
    static Table objects;
    return objects;
}

template<typename Objects>
auto *find(Objects &objects, Handle handle) {
    const auto found = objects.find(handle);
    return found == objects.end() ? nullptr : &found->second;
}

Bitmap *selectedBitmap(Handle dc) {
    const Context *context = find(table().contexts, dc);
    return context ? find(table().bitmaps, context->bitmap) : nullptr;
}

struct Area {
    std::int64_t left, top, width, height, sourceLeft, sourceTop;
};

/// Clips the span of one axis to both bitmaps.
void clip(std::int64_t &at, std::int64_t &length, std::int64_t &sourceAt, std::int64_t limit,
          std::int64_t sourceLimit) {
    const std::int64_t skip = std::max<std::int64_t>({0, -at, -sourceAt});
    at += skip;
    sourceAt += skip;
    length = std::min({length - skip, limit - at, sourceLimit - sourceAt});
}

bool usesSource(std::uint8_t code) {
    return (((code >> 2) ^ code) & 0x33) != 0;
}

/// The upper half of the truth table, since the pattern is white: bit 4 + 2 * source + target.
void combineRow(std::uint8_t code, std::uint8_t *target, const std::uint8_t *source,
                std::size_t bytes) {
    const auto mask = [code](int bit) -> std::uint8_t { return (code >> bit) & 1 ? 0xFF : 0; };
    const std::uint8_t neither = mask(4), onlyTarget = mask(5), onlySource = mask(6),
                       both = mask(7);
    for (std::size_t i = 0; i < bytes; ++i) {
        const std::uint8_t s = source[i], d = target[i];
        target[i] =
            (neither & ~s & ~d) | (onlyTarget & ~s & d) | (onlySource & s & ~d) | (both & s & d);
    }
}

void transfer(Bitmap &target, Bitmap &source, const Area &area, std::uint8_t code) {
    const std::size_t bytes = std::size_t(area.width) * 3;
    std::vector<std::uint8_t> row(bytes);
    const bool upwards = &target == &source && area.top > area.sourceTop;
    for (std::int64_t i = 0; i < area.height; ++i) {
        const std::int64_t line = upwards ? area.height - 1 - i : i;
        std::uint8_t *to = target.pixel(int(area.left), int(area.top + line));
        std::memcpy(row.data(), source.pixel(int(area.sourceLeft), int(area.sourceTop + line)),
                    bytes);
        if (code == ((SRCCOPY >> 16) & 0xFF))
            std::memcpy(to, row.data(), bytes);
        else
            combineRow(code, to, row.data(), bytes);
    }
}

} // namespace

std::int32_t bytesPerRow(std::int32_t width) {
    if (width <= 0 || width > (std::numeric_limits<std::int32_t>::max() - 3) / 3)
        return 0;
    return (width * 3 + 3) & ~3;
}

Handle createCompatibleDC() {
    const Handle pixel = createCompatibleBitmap(1, 1);
    if (pixel == 0)
        return 0;
    const Handle dc = ++table().last;
    table().contexts.emplace(dc, Context{pixel, pixel});
    find(table().bitmaps, pixel)->selectedInto = dc;
    return dc;
}

bool deleteDC(Handle dc) {
    const Context *context = find(table().contexts, dc);
    if (!context)
        return false;
    if (Bitmap *bitmap = find(table().bitmaps, context->bitmap))
        bitmap->selectedInto = 0;
    table().bitmaps.erase(context->ownPixel);
    table().contexts.erase(dc);
    return true;
}

Handle createDIBSection(Handle dc, const BITMAPINFOHEADER &info, std::uint8_t *&bits) {
    bits = nullptr;
    if (!find(table().contexts, dc) || info.biBitCount != 24 || info.biPlanes != 1 ||
        info.biCompression != BI_RGB)
        return 0;
    const Handle bitmap = createCompatibleBitmap(info.biWidth, info.biHeight);
    if (bitmap != 0)
        bits = find(table().bitmaps, bitmap)->bits.get();
    return bitmap;
}

Handle createCompatibleBitmap(std::int32_t width, std::int32_t height) {
    const std::int32_t stride = bytesPerRow(width);
    if (stride == 0 || height <= 0 || stride > std::numeric_limits<std::int32_t>::max() / height)
        return 0;
    Bitmap bitmap{width, height, stride, nullptr, 0};
    bitmap.bits.reset(new (std::nothrow) std::uint8_t[std::size_t(stride) * std::size_t(height)]());
    if (!bitmap.bits)
        return 0;
    table().bitmaps.emplace(++table().last, std::move(bitmap));
    return table().last;
}

Handle createBitmap(std::int32_t width, std::int32_t height, const std::uint8_t *topRow,
                    std::ptrdiff_t rowStride) {
    if (topRow == nullptr)
        return 0;
    const Handle handle = createCompatibleBitmap(width, height);
    if (Bitmap *bitmap = find(table().bitmaps, handle)) {
        for (std::int32_t y = 0; y < height; ++y)
            std::memcpy(bitmap->pixel(0, y), topRow + y * rowStride, std::size_t(width) * 3);
    }
    return handle;
}

bool deleteBitmap(Handle bitmap) {
    const Bitmap *found = find(table().bitmaps, bitmap);
    if (!found || found->selectedInto != 0)
        return false;
    table().bitmaps.erase(bitmap);
    return true;
}

std::optional<BitmapView> describeBitmap(Handle bitmap) {
    const Bitmap *found = find(table().bitmaps, bitmap);
    if (!found)
        return {};
    return BitmapView{found->width, found->height, found->stride, found->bits.get()};
}

Handle selectBitmap(Handle dc, Handle bitmap) {
    Context *context = find(table().contexts, dc);
    Bitmap *wanted = find(table().bitmaps, bitmap);
    if (!context || !wanted || (wanted->selectedInto != 0 && wanted->selectedInto != dc))
        return 0;
    if (Bitmap *before = find(table().bitmaps, context->bitmap))
        before->selectedInto = 0;
    wanted->selectedInto = dc;
    return std::exchange(context->bitmap, bitmap);
}

bool bitBlt(Handle target, std::int32_t left, std::int32_t top, std::int32_t width,
            std::int32_t height, Handle source, std::int32_t sourceLeft, std::int32_t sourceTop,
            std::uint32_t operation) {
    const auto code = static_cast<std::uint8_t>(operation >> 16);
    Bitmap *to = selectedBitmap(target);
    Bitmap *from = usesSource(code) ? selectedBitmap(source) : to;
    if (!to || !from)
        return false;
    Area area{left, top, width, height, sourceLeft, sourceTop};
    if (!usesSource(code)) {
        area.sourceLeft = left;
        area.sourceTop = top;
    }
    clip(area.left, area.width, area.sourceLeft, to->width, from->width);
    clip(area.top, area.height, area.sourceTop, to->height, from->height);
    if (area.width > 0 && area.height > 0)
        transfer(*to, *from, area, code);
    return true;
}

bool setClipboardBitmap(Handle bitmap) {
    const auto &clipboard = services().clipboard;
    return clipboard && describeBitmap(bitmap) && clipboard(bitmap);
}

} // namespace veltrona::drawing
