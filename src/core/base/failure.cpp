#include "core/base/failure.h"

namespace veltrona {

Failure::Failure(int number, QString text)
    : m_number(number), m_text(std::move(text)), m_what(m_text.toUtf8()) {}

Failure Failure::ofSystem(int errorNumber, const QString &action, const QString &path) {
    return {errorNumber, action + QStringLiteral(" \"") + path + QStringLiteral("\": ") +
                             qt_error_string(errorNumber) + QLatin1Char('.')};
}

} // namespace veltrona
