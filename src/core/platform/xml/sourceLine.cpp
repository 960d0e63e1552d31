#include "core/platform/xml/sourceLine.h"

#include "core/base/text.h"

#include <QFile>
#include <QStringDecoder>

#include <libxml/encoding.h>

#include <memory>

namespace veltrona::xml {

namespace {

// In bytes of the file: how much of a long line is shown before and after the position.
constexpr qint64 before = 160;
constexpr qint64 after = 80;

constexpr qint64 chunk = qint64(1) << 16;

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

/// Advances the place by the characters of `utf8`.
void advance(ParseError &place, std::string_view utf8) {
    for (const char c : utf8) {
        if (c == '\n') {
            ++place.line;
            place.linepos = 1;
        } else if ((c & 0xC0) != 0x80) {
            ++place.linepos;
        }
    }
}

std::string_view view(const BufferPointer &buffer) {
    return {reinterpret_cast<const char *>(xmlBufferContent(buffer.get())),
            static_cast<std::size_t>(xmlBufferLength(buffer.get()))};
}

} // namespace

QString sourceLine(QFile &file, qint64 position, const QByteArray &encoding) {
    const qint64 unit = isWide(encoding) ? 2 : 1;
    const qint64 at = position - position % unit;
    const qint64 from = std::max<qint64>(0, at - before * unit);
    if (!file.seek(from))
        return {};
    const QString left = decoded(file.read(at - from), encoding);
    const QString right = decoded(file.read(after * unit), encoding);
    qsizetype start = left.lastIndexOf(u'\n') + 1;
    const bool cutLeft = start == 0 && from > 0;
    qsizetype end = right.indexOf(u'\n');
    const bool cutRight = end < 0 && !file.atEnd();
    if (end < 0)
        end = right.size();
    const QString line = onOneLine(left.mid(start) + right.left(end)).trimmed();
    const QString dots = u"..."_s;
    return (cutLeft ? dots : QString()) + line + (cutRight ? dots : QString());
}

bool locateBadByte(QFile &file, const QByteArray &encoding, ParseError &error) {
    xmlCharEncodingHandler *handler = xmlFindCharEncodingHandler(encoding.constData());
    if (handler == nullptr || !file.seek(0))
        return false;
    const BufferPointer in(xmlBufferCreate(), &xmlBufferFree);
    const BufferPointer out(xmlBufferCreate(), &xmlBufferFree);
    error.line = error.linepos = 1;
    bool isFound = false;
    for (QByteArray bytes = file.read(chunk); !bytes.isEmpty() && !isFound;) {
        xmlBufferAdd(in.get(), reinterpret_cast<const xmlChar *>(bytes.constData()),
                     static_cast<int>(bytes.size()));
        error.filepos = file.pos();
        // A call may run out of buffer; half a character is kept for the next chunk.
        for (int length = 0; length != xmlBufferLength(in.get()) && !isFound;) {
            length = xmlBufferLength(in.get());
            isFound = xmlCharEncInFunc(handler, out.get(), in.get()) == -2;
            const bool isMark =
                error.line == 1 && error.linepos == 1 && view(out).starts_with("\xEF\xBB\xBF");
            advance(error, view(out).substr(isMark ? 3 : 0));
            xmlBufferEmpty(out.get());
        }
        bytes = file.read(chunk);
    }
    xmlCharEncCloseFunc(handler);
    error.filepos -= xmlBufferLength(in.get());
    return isFound;
}

} // namespace veltrona::xml
