#include "core/platform/xml/parser.h"

#include "core/platform/xml/bounds.h"
#include "core/platform/xml/sourceLine.h"

#include <QFile>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/SAX2.h>

#include <cerrno>
#include <memory>
#include <new>

namespace veltrona::xml {

namespace {

// A report of 32,767 rows takes some 25 MB; beyond this it can't be one.
constexpr std::size_t mostBytes = std::size_t(1) << 30;
constexpr std::size_t mostReserved = std::size_t(64) << 20;

using ContextPointer = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;
using TextPointer = std::unique_ptr<xmlChar, decltype(xmlFree)>;

std::string_view view(const xmlChar *text) {
    return text == nullptr ? std::string_view() : reinterpret_cast<const char *>(text);
}

std::string_view view(const xmlChar *begin, const xmlChar *end) {
    return {reinterpret_cast<const char *>(begin), static_cast<std::size_t>(end - begin)};
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// The state of one pass, and the parser's callbacks. libxml2 parses the text of an entity in a
/// context of its own with the same callbacks, and `_private` leads back here from both.
class Pass {
public:
    explicit Pass(QFile &file);
    ParseResult run();

private:
    static Pass &of(void *context) {
        return *static_cast<Pass *>(static_cast<xmlParserCtxtPtr>(context)->_private);
    }
    static int read(void *pass, char *buffer, int length);
    static void startElement(void *context, const xmlChar *name, const xmlChar *prefix,
                             const xmlChar *uri, int namespaceCount, const xmlChar **namespaces,
                             int attributeCount, int defaultedCount, const xmlChar **attributes);
    static void endElement(void *context, const xmlChar *name, const xmlChar *prefix,
                           const xmlChar *uri);
    static void characters(void *context, const xmlChar *text, int length);
    static void comment(void *context, const xmlChar *text);
    static void instruction(void *context, const xmlChar *target, const xmlChar *data);
    static void cdata(void *context, const xmlChar *text, int length);
    static void attributeDeclaration(void *context, const xmlChar *element, const xmlChar *name,
                                     int type, int kind, const xmlChar *defaultValue,
                                     xmlEnumerationPtr values);
    static void entityDeclaration(void *context, const xmlChar *name, int type,
                                  const xmlChar *publicId, const xmlChar *systemId,
                                  xmlChar *content);
    static xmlEntityPtr entity(void *context, const xmlChar *name);
    static xmlEntityPtr parameterEntity(void *context, const xmlChar *name);

    bool isInEntity(void *context) const {
        return context != m_context.get() || m_context->inputNr > 1;
    }
    void addElement(std::string_view prefix, std::string_view name, int attributeCount,
                    const xmlChar **attributes);
    void addAttribute(const xmlChar **attribute);
    void addOtherNode(void *context);
    void refuseMarkup();
    bool isAffordable(xmlEntityPtr entity);
    bool hasBoundedTag(xmlParserCtxtPtr context, int namespaceCount, int attributeCount);
    void passed() { m_lastLine = m_context->input->line; }
    void checkSize();
    void fail(int code, const QString &reason);
    void failInside(int code, const QString &reason);
    void stop(void *context, const QString &reason);
    void takePlace();
    void findPlace();

    QFile &m_file;
    ContextPointer m_context;
    ParseResult m_result;
    std::vector<bool> m_hasChildren; // for each open element
    int m_lastLine = 0;              // where the node before the one at hand has ended
    Growth m_growth;
    bool m_isInValue = false; // the entities of an attribute's value are being filled in
    int m_defaults = 0;
    int m_entities = 0;
    QByteArray m_encoding; // of a file that the parser has to convert
    bool m_failed = false;
    bool m_hasPlace = false; // the error's place is known
};

Pass::Pass(QFile &file) : m_file(file), m_context(xmlNewParserCtxt(), &xmlFreeParserCtxt) {
    if (!m_context)
        throw std::bad_alloc();
    m_context->_private = this;
    xmlSAXHandler &sax = *m_context->sax;
    sax.startElementNs = &Pass::startElement;
    sax.endElementNs = &Pass::endElement;
    sax.characters = &Pass::characters;
    sax.ignorableWhitespace = &Pass::characters;
    sax.comment = &Pass::comment;
    sax.processingInstruction = &Pass::instruction;
    sax.cdataBlock = &Pass::cdata;
    // Nothing is checked against the document type, so that it needn't be kept.
    sax.elementDecl = nullptr;
    sax.attributeDecl = &Pass::attributeDeclaration;
    sax.entityDecl = &Pass::entityDeclaration;
    sax.getEntity = &Pass::entity;
    sax.getParameterEntity = &Pass::parameterEntity;
    sax.reference = nullptr;
    sax.externalSubset = nullptr;
    sax.resolveEntity = nullptr;
    sax.serror = [](void *context, auto *error) {
        if (error->level == XML_ERR_FATAL || error->code == XML_WAR_UNDECLARED_ENTITY)
            of(context).fail(error->code, QString::fromUtf8(error->message));
    };
}

ParseResult Pass::run() {
    m_result.nodes.reserve(
        std::min(static_cast<std::size_t>(std::max<qint64>(0, m_file.size())), mostReserved));
    // What the decoder of an encoding says comes by no context.
    xmlSetStructuredErrorFunc(this, [](void *pass, auto *error) {
        static_cast<Pass *>(pass)->failInside(error->code, QString::fromUtf8(error->message));
    });
    // No NOENT, DTDLOAD or HUGE: entities of other files stay unread, and the limits hold.
    xmlDocPtr document = xmlCtxtReadIO(m_context.get(), &Pass::read, nullptr, this, nullptr,
                                       nullptr, XML_PARSE_NONET | XML_PARSE_BIG_LINES);
    xmlFreeDoc(document);
    if (document == nullptr && !m_failed) {
        const xmlError *last = xmlCtxtGetLastError(m_context.get());
        fail(last != nullptr ? last->code : XML_ERR_DOCUMENT_EMPTY,
             QString::fromUtf8(last != nullptr ? last->message : "Document is empty"));
    }
    // The parser takes a NUL behind the root element for the end of the file.
    if (!m_failed && m_context->input != nullptr && m_context->input->cur < m_context->input->end)
        fail(XML_ERR_DOCUMENT_END, QStringLiteral("Extra content at the end of the document"));
    if (m_failed)
        findPlace();
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    m_result.nodes.addListEnd();
    return std::move(m_result);
}

int Pass::read(void *pass, char *buffer, int length) {
    Pass &self = *static_cast<Pass *>(pass);
    if (self.m_failed)
        return 0;
    const xmlParserCtxt &context = *self.m_context;
    // These tables double; a single tag of a million attributes is stopped in its midst.
    const bool attributes = context.maxatts > 10 * 2 * mostAttributes;
    const bool namespaces = context.nsMax > 2 * 2 * mostNamespaces;
    if (attributes || namespaces || xmlDictSize(context.dict) > mostNames) {
        self.failInside(XML_ERR_INTERNAL_ERROR, attributes   ? tooManyAttributes()
                                                : namespaces ? tooManyNamespaces()
                                                             : tooManyNames());
        return 0;
    }
    errno = 0;
    const qint64 count = self.m_file.read(buffer, length);
    if (count < 0) {
        self.failInside(errno != 0 ? errno : EIO, self.m_file.errorString());
        return -1;
    }
    self.m_growth.bytesRead += static_cast<std::size_t>(count);
    return static_cast<int>(count);
}

void Pass::startElement(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *,
                        int namespaceCount, const xmlChar **, int attributeCount, int,
                        const xmlChar **attributes) {
    Pass &self = of(context);
    if (self.m_failed ||
        !self.hasBoundedTag(static_cast<xmlParserCtxtPtr>(context), namespaceCount, attributeCount))
        return;
    if (self.isInEntity(context)) {
        self.refuseMarkup();
        return;
    }
    if (self.m_hasChildren.size() >= xmlParserMaxDepth) {
        self.fail(XML_ERR_INTERNAL_ERROR, tooDeep(xmlParserMaxDepth));
        return;
    }
    // An exception must not pass through the parser.
    try {
        self.addElement(view(prefix), view(name), attributeCount, attributes);
    } catch (const std::bad_alloc &) {
        self.fail(XML_ERR_NO_MEMORY, QStringLiteral("The file doesn't fit into the memory."));
    }
    self.passed();
}

bool Pass::hasBoundedTag(xmlParserCtxtPtr context, int namespaceCount, int attributeCount) {
    m_growth.namespaces += static_cast<std::size_t>(namespaceCount);
    if (attributeCount > mostAttributes)
        fail(XML_ERR_INTERNAL_ERROR, tooManyAttributes());
    else if (context->nsNr > 2 * mostNamespaces)
        fail(XML_ERR_INTERNAL_ERROR, tooManyNamespaces());
    return !m_failed;
}

void Pass::addElement(std::string_view prefix, std::string_view name, int attributeCount,
                      const xmlChar **attributes) {
    const bool isRoot = m_hasChildren.empty();
    if (!isRoot)
        m_hasChildren.back() = true;
    m_hasChildren.push_back(false);
    m_result.nodes.addElement(prefix, name, isRoot ? m_context->input->line : m_lastLine,
                              static_cast<std::size_t>(attributeCount));
    for (int i = 0; i < attributeCount; ++i)
        addAttribute(attributes + 5 * i);
    checkSize();
}

/// `attribute` is local name, prefix, URI, begin and end of the value.
void Pass::addAttribute(const xmlChar **attribute) {
    std::string_view value = view(attribute[3], attribute[4]);
    if (value.find('&') == std::string_view::npos) {
        m_result.nodes.addAttribute(view(attribute[1]), view(attribute[0]), value);
        return;
    }
    // The parser leaves references to entities in the value as they are.
    m_isInValue = true;
    const TextPointer text(xmlStringLenDecodeEntities(m_context.get(), attribute[3],
                                                      static_cast<int>(value.size()),
                                                      XML_SUBSTITUTE_REF, 0, 0, 0),
                           xmlFree);
    m_isInValue = false;
    if (!text)
        fail(XML_ERR_ENTITY_PROCESSING, QStringLiteral("An attribute's entities can't be read."));
    m_result.nodes.addAttribute(view(attribute[1]), view(attribute[0]), view(text.get()));
    checkSize();
}

void Pass::endElement(void *context, const xmlChar *, const xmlChar *, const xmlChar *) {
    Pass &self = of(context);
    if (self.m_failed || self.isInEntity(context) || self.m_hasChildren.empty())
        return;
    if (self.m_hasChildren.back())
        self.m_result.nodes.addListEnd();
    self.m_hasChildren.pop_back();
    self.passed();
}

void Pass::characters(void *context, const xmlChar *text, int length) {
    Pass &self = of(context);
    if (!self.m_hasChildren.empty() && !isBlank(view(text, text + length)))
        self.m_hasChildren.back() = true;
    self.passed();
}

void Pass::addOtherNode(void *context) {
    if (isInEntity(context) && !m_hasChildren.empty())
        refuseMarkup();
    if (!m_hasChildren.empty())
        m_hasChildren.back() = true;
    passed();
}

void Pass::comment(void *context, const xmlChar *) {
    of(context).addOtherNode(context);
}

void Pass::instruction(void *context, const xmlChar *, const xmlChar *) {
    of(context).addOtherNode(context);
}

void Pass::cdata(void *context, const xmlChar *, int) {
    of(context).addOtherNode(context);
}

void Pass::attributeDeclaration(void *context, const xmlChar *, const xmlChar *, int, int,
                                const xmlChar *defaultValue, xmlEnumerationPtr values) {
    xmlFreeEnumeration(values);
    Pass &self = of(context);
    if (defaultValue != nullptr && ++self.m_defaults > mostDefaults)
        self.stop(context, tooManyDefaults());
}

void Pass::entityDeclaration(void *context, const xmlChar *name, int type, const xmlChar *publicId,
                             const xmlChar *systemId, xmlChar *content) {
    Pass &self = of(context);
    if (++self.m_entities > mostEntities)
        self.stop(context, tooManyEntities());
    else
        xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
}

xmlEntityPtr Pass::entity(void *context, const xmlChar *name) {
    xmlEntityPtr entity = xmlSAX2GetEntity(context, name);
    // Declarations come by here, too; they do no harm until they are used.
    if (entity == nullptr || static_cast<xmlParserCtxtPtr>(context)->inSubset != 0)
        return entity;
    Pass &self = of(context);
    if (!self.isAffordable(entity))
        return nullptr;
    if (entity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY && self.m_result.refusal.isEmpty()) {
        self.m_result.refusal = QStringLiteral("it takes content from another file (entity \"%1\")")
                                    .arg(QString::fromUtf8(reinterpret_cast<const char *>(name)));
    }
    return entity;
}

xmlEntityPtr Pass::parameterEntity(void *context, const xmlChar *name) {
    xmlEntityPtr entity = xmlSAX2GetParameterEntity(context, name);
    return entity != nullptr && of(context).isAffordable(entity) ? entity : nullptr;
}

/// The parser's own guard against entities that grow without end lets some of them pass.
bool Pass::isAffordable(xmlEntityPtr entity) {
    const bool isInContent = m_context->instate == XML_PARSER_CONTENT && !m_isInValue;
    m_growth.addEntity(static_cast<std::size_t>(std::max(entity->length, 0)), isInContent);
    if (m_growth.isTooLarge(0))
        fail(XML_ERR_ENTITY_LOOP, grownTooLarge());
    return !m_failed;
}

void Pass::refuseMarkup() {
    if (m_result.refusal.isEmpty())
        m_result.refusal = QStringLiteral("it has an entity that holds markup");
}

void Pass::checkSize() {
    const std::size_t size = m_result.nodes.size();
    if (size > mostBytes)
        fail(XML_ERR_NO_MEMORY, QStringLiteral("The file is too large."));
    else if (m_growth.isTooLarge(size))
        fail(XML_ERR_ENTITY_LOOP, grownTooLarge());
}

/// To be called from the parser or its callbacks, where it stands at a place of its input.
void Pass::fail(int code, const QString &reason) {
    if (m_failed)
        return; // one fault may yield several messages: the first counts
    failInside(code, reason);
    takePlace();
}

/// Likewise while the parser fetches input: it has moved its buffer, and its place isn't valid.
void Pass::failInside(int code, const QString &reason) {
    if (m_failed)
        return;
    m_failed = true;
    m_result.error.errorCode = code;
    m_result.error.reason = reason;
    const xmlParserInputBuffer *buffer =
        m_context->inputNr > 0 ? m_context->inputTab[0]->buf : nullptr;
    if (buffer != nullptr && buffer->encoder != nullptr)
        m_encoding = buffer->encoder->name;
}

/// The rest of an entity at hand isn't read any more, however long it is.
void Pass::stop(void *context, const QString &reason) {
    fail(XML_ERR_INTERNAL_ERROR, reason);
    xmlStopParser(static_cast<xmlParserCtxtPtr>(context));
}

void Pass::takePlace() {
    if (m_context->inputNr < 1)
        return;
    // The file itself lies at the bottom; entities of the document type lie above it.
    const xmlParserInputPtr top = m_context->input;
    m_context->input = m_context->inputTab[0];
    const long consumed = xmlByteConsumed(m_context.get());
    m_result.error.line = m_context->input->line;
    m_result.error.linepos = m_context->input->col;
    m_result.error.filepos = consumed >= 0 ? consumed : static_cast<qint64>(m_growth.bytesRead);
    m_context->input = top;
    m_hasPlace = true;
}

/// To be called when the parser has returned.
void Pass::findPlace() {
    ParseError &error = m_result.error;
    const bool isBadByte = error.errorCode == XML_I18N_CONV_FAILED;
    if (!m_hasPlace && !(isBadByte && locateBadByte(m_file, m_encoding, error)))
        takePlace();
    error.srcText = sourceLine(m_file, error.filepos, m_encoding);
    error.reason = plainReason(error.reason, m_file) + QStringLiteral("\r\n");
}

} // namespace

ParseResult parse(QFile &file) {
    return Pass(file).run();
}

} // namespace veltrona::xml
