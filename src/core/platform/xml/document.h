// A well-formed XML document in memory, reduced to what its readers need: elements with their
// attributes, and the ends of child lists, in document order. A document owns its nodes; the texts
// that a NodeReader returns are valid until the document is loaded again. The nodes are packed into
// one byte string: an element takes about the size of its start tag, so that a document is never
// much larger in memory than in its file.
#pragma once

#include <QString>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veltrona::xml {

/// Name and value in UTF-8; the name is the qualified one, prefix and all.
struct Attribute {
    std::string_view name;
    std::string_view value;
};

/// Owns the packed nodes; grows in document order.
class NodeStream {
public:
    /// `prefix` may be empty. `line` must not be smaller than that of the element before.
    void addElement(std::string_view prefix, std::string_view name, qint64 line,
                    std::size_t attributeCount);
    /// To be called `attributeCount` times after addElement.
    void addAttribute(std::string_view prefix, std::string_view name, std::string_view value);
    void addListEnd();
    void reserve(std::size_t bytes) { m_bytes.reserve(bytes); }

    std::size_t size() const { return m_bytes.size(); }

private:
    friend class NodeReader;
    void appendNumber(std::size_t number);
    void appendName(std::string_view prefix, std::string_view name);

    std::string m_bytes;
    qint64 m_line = 0;
};

/// Reads the nodes once, in document order.
class NodeReader {
public:
    enum class Step {
        Element, // see name(), attributes() and line(); its children, if any, come next
        ListEnd, // of a child list that had at least one node; the document's own comes last
        End
    };

    explicit NodeReader(const NodeStream &nodes);
    Step next();

    std::string_view name() const { return m_name; }
    std::span<const Attribute> attributes() const { return m_attributes; }
    /// Null if the element has no attribute of exactly this name.
    const Attribute *attribute(std::string_view name) const;
    /// The line of the file in which the element's start tag begins, from 1.
    qint64 line() const { return m_line; }

private:
    std::size_t readNumber();
    std::string_view readText();

    const char *m_at;
    const char *m_end;
    std::string_view m_name;
    std::vector<Attribute> m_attributes;
    qint64 m_line = 0;
};

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
