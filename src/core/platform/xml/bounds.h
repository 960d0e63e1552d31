// Limits on what a file may hold, and the sentences that refuse more. libxml2 searches these lists
// linearly, so that longer ones would take minutes. The limits count work instead of time: whether
// a file is accepted doesn't depend on the machine.
#pragma once

#include <QString>

#include <cstddef>

class QFile;

namespace veltrona::xml {

inline constexpr int maxNames = 50'000;   // different ones in a file
inline constexpr int maxAttributes = 256; // of one element
inline constexpr int maxNamespaces = 256; // in force at one place
inline constexpr int maxDefaults = 100;   // attributes that the document type sets
inline constexpr int maxEntities = 1'000; // declared by the document type

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

QString tooDeep(unsigned limit);
QString tooManyNames();
QString tooManyAttributes();
QString tooManyNamespaces();
QString tooManyDefaults();
QString tooManyEntities();
QString grownTooLarge();

/// libxml2's message, or a plain sentence in place of one about its internals. Moves the file's
/// position.
QString plainReason(const QString &reason, QFile &file);

} // namespace veltrona::xml
