// Writes a whole picture as a JPEG file. The pixels are read in place: 24 bits in the order blue,
// green, red. The caller owns pixels, file name and handle until ijlFree; the record owns the
// encoder from ijlInit to ijlFree.
#pragma once

#include <cstdint>

namespace veltrona::ijl {

struct Encoder;

struct JPEG_CORE_PROPERTIES {
    const std::uint8_t *DIBBytes;
    std::int32_t DIBWidth;
    std::int32_t DIBHeight;   // below zero: the first row in memory is the bottom one
    std::int32_t DIBPadBytes; // after the last pixel of each row
    const char *JPGFile;      // in the system's own encoding, zero-terminated
    int handle;               // of the open file to write to; below zero: JPGFile is opened
    std::int32_t JPGWidth;
    std::int32_t JPGHeight;
    std::int32_t jquality; // 1 to 100

    Encoder *encoder;
    char message[200]; // the library's or the system's text of the last failure
};

inline constexpr std::int32_t IJL_JFILE_WRITEWHOLEIMAGE = 8;

/// A failure without a code here is firstCodeOfLibrary plus the message number of libjpeg, whose
/// text is in `message`.
enum Result : std::int32_t {
    IJL_OK = 0,
    IJL_MEMORY_ERROR = -5,
    IJL_INVALID_JPEG_PROPERTIES = -8,
    IJL_ERR_FILECLOSE = -9,
    IJL_INVALID_FILENAME = -10,
    IJL_FILE_ERROR = -23,
};
inline constexpr std::int32_t firstCodeOfLibrary = 1000;

std::int32_t ijlInit(JPEG_CORE_PROPERTIES *record);
/// Replaces a file of that name. A failure leaves no file, neither an incomplete one nor the older.
std::int32_t ijlWrite(JPEG_CORE_PROPERTIES *record, std::int32_t mode);
std::int32_t ijlFree(JPEG_CORE_PROPERTIES *record);

} // namespace veltrona::ijl
