#include "core/platform/xml/document.h"

#include "core/platform/xml/parser.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace veltrona::xml {

namespace {

ParseError systemError(int errorNumber) {
    ParseError error;
    error.errorCode = errorNumber;
    error.reason = errorNumber == EINVAL
                       ? QStringLiteral("It is a pipe or a device; only a plain file can be read.")
                       : QString::fromLocal8Bit(std::strerror(errorNumber));
    error.reason += QStringLiteral("\r\n");
    return error;
}

/// 0 if the path leads to a plain file that is open now. A pipe or a device would be read forever.
int open(QFile &file) {
    if (file.fileName().isEmpty())
        return ENOENT;
    const QFileInfo info(file.fileName());
    if (info.isDir())
        return EISDIR;
    if (info.exists() && !info.isFile())
        return EINVAL;
    errno = 0;
    if (file.open(QIODevice::ReadOnly))
        return 0;
    return errno != 0 ? errno : ENOENT;
}

} // namespace

bool Document::load(const QString &path) {
    QFile file(path);
    const int failed = open(file);
    ParseResult result;
    if (failed != 0)
        result.error = systemError(failed);
    else
        result = parse(file);
    const bool good = result.error.errorCode == 0;
    m_error = std::move(result.error);
    if (!good) {
        m_error.url = path;
        return false;
    }
    m_nodes = std::move(result.nodes);
    m_refusal = std::move(result.refusal);
    m_path = path;
    return true;
}

} // namespace veltrona::xml
