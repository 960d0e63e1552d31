// The header of a database file, the first 100 bytes of its first page, in SQLite's file format.
#pragma once

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace veltrona::sqlite {

inline std::uint32_t bigEndian(std::span<const unsigned char> bytes, std::size_t offset) {
    return qFromBigEndian<std::uint32_t>(bytes.data() + offset);
}

struct FileHeader {
    static constexpr std::size_t size = 100; // bytes
    static constexpr std::uint32_t minPageSize = 512;
    static constexpr std::uint32_t maxPageSize = 65536;

    std::array<unsigned char, size> bytes{}; // as they are in the file

    /// Whether it begins as every database does.
    bool isDatabase() const {
        constexpr std::string_view magic("SQLite format 3\0", 16);
        return std::equal(magic.begin(), magic.end(), bytes.begin());
    }
    /// In bytes; the field of two bytes has 1 for the largest size.
    std::uint32_t pageSize() const {
        const std::uint32_t field = bigEndian(bytes, 16) >> 16;
        return field == 1 ? maxPageSize : field;
    }
    std::uint32_t changeCounter() const { return bigEndian(bytes, 24); }
    /// 0 where the last writer didn't keep the field.
    std::uint32_t pageCount() const {
        return changeCounter() == bigEndian(bytes, 92) ? bigEndian(bytes, 28) : 0;
    }
    std::int64_t userVersion() const { return bigEndian(bytes, 60); }
    std::int64_t applicationId() const { return bigEndian(bytes, 68); }

    friend bool operator==(const FileHeader &, const FileHeader &) = default;
};

} // namespace veltrona::sqlite
