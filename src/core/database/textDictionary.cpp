#include "core/database/textDictionary.h"

namespace veltrona {

namespace {

/// What a node of a hash table takes beside its value: link, hash and bucket, and the allocator's
/// own share.
constexpr std::size_t nodeBytes = 40;

} // namespace

TextDictionary::Code TextDictionary::add(std::string_view text) {
    const auto found = m_codes.find(text);
    if (found != m_codes.end())
        return found->second;
    const auto code = static_cast<Code>(m_texts.size());
    const auto added = m_codes.emplace(text, code).first;
    m_texts.push_back(&added->first);
    m_bytes += nodeBytes + sizeof(*added) + added->first.capacity() + 2 * sizeof(m_texts.front());
    return code;
}

TextDictionary::Code TextDictionary::find(std::string_view text) const {
    const auto found = m_codes.find(text);
    return found == m_codes.end() ? none : found->second;
}

LeafDictionary::Code LeafDictionary::add(const Names &names) {
    std::size_t hash = 0;
    for (const std::string_view name : names)
        hash = hash * 0x9E3779B97F4A7C15 + std::hash<std::string_view>()(name);
    const auto [first, last] = m_byHash.equal_range(hash);
    for (auto same = first; same != last; ++same) {
        if (namesOf(same->second) == names)
            return same->second;
    }
    NameCodes codes;
    for (std::size_t i = 0; i < names.size(); ++i)
        codes[i] = m_names.add(names[i]);
    const auto code = static_cast<Code>(m_leaves.size());
    m_leaves.push_back(codes);
    m_byHash.emplace(hash, code);
    return code;
}

LeafDictionary::Names LeafDictionary::namesOf(std::size_t leaf) const {
    Names names;
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = m_names.text(m_leaves[leaf][i]);
    return names;
}

std::size_t LeafDictionary::bytes() const {
    return m_names.bytes() + m_leaves.capacity() * sizeof(NameCodes) +
           m_byHash.size() * (nodeBytes + sizeof(std::size_t) + sizeof(Code));
}

} // namespace veltrona
