// One picture as a 24-bit bitmap in memory with a drawing context, so that any bitmap can be copied
// in and the JPEG writer can read the pixels in place: blue, green, red, the bottom row first, rows
// padded to a multiple of 4 bytes. The object owns context and bitmap.
#pragma once

#include "core/picture/drawing.h"

#include <QtGlobal>

#include <cstdint>
#include <memory>

namespace veltrona {

class cJPEG {
    Q_DISABLE_COPY_MOVE(cJPEG)
public:
    cJPEG() = default;
    ~cJPEG() { ClearUp(); }

    bool PictureLoaded() const { return m_pictureLoaded; }
    void setPictureLoaded(bool NewValue) { m_pictureLoaded = NewValue; }
    /// Null while there is no picture.
    std::uint8_t *DIBSectionBitsPtr() const { return m_bits; }
    drawing::Handle hDC() const { return m_hDC; }
    drawing::Handle hDib() const { return m_hDib; }
    /// Both keep the last size after ClearUp.
    std::int32_t Height() const { return m_info.biHeight; }
    std::int32_t Width() const { return m_info.biWidth; }

    bool CopyToClipboard() const;
    /// The caller owns `hDib`, which must exist as long as this picture's pixels are in use.
    bool CreateDIB(drawing::Handle lhDC, std::int32_t lWidth, std::int32_t lHeight,
                   drawing::Handle &hDib);
    /// Copies the bitmap at its own size. On failure PictureLoaded is false.
    void CreateFromPicture(const drawing::Picture &PictureSource);
    bool Create(std::int32_t lWidth, std::int32_t lHeight);
    std::int32_t BytesPerScanLine() const { return drawing::bytesPerRow(Width()); }

    /// Into this picture, and from this picture. A size below 0 is the picture's own.
    void LoadPictureBlt(drawing::Handle lhDC, std::int32_t lSrcLeft = 0, std::int32_t lSrcTop = 0,
                        std::int32_t lSrcWidth = -1, std::int32_t lSrcHeight = -1,
                        std::uint32_t eRop = drawing::SRCCOPY);
    void PaintPicture(drawing::Handle lhDC, std::int32_t lDestLeft = 0, std::int32_t lDestTop = 0,
                      std::int32_t lDestWidth = -1, std::int32_t lDestHeight = -1,
                      std::int32_t lSrcLeft = 0, std::int32_t lSrcTop = 0,
                      std::uint32_t eRop = drawing::SRCCOPY) const;

    void RandomiseBits(bool bGray);
    void ClearUp();
    /// A scaled copy, with PictureLoaded false; null on failure.
    std::unique_ptr<cJPEG> Resample(std::int32_t lNewHeight, std::int32_t lNewWidth) const;

private:
    void resampleBits(cJPEG &target) const;

    bool m_pictureLoaded = false;
    drawing::Handle m_hDib = 0;
    drawing::Handle m_hBmpOld = 0; // what the context held before
    drawing::Handle m_hDC = 0;
    std::uint8_t *m_bits = nullptr;
    drawing::BITMAPINFOHEADER m_info;
};

} // namespace veltrona
