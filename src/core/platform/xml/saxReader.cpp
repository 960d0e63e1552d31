#include "core/platform/xml/saxReader.h"

#include "core/base/text.h"
#include "core/platform/xml/sourceLine.h"

#include <QFile>
#include <QScopeGuard>

#include <libxml/parserInternals.h>
#include <libxml/SAX2.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

namespace veltrona::xml {

namespace {

// A report of 32,767 rows takes some 25 MB; beyond this it can't be one.
constexpr std::size_t maxBytes = std::size_t(1) << 30;
constexpr std::size_t maxReserved = std::size_t(64) << 20;

// libxml2 releases parsed input at a tag that begins among the last 500 bytes of its buffer, and
// gives up when the buffer reaches 10 MB. Rows of equal length may never begin there.
constexpr std::ptrdiff_t releasedByParser = 500;

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

} // namespace

SaxReader::SaxReader(QFile &file)
    : m_file(file), m_context(xmlNewParserCtxt(), &xmlFreeParserCtxt) {
    if (!m_context)
        throw std::bad_alloc();
    m_context->_private = this;
    xmlSAXHandler &sax = *m_context->sax;
    sax.startElementNs = &Callback<&SaxReader::startElement>::call;
    sax.endElementNs = &Callback<&SaxReader::endElement>::call;
    sax.characters = &Callback<&SaxReader::characters>::call;
    sax.ignorableWhitespace = sax.characters;
    const auto otherNode = [](void *context, auto...) {
        Callback<&SaxReader::addOtherNode>::call(context);
    };
    sax.comment = otherNode;
    sax.processingInstruction = otherNode;
    sax.cdataBlock = otherNode;
    // The document isn't validated, so the document type needn't be kept.
    sax.elementDecl = nullptr;
    sax.attributeDecl = &Callback<&SaxReader::attributeDeclaration>::call;
    sax.entityDecl = &Callback<&SaxReader::entityDeclaration>::call;
    sax.getEntity = &Callback<&SaxReader::entity>::call;
    sax.getParameterEntity = &Callback<&SaxReader::parameterEntity>::call;
    sax.reference = nullptr;
    sax.externalSubset = nullptr;
    sax.resolveEntity = nullptr;
    sax.serror = [](void *context, auto *error) {
        SaxReader &self = of(context);
        if (error->level == XML_ERR_FATAL || error->code == XML_WAR_UNDECLARED_ENTITY)
            self.guarded([&] { self.fail(error->code, QString::fromUtf8(error->message)); });
    };
}

ParseResult SaxReader::run() {
    m_result.nodes.reserve(
        std::min(static_cast<std::size_t>(std::max<qint64>(0, m_file.size())), maxReserved));
    // Errors of an encoding's decoder are reported without a context.
    xmlSetStructuredErrorFunc(this, [](void *reader, auto *error) {
        SaxReader &self = *static_cast<SaxReader *>(reader);
        self.guarded([&] { self.failInside(error->code, QString::fromUtf8(error->message)); },
                     &SaxReader::failInside);
    });
    const auto resetHook = qScopeGuard([] { xmlSetStructuredErrorFunc(nullptr, nullptr); });
    const auto read = [](void *reader, char *buffer, int length) {
        SaxReader &self = *static_cast<SaxReader *>(reader);
        return self.guarded([&] { return self.read(buffer, length); }, &SaxReader::failInside);
    };
    // No NOENT, DTDLOAD or HUGE: entities of other files stay unread, and the limits hold.
    xmlDocPtr document = xmlCtxtReadIO(m_context.get(), read, nullptr, this, nullptr, nullptr,
                                       XML_PARSE_NONET | XML_PARSE_BIG_LINES);
    xmlFreeDoc(document);
    if (document == nullptr && !m_failed) {
        const xmlError *last = xmlCtxtGetLastError(m_context.get());
        fail(last != nullptr ? last->code : XML_ERR_DOCUMENT_EMPTY,
             QString::fromUtf8(last != nullptr ? last->message : "Document is empty"));
    }
    // libxml2 takes a NUL after the root element for the end of the file.
    if (!m_failed && m_context->input != nullptr && m_context->input->cur < m_context->input->end)
        fail(XML_ERR_DOCUMENT_END, u"Extra content at the end of the document"_s);
    if (m_failed)
        completeError();
    m_result.nodes.addListEnd();
    return std::move(m_result);
}

int SaxReader::read(char *buffer, int length) {
    if (m_failed)
        return 0;
    // These tables double; a single tag of a million attributes is stopped within the tag.
    const Limit *exceeded = m_context->maxatts > 10 * 2 * limit::attributes.max ? &limit::attributes
                            : m_context->nsMax > 2 * 2 * limit::namespaces.max  ? &limit::namespaces
                            : xmlDictSize(m_context->dict) > limit::names.max   ? &limit::names
                                                                                : nullptr;
    if (exceeded) {
        failInside(XML_ERR_INTERNAL_ERROR, refusalOf(*exceeded));
        return 0;
    }
    errno = 0;
    const qint64 count = m_file.read(buffer, length);
    if (count < 0) {
        failInside(errno != 0 ? errno : EIO, m_file.errorString());
        return -1;
    }
    m_budget.bytesRead += static_cast<std::size_t>(count);
    return static_cast<int>(count);
}

void SaxReader::startElement(Context context, const xmlChar *name, const xmlChar *prefix,
                             const xmlChar *, int namespaceCount, const xmlChar **,
                             int attributeCount, int, const xmlChar **attributes) {
    if (m_failed)
        return;
    m_budget.namespaces += static_cast<std::size_t>(namespaceCount);
    if (attributeCount > limit::attributes.max)
        return fail(limit::attributes);
    if (context->nsNr > 2 * limit::namespaces.max)
        return fail(limit::namespaces);
    if (isInEntity(context))
        return refuse(u"it has an entity that holds markup"_s);
    if (m_hasChildren.size() >= limit::depth.max)
        return fail(limit::depth);
    addElement(view(prefix), view(name), attributeCount, attributes);
    finishNode();
}

void SaxReader::addElement(std::string_view prefix, std::string_view name, int attributeCount,
                           const xmlChar **attributes) {
    const bool isRoot = m_hasChildren.empty();
    if (!isRoot)
        m_hasChildren.back() = true;
    m_hasChildren.push_back(false);
    m_result.nodes.addElement(prefix, name, isRoot ? currentLine() : m_lastLine,
                              static_cast<std::size_t>(attributeCount));
    for (int i = 0; i < attributeCount; ++i)
        addAttribute(attributes + 5 * i);
    checkSize(m_result.nodes.size());
}

/// `attribute` is local name, prefix, URI, begin and end of the value.
void SaxReader::addAttribute(const xmlChar **attribute) {
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
        fail(XML_ERR_ENTITY_PROCESSING, u"An attribute's entities can't be read."_s);
    m_result.nodes.addAttribute(view(attribute[1]), view(attribute[0]), view(text.get()));
    checkSize(m_result.nodes.size());
}

void SaxReader::endElement(Context context, const xmlChar *, const xmlChar *, const xmlChar *) {
    if (m_failed || isInEntity(context) || m_hasChildren.empty())
        return;
    if (m_hasChildren.back())
        m_result.nodes.addListEnd();
    m_hasChildren.pop_back();
    finishNode();
}

void SaxReader::characters(Context, const xmlChar *text, int length) {
    if (!m_hasChildren.empty() && !isBlank(view(text, text + length)))
        m_hasChildren.back() = true;
    m_lastLine = currentLine();
}

void SaxReader::addOtherNode(Context context) {
    if (isInEntity(context) && !m_hasChildren.empty())
        refuse(u"it has an entity that holds markup"_s);
    if (!m_hasChildren.empty())
        m_hasChildren.back() = true;
    finishNode();
}

void SaxReader::attributeDeclaration(Context context, const xmlChar *, const xmlChar *, int, int,
                                     const xmlChar *defaultValue, xmlEnumerationPtr values) {
    xmlFreeEnumeration(values);
    if (defaultValue != nullptr && ++m_defaults > limit::defaults.max)
        stop(context, limit::defaults);
}

void SaxReader::entityDeclaration(Context context, const xmlChar *name, int type,
                                  const xmlChar *publicId, const xmlChar *systemId,
                                  xmlChar *content) {
    if (++m_entities > limit::entities.max)
        stop(context, limit::entities);
    else
        xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
}

xmlEntityPtr SaxReader::entity(Context context, const xmlChar *name) {
    xmlEntityPtr entity = xmlSAX2GetEntity(context, name);
    // Declarations look entities up, too; they do no harm until they are used.
    if (entity == nullptr || context->inSubset != 0)
        return entity;
    if (!isAffordable(entity))
        return nullptr;
    if (entity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY)
        refuse(u"it takes content from another file (entity \"%1\")"_s.arg(
            QString::fromUtf8(view(name))));
    return entity;
}

xmlEntityPtr SaxReader::parameterEntity(Context context, const xmlChar *name) {
    xmlEntityPtr entity = xmlSAX2GetParameterEntity(context, name);
    return entity != nullptr && isAffordable(entity) ? entity : nullptr;
}

/// libxml2's own guard against exponential entities misses some of them.
bool SaxReader::isAffordable(xmlEntityPtr entity) {
    const bool isInContent = m_context->instate == XML_PARSER_CONTENT && !m_isInValue;
    m_budget.addEntity(static_cast<std::size_t>(std::max(entity->length, 0)), isInContent);
    checkSize(0);
    return !m_failed;
}

void SaxReader::refuse(const QString &reason) {
    if (m_result.refusal.isEmpty())
        m_result.refusal = reason;
}

void SaxReader::checkSize(std::size_t nodeBytes) {
    if (nodeBytes > maxBytes)
        fail(XML_ERR_NO_MEMORY, u"The file is too large."_s);
    else if (m_budget.isTooLarge(nodeBytes))
        fail(XML_ERR_ENTITY_LOOP, u"Entities or default attributes make the file too large."_s);
}

void SaxReader::fail(const Limit &exceeded) {
    fail(XML_ERR_INTERNAL_ERROR, refusalOf(exceeded));
}

/// For callbacks during which libxml2 is at a valid position of its input.
void SaxReader::fail(int code, const QString &reason) {
    if (m_failed)
        return; // one fault may cause several messages: the first counts
    failInside(code, reason);
    recordErrorPosition();
}

/// For callbacks while libxml2 reads input: it has moved its buffer, and its position isn't valid.
void SaxReader::failInside(int code, const QString &reason) {
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

/// Doesn't read the rest of the current entity, however long it is.
void SaxReader::stop(Context context, const Limit &exceeded) {
    fail(exceeded);
    xmlStopParser(context);
}

/// libxml2 counts lines in an int, which wraps in a file of more than 2 GB.
qint64 SaxReader::currentLine() {
    const auto line = static_cast<unsigned>(m_context->inputTab[0]->line);
    return m_line += static_cast<int>(line - static_cast<unsigned>(m_line));
}

void SaxReader::finishNode() {
    m_lastLine = currentLine();
    const xmlParserInput &input = *m_context->input;
    const std::ptrdiff_t rest = input.end - input.cur;
    // No more is moved than has been parsed, and no byte is read earlier than by libxml2 alone.
    if (m_context->inputNr == 1 && rest >= releasedByParser && input.cur - input.base > rest)
        xmlParserInputShrink(m_context->input);
}

void SaxReader::recordErrorPosition() {
    if (m_context->inputNr < 1)
        return;
    // The file is the lowest input; entities of the document type are stacked above it.
    const xmlParserInputPtr top = m_context->input;
    m_context->input = m_context->inputTab[0];
    const long consumed = xmlByteConsumed(m_context.get());
    m_result.error.line = currentLine();
    m_result.error.linepos = static_cast<unsigned>(m_context->input->col);
    m_result.error.filepos = consumed >= 0 ? consumed : static_cast<qint64>(m_budget.bytesRead);
    m_context->input = top;
    m_hasPlace = true;
}

/// To be called when libxml2 has returned.
void SaxReader::completeError() {
    ParseError &error = m_result.error;
    const bool isBadByte = error.errorCode == XML_I18N_CONV_FAILED;
    if (!m_hasPlace && !(isBadByte && locateBadByte(m_file, m_encoding, error)))
        recordErrorPosition();
    error.srcText = sourceLine(m_file, error.filepos, m_encoding);
    error.reason = plainReason(error.reason, m_file) + u"\r\n"_s;
}

} // namespace veltrona::xml
