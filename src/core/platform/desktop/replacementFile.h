// A file that is written beside its target and put in the target's place when it is complete and on
// the disk, so that a failure or a power cut leaves an older file as it was. The object owns the
// unfinished file and removes it unless it was committed.
#pragma once

#include <QString>

#include <string_view>

namespace veltrona::desktop {

class ReplacementFile {
public:
    /// Touches nothing yet. A link is followed: what it points at is replaced. `action` begins the
    /// texts of failures.
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
    bool m_committed = false;
};

} // namespace veltrona::desktop
