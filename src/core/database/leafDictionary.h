// The leaves of the account, each stored once and numbered from 0 in the order in which they were
// added.
#pragma once

#include "core/base/textDictionary.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace veltrona {

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
