#include "core/database/leafDictionary.h"

#include <algorithm>

namespace veltrona {

LeafDictionary::Code LeafDictionary::add(const Names &names) {
    std::size_t hash = 0;
    for (const std::string_view name : names)
        hash = (hash ^ hashOf(name)) * 0x9E3779B97F4A7C15;
    hash ^= hash >> 32; // the lowest bits choose the slot
    if (2 * m_leaves.size() >= m_slots.size())
        grow();
    Code &slot = m_slots[slotOf(hash, names)];
    if (slot != TextDictionary::none)
        return slot;
    NameCodes codes;
    for (std::size_t i = 0; i < names.size(); ++i)
        codes[i] = m_names.add(names[i]);
    m_leaves.push_back(codes);
    m_hashes.push_back(hash);
    slot = static_cast<Code>(m_leaves.size() - 1);
    return slot;
}

std::size_t LeafDictionary::slotOf(std::size_t hash, const Names &names) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash & mask;
    while (m_slots[slot] != TextDictionary::none &&
           (m_hashes[m_slots[slot]] != hash || namesOf(m_slots[slot]) != names))
        slot = (slot + 1) & mask;
    return slot;
}

void LeafDictionary::grow() {
    constexpr std::size_t minSlots = 64; // always a power of two
    m_slots.assign(std::max(minSlots, 2 * m_slots.size()), TextDictionary::none);
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t leaf = 0; leaf < m_leaves.size(); ++leaf) {
        std::size_t slot = m_hashes[leaf] & mask;
        while (m_slots[slot] != TextDictionary::none)
            slot = (slot + 1) & mask;
        m_slots[slot] = static_cast<Code>(leaf);
    }
}

LeafDictionary::Names LeafDictionary::namesOf(std::size_t leaf) const {
    Names names;
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = m_names.text(m_leaves[leaf][i]);
    return names;
}

std::size_t LeafDictionary::bytes() const {
    return m_names.bytes() + m_leaves.capacity() * sizeof(NameCodes) +
           m_hashes.capacity() * sizeof(std::size_t) + m_slots.capacity() * sizeof(Code);
}

} // namespace veltrona
