// How much of a kind a file may hold, and the sentences that refuse more. The parser looks through
// these things one by one, so that more of them would take it minutes. The bounds count work
// instead of time: what is a report doesn't depend on the machine.
#pragma once

#include <QString>

#include <cstddef>

class QFile;

namespace veltrona::xml {

inline constexpr int mostNames = 50'000;   // different ones in a file
inline constexpr int mostAttributes = 256; // of one element
inline constexpr int mostNamespaces = 256; // in force at one place
inline constexpr int mostDefaults = 100;   // attributes that the document type sets
inline constexpr int mostEntities = 1'000; // that it declares

/// What a file has read into the parser, and what its document type has added to that.
struct Growth {
    std::size_t bytesRead = 0;
    std::size_t entityBytes = 0; // drawn in by all references so far
    std::size_t namespaces = 0;  // declared by elements or by default

    /// `isInContent`: between tags, where the parser reads the entity anew each time.
    void addEntity(std::size_t length, bool isInContent);
    /// `nodeBytes` is what the document takes so far.
    bool isTooLarge(std::size_t nodeBytes) const;
};

QString tooDeep(unsigned most);
QString tooManyNames();
QString tooManyAttributes();
QString tooManyNamespaces();
QString tooManyDefaults();
QString tooManyEntities();
QString grownTooLarge();

/// The parser's own reason, or a plain sentence where it names its inner workings. Moves the file's
/// position.
QString plainReason(const QString &reason, QFile &file);

} // namespace veltrona::xml
