#include "core/platform/xml/document.h"

#include "core/base/text.h"
#include "core/platform/desktop/paths.h"
#include "core/platform/xml/saxReader.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

namespace veltrona::xml {

namespace {

constexpr char elementMark = 'e';
constexpr char listEndMark = ')';

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

void NodeStream::appendNumber(std::size_t number) {
    for (; number > 0x7F; number >>= 7)
        m_bytes += static_cast<char>(number | 0x80);
    m_bytes += static_cast<char>(number);
}

void NodeStream::appendName(std::string_view prefix, std::string_view name) {
    if (prefix.empty()) {
        appendNumber(name.size());
    } else {
        appendNumber(prefix.size() + 1 + name.size());
        m_bytes += prefix;
        m_bytes += ':';
    }
    m_bytes += name;
}

void NodeStream::addElement(std::string_view prefix, std::string_view name, qint64 line,
                            std::size_t attributeCount) {
    m_bytes += elementMark;
    appendNumber(static_cast<std::size_t>(line - m_line));
    m_line = line;
    appendName(prefix, name);
    appendNumber(attributeCount);
}

void NodeStream::addAttribute(std::string_view prefix, std::string_view name,
                              std::string_view value) {
    appendName(prefix, name);
    appendNumber(value.size());
    m_bytes += value;
}

void NodeStream::addListEnd() {
    m_bytes += listEndMark;
}

NodeReader::NodeReader(const NodeStream &nodes)
    : m_at(nodes.m_bytes.data()), m_end(m_at + nodes.m_bytes.size()) {}

NodeReader::Step NodeReader::next() {
    if (m_at == m_end)
        return Step::End;
    if (*m_at++ == listEndMark)
        return Step::ListEnd;
    m_line += static_cast<qint64>(readNumber());
    m_name = readText();
    m_attributes.resize(readNumber());
    for (Attribute &attribute : m_attributes) {
        attribute.name = readText();
        attribute.value = readText();
    }
    return Step::Element;
}

const Attribute *NodeReader::attribute(std::string_view name) const {
    const auto found = std::ranges::find(m_attributes, name, &Attribute::name);
    return found == m_attributes.end() ? nullptr : &*found;
}

std::size_t NodeReader::readNumber() {
    std::size_t number = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(*m_at++);
        number |= static_cast<std::size_t>(byte & 0x7F) << shift;
        if (byte < 0x80)
            return number;
    }
}

std::string_view NodeReader::readText() {
    const std::size_t length = readNumber();
    const std::string_view text(m_at, length);
    m_at += length;
    return text;
}

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
