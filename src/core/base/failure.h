// The one exception type of the platform layer: a failure of the database engine, the XML parser,
// the picture codec or the file system, with a number and a text that a user can be shown.
#pragma once

#include <QString>

#include <exception>

namespace veltrona {

class Failure : public std::exception {
public:
    /// `number` is the failing component's own code (SQLite's extended result code, errno and so
    /// on); `text` is a whole sentence that names the file concerned.
    Failure(int number, QString text);

    int number() const noexcept { return m_number; }
    const QString &text() const noexcept { return m_text; }
    const char *what() const noexcept override { return m_what.constData(); }

    /// A failure of the file system, worded from errno.
    static Failure ofSystem(int errorNumber, const QString &action, const QString &path);

private:
    int m_number;
    QString m_text;
    QByteArray m_what;
};

} // namespace veltrona
