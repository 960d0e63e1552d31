#include "core/base/storedText.h"

#include <algorithm>

namespace veltrona {

namespace {

constexpr char16_t byteMark = 0xDC00;
constexpr std::string_view encodingMark = "\xEF\xBB\xBF"; // U+FEFF

bool isUtf8(std::string_view bytes) {
    return QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

/// Of the first character; 0 if there is no whole one.
std::size_t characterLength(std::string_view bytes) {
    std::size_t length = std::min<std::size_t>(4, bytes.size());
    while (length > 0 && !isUtf8(bytes.substr(0, length)))
        --length;
    return length;
}

QString textOfUtf8(std::string_view utf8) {
    QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    // QString::fromUtf8 drops it as a byte order mark.
    if (utf8.starts_with(encodingMark))
        text.prepend(QChar(QChar::ByteOrderMark));
    return text;
}

} // namespace

QString textOf(std::string_view stored) {
    if (isUtf8(stored))
        return textOfUtf8(stored);
    QString text;
    while (!stored.empty()) {
        const std::size_t length = characterLength(stored);
        if (length > 0)
            text += textOfUtf8(stored.substr(0, length));
        else
            text += QChar(static_cast<char16_t>(byteMark + static_cast<uchar>(stored.front())));
        stored.remove_prefix(std::max<std::size_t>(1, length));
    }
    return text;
}

QByteArray storedBytes(const QString &text) {
    if (text.isValidUtf16())
        return text.toUtf8();
    QByteArray bytes;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text.at(at).isHighSurrogate())
            bytes += text.mid(at++, 2).toUtf8();
        else if (text.at(at).isLowSurrogate())
            bytes += static_cast<char>(text.at(at).unicode() - byteMark);
        else
            bytes += QString(text.at(at)).toUtf8();
    }
    return bytes;
}

} // namespace veltrona
