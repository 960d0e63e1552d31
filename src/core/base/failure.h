// The exception for what the user has to know: a failure of SQLite or the file system, a project or
// a report that can't be used, with a number and a text to show. The XML parser and the picture
// codec return their failures.
#pragma once

#include <QByteArray>
#include <QString>

#include <exception>
#include <utility>

namespace veltrona {

class Failure : public std::exception {
public:
    /// `number` is the failing component's code, such as SQLite's extended result code or errno;
    /// `text` is a whole sentence that names the file concerned.
    Failure(int number, QString text)
        : m_number(number), m_text(std::move(text)), m_what(m_text.toUtf8()) {}

    int number() const noexcept { return m_number; }
    const QString &text() const noexcept { return m_text; }
    const char *what() const noexcept override { return m_what.constData(); }

    /// A failure of the file system, with the text of errno.
    static Failure ofSystem(int errorNumber, const QString &action, const QString &path) {
        return {errorNumber, action + QLatin1String(" \"") + path + QLatin1String("\": ") +
                                 qt_error_string(errorNumber) + QLatin1Char('.')};
    }

private:
    int m_number;
    QString m_text;
    QByteArray m_what;
};

} // namespace veltrona
