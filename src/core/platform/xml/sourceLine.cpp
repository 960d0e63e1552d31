#include "core/platform/xml/sourceLine.h"

#include <QFile>
#include <QStringDecoder>

#include <libxml/encoding.h>

#include <memory>

namespace veltrona::xml {

namespace {

// In bytes of the file: what is shown of a long line before and behind the position.
constexpr qint64 before = 160;
constexpr qint64 behind = 80;

using BufferPointer = std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)>;

bool isWide(const QByteArray &encoding) {
    return encoding.toUpper().startsWith("UTF-16");
}

QString decoded(const QByteArray &bytes, const QByteArray &encoding) {
    if (isWide(encoding)) {
        const bool big = encoding.toUpper().endsWith("BE");
        return QStringDecoder(big ? QStringConverter::Utf16BE : QStringConverter::Utf16LE)(bytes);
    }
    xmlCharEncodingHandler *handler =
        encoding.isEmpty() ? nullptr : xmlFindCharEncodingHandler(encoding.constData());
    if (handler == nullptr)
        return QString::fromUtf8(bytes);
    const BufferPointer in(xmlBufferCreate(), &xmlBufferFree);
    const BufferPointer out(xmlBufferCreate(), &xmlBufferFree);
    xmlBufferAdd(in.get(), reinterpret_cast<const xmlChar *>(bytes.constData()),
                 static_cast<int>(bytes.size()));
    const bool good = xmlCharEncInFunc(handler, out.get(), in.get()) >= 0;
    xmlCharEncCloseFunc(handler);
    return good ? QString::fromUtf8(reinterpret_cast<const char *>(xmlBufferContent(out.get())))
                : QString::fromLatin1(bytes);
}

} // namespace

QString sourceLine(QFile &file, qint64 position, const QByteArray &encoding) {
    const qint64 unit = isWide(encoding) ? 2 : 1;
    const qint64 at = position - position % unit;
    const qint64 from = std::max<qint64>(0, at - before * unit);
    if (!file.seek(from))
        return {};
    const QString left = decoded(file.read(at - from), encoding);
    const QString right = decoded(file.read(behind * unit), encoding);
    qsizetype start = left.lastIndexOf(QLatin1Char('\n')) + 1;
    const bool cutLeft = start == 0 && from > 0;
    qsizetype end = right.indexOf(QLatin1Char('\n'));
    const bool cutRight = end < 0 && !file.atEnd();
    if (end < 0)
        end = right.size();
    QString line = left.mid(start) + right.left(end);
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    line = line.trimmed();
    const QString dots = QStringLiteral("...");
    return (cutLeft ? dots : QString()) + line + (cutRight ? dots : QString());
}

} // namespace veltrona::xml
