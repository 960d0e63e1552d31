// The chart's JPEG file, compared with libjpeg-turbo alone on the same pixels.
#include "core/picture/cJPEG.h"
#include "core/picture/modJPEG.h"

#include <QString>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <jpeglib.h>
#include <vector>

namespace veltrona::bench {

namespace {

constexpr int width = 1600;
constexpr int height = 800;
constexpr int quality = 90;
constexpr const char *ourFile = BENCH_FOLDER "/ours.jpg";
constexpr const char *otherFile = BENCH_FOLDER "/other.jpg";

/// Bars on white, blue-green-red, the bottom row first.
void paint(std::uint8_t *bits, int bytesPerRow) {
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const bool bar = x % 18 > 4 && y < (x / 18 * 137) % 700;
            std::uint8_t *pixel = bits + static_cast<std::ptrdiff_t>(y) * bytesPerRow + x * 3;
            std::fill_n(pixel, 3, std::uint8_t{255});
            if (bar)
                pixel[2] = pixel[1] = 80;
        }
}

void jpeg(benchmark::State &state) {
    cJPEG picture;
    if (!picture.Create(width, height))
        return state.SkipWithError("no picture");
    paint(picture.DIBSectionBitsPtr(), picture.BytesPerScanLine());
    picture.setPictureLoaded(true);
    std::int32_t number = 0;
    QString text;
    for ([[maybe_unused]] auto _ : state)
        if (!modJPEG::saveJPEG(picture, QString::fromUtf8(ourFile), quality, false, number, text))
            return state.SkipWithError(text.toUtf8().constData());
}

void jpegBaseline(benchmark::State &state) {
    const int bytesPerRow = width * 3;
    std::vector<std::uint8_t> bits(static_cast<std::size_t>(bytesPerRow) * height);
    paint(bits.data(), bytesPerRow);
    for ([[maybe_unused]] auto _ : state) {
        jpeg_compress_struct codec{};
        jpeg_error_mgr errors{};
        codec.err = jpeg_std_error(&errors);
        jpeg_create_compress(&codec);
        FILE *file = std::fopen(otherFile, "wb");
        jpeg_stdio_dest(&codec, file);
        codec.image_width = width;
        codec.image_height = height;
        codec.input_components = 3;
        codec.in_color_space = JCS_EXT_BGR;
        jpeg_set_defaults(&codec);
        jpeg_set_quality(&codec, quality, TRUE);
        jpeg_start_compress(&codec, TRUE);
        for (int y = height - 1; y >= 0; --y) {
            JSAMPROW row = bits.data() + static_cast<std::ptrdiff_t>(y) * bytesPerRow;
            jpeg_write_scanlines(&codec, &row, 1);
        }
        jpeg_finish_compress(&codec);
        std::fclose(file);
        jpeg_destroy_compress(&codec);
    }
}

BENCHMARK(jpeg)->Name("jpeg/ours");
BENCHMARK(jpegBaseline)->Name("jpeg/baseline");

} // namespace

} // namespace veltrona::bench
