#include "core/base/textDictionary.h"

#include <QHash>

#include <algorithm>

namespace veltrona {

std::size_t hashOf(std::string_view text) {
    static const std::size_t seed = QHashSeed::globalSeed();
    return qHashBits(text.data(), text.size(), seed);
}

TextDictionary::Code TextDictionary::add(std::string_view text) {
    if (2 * m_texts.size() >= m_slots.size())
        grow();
    const auto hash = static_cast<std::uint32_t>(hashOf(text));
    Code &slot = m_slots[slotOf(hash, text)];
    if (slot == none) {
        slot = static_cast<Code>(m_texts.size());
        m_texts.push_back(stored(text));
        m_hashes.push_back(hash);
    }
    return slot;
}

TextDictionary::Code TextDictionary::find(std::string_view text) const {
    return m_slots.empty() ? none : m_slots[slotOf(static_cast<std::uint32_t>(hashOf(text)), text)];
}

std::size_t TextDictionary::slotOf(std::uint32_t hash, std::string_view text) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash & mask;
    while (m_slots[slot] != none &&
           (m_hashes[m_slots[slot]] != hash || m_texts[m_slots[slot]] != text))
        slot = (slot + 1) & mask;
    return slot;
}

void TextDictionary::grow() {
    constexpr std::size_t minSlots = 64; // always a power of two
    m_slots.assign(std::max(minSlots, 2 * m_slots.size()), none);
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t code = 0; code < m_texts.size(); ++code) {
        std::size_t slot = m_hashes[code] & mask;
        while (m_slots[slot] != none)
            slot = (slot + 1) & mask;
        m_slots[slot] = static_cast<Code>(code);
    }
}

std::string_view TextDictionary::stored(std::string_view text) {
    constexpr std::size_t maxBlock = 65'536;
    if (m_freeBytes < text.size()) {
        // Blocks grow, so that small dictionaries stay small.
        const std::size_t usual = std::clamp<std::size_t>(m_blockBytes, 256, maxBlock);
        m_freeBytes = std::max(usual, text.size());
        m_blocks.push_back(std::make_unique<char[]>(m_freeBytes));
        m_blockBytes += m_freeBytes;
        m_free = m_blocks.back().get();
    }
    char *const place = m_free;
    std::copy(text.begin(), text.end(), place);
    m_free += text.size();
    m_freeBytes -= text.size();
    return {place, text.size()};
}

std::size_t TextDictionary::bytes() const {
    return m_texts.capacity() * sizeof(std::string_view) +
           m_hashes.capacity() * sizeof(std::uint32_t) + m_slots.capacity() * sizeof(Code) +
           m_blockBytes;
}

} // namespace veltrona
