// Distinct texts and combinations of texts, each stored once and numbered from 0 in the order in
// which they were added.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace veltrona {

/// Texts are compared byte by byte.
class TextDictionary {
public:
    using Code = std::uint32_t;
    static constexpr Code none = ~Code(0);

    /// The code of a text, which is added if it is new.
    Code add(std::string_view text);
    /// `none` for a text that was never added.
    Code find(std::string_view text) const;
    const std::string &text(Code code) const { return *m_texts[code]; }
    std::size_t size() const { return m_texts.size(); }
    std::size_t bytes() const { return m_bytes; }

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };
    std::unordered_map<std::string, Code, Hash, std::equal_to<>> m_codes;
    std::vector<const std::string *> m_texts; // the keys of the map, which never move
    std::size_t m_bytes = 0;
};

/// The columns that place a record in the account.
enum class NameColumn { Campaign, Adgroup, AdwordsTyp, KeyWord, KwType };
inline constexpr std::array<const char *, 5> nameColumns = {"Campaign", "Adgroup", "AdwordsTyp",
                                                            "KeyWord", "kwType"};

/// The leaves of the account: distinct combinations of the five names.
class LeafDictionary {
public:
    using Code = TextDictionary::Code;
    using Names = std::array<std::string_view, nameColumns.size()>;

    Code add(const Names &names);
    std::size_t size() const { return m_leaves.size(); }
    /// The code of a leaf's name in `names()`, which all columns share.
    Code nameCode(std::size_t leaf, NameColumn column) const {
        return m_leaves[leaf][static_cast<std::size_t>(column)];
    }
    const TextDictionary &names() const { return m_names; }
    Names namesOf(std::size_t leaf) const;
    std::size_t bytes() const;

private:
    using NameCodes = std::array<Code, nameColumns.size()>;
    /// The slot that holds the leaf, or the empty one where it belongs.
    std::size_t slotOf(std::size_t hash, const Names &names) const;
    void grow();

    TextDictionary m_names;
    std::vector<NameCodes> m_leaves;
    std::vector<std::size_t> m_hashes; // of the leaves
    // An open hash table, since every record of a project is looked up here: std::unordered_map
    // takes as long as SQLite takes for the whole record.
    std::vector<Code> m_slots;
};

} // namespace veltrona
