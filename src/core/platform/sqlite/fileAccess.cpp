#include "core/platform/sqlite/fileAccess.h"

#include "core/platform/sqlite/fileHeader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

namespace veltrona::sqlite {

namespace {

namespace fs = std::filesystem;

constexpr auto notRegular =
    "the journal beside it isn't an ordinary file; move away what has its name with \"-journal\", "
    "\"-wal\" or \"-shm\" at the end";
constexpr auto severalFiles =
    "the journal beside it belongs to a change of several databases at once; only the program that "
    "made that change can take it back, so open the file with that program first";
constexpr auto otherState =
    "the journal beside it, left by a program that broke off, was made for another state of this "
    "file, as when a backup is put in a project's place; playing it back would spoil the file. If "
    "the file is the one that you want, move the journal (the same name with \"-journal\" at the "
    "end) to another folder and open the file again";

/// Links count as what they are, since SQLite would write through them.
bool isMissingOrRegular(const std::string &name) {
    std::error_code error;
    const fs::path path(std::u8string(name.begin(), name.end()));
    const fs::file_type type = fs::symlink_status(path, error).type();
    return type == fs::file_type::not_found || type == fs::file_type::regular;
}

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

/// Whether a rollback journal and the database file beside it belong together; false if the journal
/// was certainly written for another state of the database. SQLite takes it for granted: it plays a
/// crash's journal back into whatever file is there by now, and so silently corrupts a backup that
/// was put back meanwhile. Takes no lock and reads only the database's header.
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

} // namespace

FileAccess::FileAccess()
    : sqlite3_vfs(*sqlite3_vfs_find(nullptr)), m_system(sqlite3_vfs_find(nullptr)),
      m_name("veltrona-" + std::to_string(reinterpret_cast<std::uintptr_t>(this))) {
    pNext = nullptr;
    zName = m_name.c_str();
    xOpen = open;
    xDelete = remove;
    xAccess = access;
    sqlite3_vfs_register(this, 0);
}

FileAccess::~FileAccess() {
    sqlite3_vfs_unregister(this);
}

sqlite3_int64 FileAccess::databaseSize() const {
    return m_database && m_database->pMethods ? sizeOf(*m_database) : 0;
}

int FileAccess::open(sqlite3_vfs *vfs, sqlite3_filename name, sqlite3_file *file, int flags,
                     int *outFlags) {
    FileAccess &self = of(vfs);
    file->pMethods = nullptr;
    if (flags & SQLITE_OPEN_SUPER_JOURNAL)
        return self.refuse(SQLITE_CANTOPEN, severalFiles);
    if (flags & (SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL))
        return self.openSideFile(name, file, flags, outFlags);
    if (flags & SQLITE_OPEN_MAIN_DB) {
        self.m_path = name;
        self.m_database = file;
    }
    return self.m_system->xOpen(self.m_system, name, file, flags, outFlags);
}

int FileAccess::openSideFile(sqlite3_filename name, sqlite3_file *file, int flags, int *outFlags) {
    // SQLite opens the -shm file by itself, together with the -wal.
    const bool isLog = flags & SQLITE_OPEN_WAL;
    if (!isMissingOrRegular(name) || (isLog && !isMissingOrRegular(m_path + "-shm")))
        return refuse(SQLITE_CANTOPEN, notRegular);
    const int code = m_system->xOpen(m_system, name, file, flags, outFlags);
    // A journal that is opened for writing and not created is about to be played back; SQLite holds
    // the exclusive lock by now.
    const bool isPlayback =
        !isLog && (flags & SQLITE_OPEN_READWRITE) && !(flags & SQLITE_OPEN_CREATE);
    if (code != SQLITE_OK || !isPlayback || belongsTogether(*file, *m_database))
        return code;
    file->pMethods->xClose(file);
    file->pMethods = nullptr;
    return refuse(SQLITE_CANTOPEN, otherState);
}

int FileAccess::remove(sqlite3_vfs *vfs, const char *name, int syncsFolder) {
    FileAccess &self = of(vfs);
    if (!self.isOwn(name) || name == self.m_path)
        return self.refuse(SQLITE_IOERR_DELETE, severalFiles);
    return self.m_system->xDelete(self.m_system, name, syncsFolder);
}

/// Whether a file that a journal names exists would decide what becomes of that journal.
int FileAccess::access(sqlite3_vfs *vfs, const char *name, int flags, int *result) {
    FileAccess &self = of(vfs);
    if (!self.isOwn(name))
        return self.refuse(SQLITE_IOERR_ACCESS, severalFiles);
    return self.m_system->xAccess(self.m_system, name, flags, result);
}

bool FileAccess::isOwn(const char *name) const {
    return name == m_path || name == m_path + "-journal" || name == m_path + "-wal";
}

int FileAccess::refuse(int code, const char *reason) {
    m_refusal = reason;
    return code;
}

} // namespace veltrona::sqlite
