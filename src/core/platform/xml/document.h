// A well-formed XML document in memory, reduced to what its readers need: elements with their
// attributes, and the ends of child lists, in document order. A document owns its nodes; the texts
// that a NodeReader returns are valid until the document is loaded again.
#pragma once

#include "core/platform/xml/nodeStream.h"

#include <QString>

namespace veltrona::xml {

/// Why a file couldn't be loaded.
struct ParseError {
    int errorCode = 0;
    QString reason = {};  // ends in CR LF
    qint64 line = 0;      // from 1; 0 where nothing was read
    qint64 linepos = 0;   // from 1
    qint64 filepos = 0;   // in bytes from the start of the file
    QString srcText = {}; // the offending line, shortened where it is long
    QString url = {};     // the path as given
};

class Document {
public:
    /// Reads the file once. False if it can't be read or isn't well-formed: parseError() says why,
    /// and the document loaded before is kept.
    bool load(const QString &path);
    /// Of the last load; empty after a good one.
    const ParseError &parseError() const { return m_error; }

    /// The file that was loaded.
    const QString &path() const { return m_path; }
    /// Why a well-formed document can't be used all the same: it takes content from entities that
    /// hold markup or are in other files. Empty for all others.
    const QString &refusal() const { return m_refusal; }

    NodeReader nodes() const { return NodeReader(m_nodes); }
    /// The size of the nodes in memory.
    std::size_t byteCount() const { return m_nodes.size(); }

private:
    NodeStream m_nodes;
    QString m_path;
    QString m_refusal;
    ParseError m_error;
};

} // namespace veltrona::xml
