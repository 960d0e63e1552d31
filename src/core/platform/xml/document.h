// A well-formed XML document in memory, as far as its walkers need it: elements with their
// attributes, and the ends of child lists, in document order. A document owns its nodes, and the
// texts that a walk hands out live as long as the document isn't loaded again.
#pragma once

#include "core/platform/xml/nodeStream.h"

#include <QString>

namespace veltrona::xml {

/// What the parser says of a file that it couldn't load.
struct ParseError {
    int errorCode = 0;
    QString reason;     // ends in CR LF
    int line = 0;       // from 1; 0 where nothing was read
    int linepos = 0;    // from 1
    qint64 filepos = 0; // in bytes from the start of the file
    QString srcText;    // the offending line, cut to something readable
    QString url;        // the path as it was given
};

class Document {
public:
    /// Reads the file once, from end to end. False if it can't be read or isn't well-formed: then
    /// parseError() tells why, and the document that was loaded before stays whole.
    bool load(const QString &path);
    /// Of the last load; empty after a good one.
    const ParseError &parseError() const { return m_error; }

    /// The file that the nodes came from.
    const QString &path() const { return m_path; }
    /// A sentence that says why a well-formed document can't be walked truthfully: it draws content
    /// from entities that hold markup or stand in other files. Empty for all others.
    const QString &refusal() const { return m_refusal; }

    Walk walk() const { return Walk(m_nodes); }
    /// The memory that the nodes take.
    std::size_t byteCount() const { return m_nodes.size(); }

private:
    NodeStream m_nodes;
    QString m_path;
    QString m_refusal;
    ParseError m_error;
};

} // namespace veltrona::xml
