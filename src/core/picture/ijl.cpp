#include "core/picture/ijl.h"

#include "core/platform/desktop/replacementFile.h"

#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

#include <jerror.h>
#include <jpeglib.h>

namespace veltrona::ijl {

/// Plain data: libjpeg leaves a failed call by longjmp, which runs no destructors.
struct Encoder {
    jpeg_compress_struct compress;
    jpeg_error_mgr errors;
    std::jmp_buf leave;
};

namespace {

constexpr JDIMENSION rowsAtOnce = 16;

extern "C" {
void leaveFailedCall(j_common_ptr compress) {
    std::longjmp(static_cast<Encoder *>(compress->client_data)->leave, 1);
}
// libjpeg's own would write to standard error.
void dropMessage(j_common_ptr) {}
void dropTrace(j_common_ptr, int) {}
}

std::int32_t resultOf(Encoder &encoder, char (&message)[200]) {
    static_assert(sizeof message >= JMSG_LENGTH_MAX);
    encoder.errors.format_message(reinterpret_cast<j_common_ptr>(&encoder.compress), message);
    switch (encoder.errors.msg_code) {
    case JERR_OUT_OF_MEMORY:
        return IJL_MEMORY_ERROR;
    case JERR_EMPTY_IMAGE:
    case JERR_IMAGE_TOO_BIG:
    case JERR_WIDTH_OVERFLOW:
        return IJL_INVALID_JPEG_PROPERTIES;
    case JERR_FILE_WRITE:
        return IJL_FILE_ERROR;
    default:
        return firstCodeOfLibrary + encoder.errors.msg_code;
    }
}

/// Must have no object with a destructor, and no local that changes after setjmp.
std::int32_t encode(JPEG_CORE_PROPERTIES &record, std::FILE *file) {
    Encoder &encoder = *record.encoder;
    jpeg_compress_struct *const compress = &encoder.compress;
    if (setjmp(encoder.leave) != 0) {
        const std::int32_t result = resultOf(encoder, record.message);
        jpeg_abort_compress(compress);
        return result;
    }
    compress->image_width = static_cast<JDIMENSION>(record.JPGWidth);
    compress->image_height = static_cast<JDIMENSION>(record.JPGHeight);
    compress->input_components = 3;
    compress->in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(compress);
    jpeg_set_quality(compress, record.jquality, TRUE);
    jpeg_stdio_dest(compress, file);
    jpeg_start_compress(compress, TRUE);
    const std::ptrdiff_t stride = std::ptrdiff_t(record.DIBWidth) * 3 + record.DIBPadBytes;
    while (compress->next_scanline < compress->image_height) {
        JSAMPROW rows[rowsAtOnce];
        JDIMENSION count = 0;
        for (; count < rowsAtOnce && compress->next_scanline + count < compress->image_height;
             ++count) {
            const std::ptrdiff_t fromTop = compress->next_scanline + count;
            const std::ptrdiff_t row =
                record.DIBHeight < 0 ? record.JPGHeight - 1 - fromTop : fromTop;
            rows[count] = const_cast<JSAMPROW>(record.DIBBytes + row * stride);
        }
        jpeg_write_scanlines(compress, rows, count);
    }
    jpeg_finish_compress(compress);
    return IJL_OK;
}

bool isWritable(const JPEG_CORE_PROPERTIES &record) {
    return record.encoder && record.DIBBytes && record.DIBWidth > 0 && record.DIBPadBytes >= 0 &&
           record.DIBWidth == record.JPGWidth && record.JPGHeight > 0 &&
           (record.DIBHeight == record.JPGHeight || record.DIBHeight == -record.JPGHeight) &&
           record.jquality >= 1 && record.jquality <= 100;
}

std::int32_t resultOfOpening(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case EISDIR:
    case ENAMETOOLONG:
    case EINVAL:
        return IJL_INVALID_FILENAME;
    case ENOMEM:
        return IJL_MEMORY_ERROR;
    default:
        return IJL_FILE_ERROR;
    }
}

void setMessage(JPEG_CORE_PROPERTIES &record, int error) {
    const std::string reason = std::generic_category().message(error);
    record.message[reason.copy(record.message, sizeof record.message - 1)] = '\0';
}

bool startEncoder(Encoder &encoder) {
    if (setjmp(encoder.leave) != 0)
        return false;
    jpeg_create_compress(&encoder.compress);
    return true;
}

} // namespace

std::int32_t ijlInit(JPEG_CORE_PROPERTIES *record) {
    if (!record)
        return IJL_INVALID_JPEG_PROPERTIES;
    *record = {};
    record->jquality = 75;
    record->handle = -1;
    record->encoder = new (std::nothrow) Encoder{};
    if (!record->encoder)
        return IJL_MEMORY_ERROR;
    Encoder &encoder = *record->encoder;
    encoder.compress.err = jpeg_std_error(&encoder.errors);
    encoder.errors.error_exit = leaveFailedCall;
    encoder.errors.output_message = dropMessage;
    encoder.errors.emit_message = dropTrace;
    encoder.compress.client_data = &encoder;
    if (startEncoder(encoder))
        return IJL_OK;
    const std::int32_t result = resultOf(encoder, record->message);
    ijlFree(record);
    return result;
}

std::int32_t ijlWrite(JPEG_CORE_PROPERTIES *record, std::int32_t mode) {
    if (!record || mode != IJL_JFILE_WRITEWHOLEIMAGE || !isWritable(*record))
        return IJL_INVALID_JPEG_PROPERTIES;
    if (!record->JPGFile || record->JPGFile[0] == '\0')
        return IJL_INVALID_FILENAME;
    const bool isNamed = record->handle < 0;
    std::FILE *const file = desktop::openForWriting(record->handle, record->JPGFile);
    if (!file) {
        const int error = errno;
        setMessage(*record, error);
        return resultOfOpening(error);
    }
    std::int32_t result = encode(*record, file);
    if (std::fclose(file) != 0 && result == IJL_OK) {
        setMessage(*record, errno);
        result = IJL_ERR_FILECLOSE;
    }
    std::error_code ignored; // the first failure is reported
    if (result != IJL_OK && isNamed && std::filesystem::is_regular_file(record->JPGFile, ignored))
        std::remove(record->JPGFile);
    return result;
}

std::int32_t ijlFree(JPEG_CORE_PROPERTIES *record) {
    if (!record)
        return IJL_INVALID_JPEG_PROPERTIES;
    if (record->encoder) {
        jpeg_destroy_compress(&record->encoder->compress);
        delete record->encoder;
        record->encoder = nullptr;
    }
    return IJL_OK;
}

} // namespace veltrona::ijl
