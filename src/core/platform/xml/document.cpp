#include "core/platform/xml/document.h"

#include "core/base/text.h"
#include "core/platform/desktop/paths.h"
#include "core/platform/xml/saxReader.h"

#include <QFile>

#include <cerrno>

namespace veltrona::xml {

namespace {

ParseError systemError(int errorNumber) {
    const QString reason = errorNumber == EINVAL
                               ? u"It is a pipe or a device; only a plain file can be read."_s
                               : qt_error_string(errorNumber);
    return {.errorCode = errorNumber, .reason = reason + u"\r\n"_s};
}

/// The error number of the system, 0 if an ordinary file is open now.
int open(QFile &file) {
    const int unusable = desktop::ordinaryFileError(file.fileName());
    if (file.fileName().isEmpty() || (unusable != 0 && unusable != ENOENT))
        return unusable;
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
        result = SaxReader(file).run();
    m_error = std::move(result.error);
    if (m_error.errorCode != 0) {
        m_error.url = path;
        return false;
    }
    m_nodes = std::move(result.nodes);
    m_refusal = std::move(result.refusal);
    m_path = path;
    return true;
}

} // namespace veltrona::xml
