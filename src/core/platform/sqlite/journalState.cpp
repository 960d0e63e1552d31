#include "core/platform/sqlite/journalState.h"

#include <QtEndian>

#include <array>
#include <cstring>
#include <optional>
#include <span>
#include <sqlite3.h>
#include <vector>

namespace veltrona::sqlite {

namespace {

using Bytes = std::span<const unsigned char>;

quint32 number(Bytes bytes, std::size_t offset) {
    return qFromBigEndian<quint32>(bytes.data() + offset);
}

sqlite3_int64 sizeOf(sqlite3_file &file) {
    sqlite3_int64 size = 0;
    return file.pMethods->xFileSize(&file, &size) == SQLITE_OK ? size : 0;
}

bool read(sqlite3_file &file, std::span<unsigned char> bytes, sqlite3_int64 offset) {
    return file.pMethods->xRead(&file, bytes.data(), static_cast<int>(bytes.size()), offset) ==
           SQLITE_OK;
}

constexpr std::size_t headerSize = 100;
using DatabaseHeader = std::array<unsigned char, headerSize>;

quint32 changeCounter(const DatabaseHeader &header) {
    return number(header, 24);
}

/// 0 where the last writer didn't keep the field.
quint32 pageCount(const DatabaseHeader &header) {
    return changeCounter(header) == number(header, 92) ? number(header, 28) : 0;
}

bool samePageSize(const DatabaseHeader &first, const DatabaseHeader &second) {
    return std::equal(first.begin() + 16, first.begin() + 18, second.begin() + 16);
}

struct JournalHeader {
    quint32 records;
    quint32 checksumStart;
    quint32 pagesBefore; // of the database, when the transaction began
    quint32 sectorSize;
    quint32 pageSize;
};

bool isPowerOfTwo(quint32 number, quint32 least, quint32 most) {
    return number >= least && number <= most && (number & (number - 1)) == 0;
}

std::optional<JournalHeader> readJournalHeader(sqlite3_file &journal, sqlite3_int64 offset) {
    constexpr unsigned char magic[] = {0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd7};
    std::array<unsigned char, 28> bytes{};
    if (!read(journal, bytes, offset) || std::memcmp(bytes.data(), magic, sizeof magic) != 0)
        return std::nullopt;
    const JournalHeader header{number(bytes, 8), number(bytes, 12), number(bytes, 16),
                               number(bytes, 20), number(bytes, 24)};
    if (!isPowerOfTwo(header.sectorSize, 32, 65536) || !isPowerOfTwo(header.pageSize, 512, 65536))
        return std::nullopt;
    return header;
}

/// As the engine sums up each 200th byte of a page that was kept.
quint32 checksum(Bytes page, quint32 start) {
    for (std::size_t i = page.size() - 200; i > 0 && i < page.size(); i -= 200)
        start += page[i];
    return start;
}

/// The database's first page as the journal keeps it, if that record is whole.
std::optional<DatabaseHeader> keptFirstPage(sqlite3_file &journal, const JournalHeader &first) {
    constexpr quint32 untilTheEnd = 0xffffffff;
    const sqlite3_int64 size = sizeOf(journal);
    const sqlite3_int64 sector = first.sectorSize;
    const sqlite3_int64 recordSize = sqlite3_int64(first.pageSize) + 8;
    std::vector<unsigned char> record(static_cast<std::size_t>(recordSize));
    const Bytes page(record.data() + 4, first.pageSize);
    sqlite3_int64 offset = 0;
    while (const std::optional<JournalHeader> header = readJournalHeader(journal, offset)) {
        offset += sector;
        for (quint32 i = 0; i < header->records && offset + recordSize <= size; ++i) {
            if (!read(journal, std::span(record).first(4), offset))
                return std::nullopt;
            if (number(record, 0) == 1) {
                if (!read(journal, record, offset) ||
                    number(record, 4 + page.size()) != checksum(page, header->checksumStart))
                    return std::nullopt;
                DatabaseHeader kept{};
                std::copy_n(page.begin(), kept.size(), kept.begin());
                return kept;
            }
            offset += recordSize;
        }
        if (header->records == untilTheEnd)
            break;
        offset = (offset + sector - 1) / sector * sector;
    }
    return std::nullopt;
}

} // namespace

bool belongsTogether(sqlite3_file &journal, sqlite3_file &database) {
    const std::optional<JournalHeader> header = readJournalHeader(journal, 0);
    if (!header)
        return true; // nothing that could be played back
    DatabaseHeader now{};
    if (sizeOf(database) < sqlite3_int64(header->pagesBefore) * header->pageSize ||
        !read(database, now, 0))
        return false;
    const std::optional<DatabaseHeader> kept = keptFirstPage(journal, *header);
    if (!kept) // the transaction had not come to the first page
        return pageCount(now) <= header->pagesBefore;
    if (pageCount(*kept) > header->pagesBefore || !samePageSize(*kept, now))
        return false;
    // A transaction counts up once, with the first page that it writes.
    return changeCounter(now) == changeCounter(*kept)
               ? now == *kept
               : changeCounter(now) == changeCounter(*kept) + 1;
}

} // namespace veltrona::sqlite
