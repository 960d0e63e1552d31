// Limits on what a file may hold, and the sentences that refuse more. libxml2 searches these lists
// linearly, so that longer ones would take minutes. The limits count work instead of time: whether
// a file is accepted doesn't depend on the machine.
#pragma once

#include <QString>

#include <cstddef>

class QFile;

namespace veltrona::xml {

struct Limit {
    int max;
    const char *refusal; // %1 is max
};

namespace limit {
inline constexpr Limit depth{256, "Elements are nested more than %1 deep."};
inline constexpr Limit names{50'000, "The file has too many different names."};
inline constexpr Limit attributes{
    256, "An element has more than %1 attributes; no report needs so many."};
inline constexpr Limit namespaces{256,
                                  "More than %1 namespaces are in force; no report needs so many."};
inline constexpr Limit defaults{
    100, "The document type sets more than %1 default attributes; no report needs so many."};
inline constexpr Limit entities{
    1'000, "The document type declares more than %1 entities; no report needs so many."};
} // namespace limit

QString refusalOf(const Limit &limit);

/// The bytes of a file, and what entities and default attributes have added to them.
struct ExpansionBudget {
    std::size_t bytesRead = 0;
    std::size_t entityBytes = 0; // of all references so far
    std::size_t namespaces = 0;  // declared by elements or by default

    /// `isInContent`: between tags, where libxml2 parses the entity again each time.
    void addEntity(std::size_t length, bool isInContent);
    /// `nodeBytes` is the size of the document so far.
    bool isTooLarge(std::size_t nodeBytes) const;
};

/// libxml2's message, or a plain sentence in place of one about its internals. Moves the file's
/// position.
QString plainReason(const QString &reason, QFile &file);

} // namespace veltrona::xml
