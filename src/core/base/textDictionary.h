// Distinct texts, each stored once and numbered from 0 in the order in which they were added. An
// open hash table over a few large blocks: a project may have millions of names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace veltrona {

/// Hashes with a seed of the process, so that no file can choose names whose hashes collide.
std::size_t hashOf(std::string_view text);

/// Texts are compared byte by byte.
class TextDictionary {
public:
    using Code = std::uint32_t;
    static constexpr Code none = ~Code(0);

    /// The code of a text, which is added if it is new.
    Code add(std::string_view text);
    /// `none` for a text that was never added.
    Code find(std::string_view text) const;
    /// The bytes stay where they are; the view itself does until the next text is added, also when
    /// the dictionary is moved.
    const std::string_view &text(Code code) const { return m_texts[code]; }
    std::size_t size() const { return m_texts.size(); }
    /// Allocated in addition to the object itself.
    std::size_t bytes() const;

private:
    /// The slot that holds the text, or the empty one where it belongs.
    std::size_t slotOf(std::uint32_t hash, std::string_view text) const;
    void grow();
    std::string_view stored(std::string_view text);

    std::vector<std::string_view> m_texts;
    std::vector<std::uint32_t> m_hashes; // of the texts
    std::vector<Code> m_slots;
    std::vector<std::unique_ptr<char[]>> m_blocks;
    std::size_t m_blockBytes = 0;
    char *m_free = nullptr; // within the last block
    std::size_t m_freeBytes = 0;
};

} // namespace veltrona
