// Parses a file with libxml2, whose SAX events become the nodes of a document or an error. Nothing
// but the file itself is ever read, whatever it refers to: no other file, no network.
#pragma once

#include "core/base/text.h"
#include "core/platform/xml/bounds.h"
#include "core/platform/xml/document.h"

#include <libxml/parser.h>

#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace veltrona::xml {

struct ParseResult {
    NodeStream nodes;
    QString refusal;
    ParseError error; // its code isn't 0 if the file isn't well-formed
};

/// Receives libxml2's SAX events for one file. libxml2 parses the text of an entity in a context of
/// its own with the same callbacks; `_private` of both contexts points to the reader.
class SaxReader {
public:
    explicit SaxReader(QFile &file);
    /// Parses the open file from its start. Sets all fields of the error except `url`.
    ParseResult run();

private:
    using Context = xmlParserCtxtPtr;
    using ContextPointer = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

    static SaxReader &of(void *context) {
        return *static_cast<SaxReader *>(static_cast<Context>(context)->_private);
    }
    /// libxml2 is C: no exception may unwind through it.
    template<typename Call>
    auto guarded(Call call,
                 void (SaxReader::*onError)(int, const QString &) = &SaxReader::fail) noexcept {
        try {
            return call();
        } catch (const std::bad_alloc &) {
            (this->*onError)(XML_ERR_NO_MEMORY, u"The file doesn't fit into the memory."_s);
        }
        return decltype(call())();
    }
    /// `call` is the function that libxml2 calls for a handler.
    template<auto handler>
    struct Callback;
    template<typename Result, typename... Arguments,
             Result (SaxReader::*handler)(Context, Arguments...)>
    struct Callback<handler> {
        static Result call(void *context, Arguments... arguments) {
            SaxReader &self = of(context);
            return self.guarded(
                [&] { return (self.*handler)(static_cast<Context>(context), arguments...); });
        }
    };

    int read(char *buffer, int length);
    void startElement(Context context, const xmlChar *name, const xmlChar *prefix, const xmlChar *,
                      int namespaceCount, const xmlChar **, int attributeCount, int,
                      const xmlChar **attributes);
    void endElement(Context context, const xmlChar *, const xmlChar *, const xmlChar *);
    void characters(Context context, const xmlChar *text, int length);
    void attributeDeclaration(Context context, const xmlChar *, const xmlChar *, int, int,
                              const xmlChar *defaultValue, xmlEnumerationPtr values);
    void entityDeclaration(Context context, const xmlChar *name, int type, const xmlChar *publicId,
                           const xmlChar *systemId, xmlChar *content);
    xmlEntityPtr entity(Context context, const xmlChar *name);
    xmlEntityPtr parameterEntity(Context context, const xmlChar *name);

    bool isInEntity(Context context) const {
        return context != m_context.get() || m_context->inputNr > 1;
    }
    void addElement(std::string_view prefix, std::string_view name, int attributeCount,
                    const xmlChar **attributes);
    void addAttribute(const xmlChar **attribute);
    void addOtherNode(Context context);
    void refuse(const QString &reason);
    bool isAffordable(xmlEntityPtr entity);
    qint64 currentLine();
    void finishNode();
    void checkSize(std::size_t nodeBytes);
    void fail(const Limit &exceeded);
    void fail(int code, const QString &reason);
    void failInside(int code, const QString &reason);
    void stop(Context context, const Limit &exceeded);
    void recordErrorPosition();
    void completeError();

    QFile &m_file;
    ContextPointer m_context;
    ParseResult m_result;
    std::vector<bool> m_hasChildren; // for each open element
    qint64 m_line = 0;               // of the last call of currentLine
    qint64 m_lastLine = 0;           // where the previous node has ended
    ExpansionBudget m_budget;
    bool m_isInValue = false; // expanding the entities of an attribute's value
    int m_defaults = 0;
    int m_entities = 0;
    QByteArray m_encoding; // of a file that libxml2 has to convert
    bool m_failed = false;
    bool m_hasPlace = false; // the error's position is known
};

} // namespace veltrona::xml
