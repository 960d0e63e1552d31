#include "core/platform/sqlite/journalState.h"

#include "core/platform/sqlite/fileHeader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <sqlite3.h>
#include <vector>

namespace veltrona::sqlite {

namespace {

using Bytes = std::span<const unsigned char>;

sqlite3_int64 sizeOf(sqlite3_file &file) {
    sqlite3_int64 size = 0;
    return file.pMethods->xFileSize(&file, &size) == SQLITE_OK ? size : 0;
}

bool read(sqlite3_file &file, std::span<unsigned char> bytes, sqlite3_int64 offset) {
    return file.pMethods->xRead(&file, bytes.data(), static_cast<int>(bytes.size()), offset) ==
           SQLITE_OK;
}

struct JournalHeader {
    std::uint32_t records;
    std::uint32_t checksumStart;
    std::uint32_t pagesBefore; // of the database, when the transaction began
    std::uint32_t sectorSize;
    std::uint32_t pageSize;
};

bool isPageSize(std::uint32_t number, std::uint32_t least) {
    return std::has_single_bit(number) && number >= least && number <= FileHeader::maxPageSize;
}

std::optional<JournalHeader> readJournalHeader(sqlite3_file &journal, sqlite3_int64 offset) {
    constexpr unsigned char magic[] = {0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd7};
    std::array<unsigned char, 28> bytes{};
    if (!read(journal, bytes, offset) || std::memcmp(bytes.data(), magic, sizeof magic) != 0)
        return std::nullopt;
    const JournalHeader header{bigEndian(bytes, 8), bigEndian(bytes, 12), bigEndian(bytes, 16),
                               bigEndian(bytes, 20), bigEndian(bytes, 24)};
    if (!isPageSize(header.sectorSize, 32) || !isPageSize(header.pageSize, FileHeader::minPageSize))
        return std::nullopt;
    return header;
}

/// As SQLite computes it: the sum of every 200th byte.
std::uint32_t checksum(Bytes page, std::uint32_t start) {
    for (std::size_t i = page.size() - 200; i > 0 && i < page.size(); i -= 200)
        start += page[i];
    return start;
}

/// The header of the database's first page as the journal has it, if that record is complete.
std::optional<FileHeader> keptFirstPage(sqlite3_file &journal, const JournalHeader &first) {
    constexpr std::uint32_t toTheEnd = 0xffffffff;
    const sqlite3_int64 size = sizeOf(journal);
    const sqlite3_int64 sector = first.sectorSize;
    const sqlite3_int64 recordSize = sqlite3_int64(first.pageSize) + 8;
    std::vector<unsigned char> record(static_cast<std::size_t>(recordSize));
    const Bytes page(record.data() + 4, first.pageSize);
    sqlite3_int64 offset = 0;
    while (const std::optional<JournalHeader> header = readJournalHeader(journal, offset)) {
        offset += sector;
        for (std::uint32_t i = 0; i < header->records && offset + recordSize <= size; ++i) {
            if (!read(journal, std::span(record).first(4), offset))
                return std::nullopt;
            if (bigEndian(record, 0) == 1) {
                if (!read(journal, record, offset) ||
                    bigEndian(record, 4 + page.size()) != checksum(page, header->checksumStart))
                    return std::nullopt;
                FileHeader kept;
                std::copy_n(page.begin(), kept.size, kept.bytes.begin());
                return kept;
            }
            offset += recordSize;
        }
        if (header->records == toTheEnd)
            break;
        offset = (offset + sector - 1) / sector * sector;
    }
    return std::nullopt;
}

} // namespace

bool belongsTogether(sqlite3_file &journal, sqlite3_file &database) {
    const std::optional<JournalHeader> header = readJournalHeader(journal, 0);
    if (!header)
        return true; // nothing to play back
    FileHeader now;
    if (sizeOf(database) < sqlite3_int64(header->pagesBefore) * header->pageSize ||
        !read(database, now.bytes, 0))
        return false;
    const std::optional<FileHeader> kept = keptFirstPage(journal, *header);
    if (!kept) // the transaction hadn't changed the first page yet
        return now.pageCount() <= header->pagesBefore;
    if (kept->pageCount() > header->pagesBefore || kept->pageSize() != now.pageSize())
        return false;
    // A transaction increments the counter once, when it first writes a page.
    return now.changeCounter() == kept->changeCounter()
               ? now == *kept
               : now.changeCounter() == kept->changeCounter() + 1;
}

} // namespace veltrona::sqlite
