#include "core/platform/xml/bounds.h"

#include "core/base/text.h"

#include <QFile>

#include <algorithm>

namespace veltrona::xml {

namespace {

// Entities and defaults may enlarge a file as much as another encoding could.
constexpr std::size_t maxGrowth = 4;
constexpr std::size_t freeGrowth = std::size_t(1) << 20;
constexpr std::size_t namespaceBytes = 12; // the shortest declaration in a file
constexpr std::size_t contentWork = 64;    // bytes that take as long as one entity

/// By its byte order mark, or by its first "<".
bool isUtf32(QFile &file) {
    const QByteArrayView starts[] = {
        {"\xFF\xFE\0\0", 4}, {"\0\0\xFE\xFF", 4}, {"<\0\0\0", 4}, {"\0\0\0<", 4}};
    file.seek(0);
    return std::ranges::count(starts, file.read(4)) > 0;
}

} // namespace

void ExpansionBudget::addEntity(std::size_t length, bool isInContent) {
    entityBytes += length + (isInContent ? contentWork : 1);
}

bool ExpansionBudget::isTooLarge(std::size_t nodeBytes) const {
    const std::size_t limit = maxGrowth * bytesRead + freeGrowth;
    return entityBytes > limit || nodeBytes + namespaceBytes * namespaces > limit;
}

QString refusalOf(const Limit &limit) {
    return QString::fromLatin1(limit.refusal).replace(u"%1"_s, QString::number(limit.max));
}

QString plainReason(const QString &reason, QFile &file) {
    if (file.size() == 0)
        return u"The file is empty."_s;
    if (isUtf32(file))
        return u"The file is in UTF-32, which can't be read. Save it in UTF-8."_s;
    if (reason.startsWith(u"Document is empty"_s))
        return u"The file holds no XML document."_s;
    if (reason.contains(u"Huge input lookup"_s))
        return u"A name or another piece of the file is longer than 10,000,000 bytes."_s;
    return reason.simplified();
}

} // namespace veltrona::xml
