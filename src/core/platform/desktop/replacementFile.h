// A file that is written beside its target and renamed to the target's name when it is complete and
// on the disk, so that a failure or a power cut leaves the older file as it was. The object owns
// the unfinished file and removes it unless it was committed.
//
// A killed program leaves its unfinished file. Its name contains the program's name and process
// number, and it is locked (flock). The next replacement in the same folder removes the files of
// processes that are gone, unless a program on another computer has locked them.
#pragma once

#include <QString>

#include <cstdio>
#include <string_view>

namespace veltrona::desktop {

/// An open file with an exclusive lock, also against other locks of this program. Owns the handle.
class FileLock {
public:
    FileLock() = default;
    /// `openFlags` and `mode` are those of open(2).
    FileLock(const QString &path, int openFlags, unsigned mode = 0);
    ~FileLock();
    FileLock(FileLock &&other) noexcept;
    FileLock &operator=(FileLock &&other) noexcept;

    bool isOpen() const { return m_handle >= 0; }
    int handle() const { return m_handle; }
    /// The system's: why it isn't open or locked; 0 if it is.
    int error() const { return m_error; }
    /// False if another program has locked it; true on a file system without locks.
    bool isLocked() const;
    /// Whether the file still has a name.
    bool isLinked() const;

private:
    int m_handle = -1;
    int m_error = 0;
};

/// Waits three seconds at most for the process that has locked the folder; the lock isn't held
/// then.
FileLock lockFolder(const QString &folder);

/// Opens a duplicate of `handle`, or if that is negative the file or device `name`, emptied. Null
/// with errno on failure. Doesn't wait for a pipe or socket: it fails with ENXIO.
std::FILE *openForWriting(int handle, const char *name);

/// A name for an unfinished file in the folder of `target`; short, since the target's own name may
/// be as long as the file system allows.
QString unfinishedName(const QString &target);

class ReplacementFile {
    Q_DISABLE_COPY_MOVE(ReplacementFile)
public:
    /// Creates the unfinished file; if that fails, `write` says why. A link is followed: the file
    /// that it points to is replaced. `action` begins the texts of failures.
    explicit ReplacementFile(const QString &target,
                             const QString &action = QStringLiteral("Can't write the file"));
    ~ReplacementFile();

    /// Where the content is until commit: a short name in the target's folder. A device can't be
    /// replaced, so it is the target itself.
    const QString &path() const { return m_path; }
    /// For writing to path(); -1 for a device.
    int handle() const { return m_lock.handle(); }
    /// The file that is replaced, after following links.
    const QString &target() const { return m_target; }

    /// Writes the whole content. Throws Failure, which names the target.
    void write(std::string_view content);
    /// The file gets the permissions of the one that it replaces. Throws Failure; a target without
    /// write permission isn't changed.
    void commit();

private:
    bool replaces() const { return m_path != m_target; }
    [[noreturn]] void fail(int error) const;

    QString m_name; // as the user knows it
    QString m_action;
    QString m_target;
    QString m_path;
    FileLock m_lock; // of the unfinished file
    int m_error = 0; // why there is none
    bool m_committed = false;
};

} // namespace veltrona::desktop
