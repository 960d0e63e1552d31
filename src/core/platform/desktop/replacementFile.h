// A file that is written beside its target and put in the target's place when it is complete and on
// the disk, so that a failure or a power cut leaves an older file as it was. The object owns the
// unfinished file and removes it unless it was committed.
//
// A killed program leaves its unfinished file. Each carries the program's process number and is
// held by a lock of the system's (flock); the next one in the same folder removes those of
// processes that are gone, unless they are held, by a program on another computer.
#pragma once

#include <QString>

#include <string_view>

namespace veltrona::desktop {

/// An open file that no other program, and no other hold of this one, can hold. Owns the handle.
class FileHold {
public:
    FileHold() = default;
    /// `openFlags` are those of open(2).
    FileHold(const QString &path, int openFlags);
    ~FileHold();
    FileHold(FileHold &&other) noexcept;
    FileHold &operator=(FileHold &&other) noexcept;

    bool isOpen() const { return m_handle >= 0; }
    int handle() const { return m_handle; }
    /// Of the system: why it isn't open, or isn't held; 0 if all is well.
    int error() const { return m_error; }
    /// False if another program holds it. A file system without locks counts as held.
    bool isHeld() const;
    /// Whether the name that was opened still leads to it.
    bool isLinked() const;

private:
    int m_handle = -1;
    int m_error = 0;
};

/// A name for an unfinished file in the folder of `target`; short, since the target's own name may
/// be as long as the file system allows.
QString unfinishedName(const QString &target);

class ReplacementFile {
public:
    /// Makes the unfinished file, if that can be; `write` tells why it couldn't. A link is
    /// followed: what it points at is replaced. `action` begins the texts of failures.
    explicit ReplacementFile(const QString &target,
                             const QString &action = QStringLiteral("Can't write the file"));
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile &) = delete;
    ReplacementFile &operator=(const ReplacementFile &) = delete;

    /// Where the content belongs until commit: a short name of its own in the target's folder. A
    /// device or pipe can't be replaced, so there it is the target itself.
    const QString &path() const { return m_path; }
    /// What is replaced, behind all links.
    const QString &target() const { return m_target; }

    /// Writes the whole content. Throws Failure, which names the target.
    void write(std::string_view content);
    /// Throws Failure; a target that may not be written is left alone.
    void commit();

private:
    bool replaces() const { return m_path != m_target; }
    [[noreturn]] void fail(int error) const;

    QString m_name; // as the user knows it
    QString m_action;
    QString m_target;
    QString m_path;
    FileHold m_hold; // of the unfinished file
    int m_error = 0; // why there is none
    bool m_committed = false;
};

} // namespace veltrona::desktop
