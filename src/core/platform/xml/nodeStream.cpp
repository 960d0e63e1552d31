#include "core/platform/xml/nodeStream.h"

namespace veltrona::xml {

namespace {

constexpr char elementMark = 'e';
constexpr char listEndMark = ')';

} // namespace

void NodeStream::putNumber(std::size_t number) {
    for (; number > 0x7F; number >>= 7)
        m_bytes += static_cast<char>(number | 0x80);
    m_bytes += static_cast<char>(number);
}

void NodeStream::putName(std::string_view prefix, std::string_view name) {
    if (prefix.empty()) {
        putNumber(name.size());
    } else {
        putNumber(prefix.size() + 1 + name.size());
        m_bytes += prefix;
        m_bytes += ':';
    }
    m_bytes += name;
}

void NodeStream::addElement(std::string_view prefix, std::string_view name, int line,
                            std::size_t attributeCount) {
    m_bytes += elementMark;
    putNumber(static_cast<std::size_t>(line - m_line));
    m_line = line;
    putName(prefix, name);
    putNumber(attributeCount);
}

void NodeStream::addAttribute(std::string_view prefix, std::string_view name,
                              std::string_view value) {
    putName(prefix, name);
    putNumber(value.size());
    m_bytes += value;
}

void NodeStream::addListEnd() {
    m_bytes += listEndMark;
}

Walk::Walk(const NodeStream &nodes)
    : m_at(nodes.m_bytes.data()), m_end(m_at + nodes.m_bytes.size()) {}

Walk::Step Walk::next() {
    if (m_at == m_end)
        return Step::End;
    if (*m_at++ == listEndMark)
        return Step::ListEnd;
    m_line += static_cast<int>(takeNumber());
    m_name = takeText();
    m_attributes.resize(takeNumber());
    for (Attribute &attribute : m_attributes) {
        attribute.name = takeText();
        attribute.value = takeText();
    }
    return Step::Element;
}

const Attribute *Walk::attribute(std::string_view name) const {
    for (const Attribute &attribute : m_attributes) {
        if (attribute.name == name)
            return &attribute;
    }
    return nullptr;
}

std::size_t Walk::takeNumber() {
    std::size_t number = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(*m_at++);
        number |= static_cast<std::size_t>(byte & 0x7F) << shift;
        if (byte < 0x80)
            return number;
    }
}

std::string_view Walk::takeText() {
    const std::size_t length = takeNumber();
    const std::string_view text(m_at, length);
    m_at += length;
    return text;
}

} // namespace veltrona::xml
