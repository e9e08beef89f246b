// SPDX-License-Identifier: LGPL-2.1-or-later
#include "xmlparser.h"

#include "xmlmender.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <algorithm>
#include <memory>

namespace Tidel {

namespace {

std::string_view view(const xmlChar *text)
{
    return text ? std::string_view(reinterpret_cast<const char *>(text)) : std::string_view();
}

struct ContextDeleter
{
    void operator()(xmlParserCtxt *context) const
    {
        xmlFreeDoc(context->myDoc);
        xmlFreeParserCtxt(context);
    }
};

/// What is wrong, for a person.
QString reasonOf(const xmlError &error)
{
    // The message may contain a name of the document, of any length.
    const QString message = QString::fromUtf8(error.message).simplified().left(200);
    if (message.startsWith(QLatin1String("StartTag")))
        return QStringLiteral("a < that begins no tag");
    if (error.code == XML_ERR_ENTITYREF_SEMICOL_MISSING
        || message.startsWith(QLatin1String("xmlParseEntityRef")))
        return QStringLiteral("an & that begins no entity");
    // Some messages begin with the name of a function of the parser.
    return message.startsWith(QLatin1String("xmlParse")) ? message.section(QLatin1String(": "), 1) : message;
}

/// One parsing. Passes the events of libxml2 to the handler.
class XmlParsing
{
public:
    XmlParsing(std::string_view document, OnXmlError onError, XmlHandler &handler)
        : m_document(document), m_onError(onError), m_handler(handler), m_textLimit(document.size() + 1048576)
    {
    }

    XmlOutcome run();

private:
    static XmlParsing &of(void *context)
    {
        return *static_cast<XmlParsing *>(static_cast<xmlParserCtxt *>(context)->_private);
    }

    static int read(void *parsing, char *buffer, int size);
    static void startElement(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri,
                             int, const xmlChar **, int count, int, const xmlChar **values);
    static void endElement(void *context, const xmlChar *, const xmlChar *, const xmlChar *);
    static void characters(void *context, const xmlChar *text, int size);
    static void literal(void *context, const xmlChar *text, int size);
    static void instruction(void *context, const xmlChar *target, const xmlChar *);
    static void declareEntity(void *context, const xmlChar *name, int type, const xmlChar *, const xmlChar *,
                              xmlChar *content);
    static void hearError(void *context, xmlErrorPtr error);
    static xmlSAXHandler handlers();

    void passText(std::string_view text, bool isLiteral);
    /// Counts \a size bytes of text that the document stands for.
    bool count(size_t size);
    void goOnIf(bool isWanted);

    const std::string_view m_document;
    const OnXmlError m_onError;
    XmlHandler &m_handler;
    const size_t m_textLimit;
    std::unique_ptr<xmlParserCtxt, ContextDeleter> m_context;
    size_t m_position = 0;
    size_t m_textSize = 0;
    std::vector<XmlTag::Attribute> m_attributes;
    XmlOutcome m_outcome;
};

xmlSAXHandler XmlParsing::handlers()
{
    xmlSAXHandler handler = {};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startDocument = xmlSAX2StartDocument;
    handler.internalSubset = xmlSAX2InternalSubset;
    handler.getEntity = xmlSAX2GetEntity;
    handler.getParameterEntity = xmlSAX2GetParameterEntity;
    handler.entityDecl = declareEntity;
    handler.startElementNs = startElement;
    handler.endElementNs = endElement;
    handler.characters = characters;
    handler.ignorableWhitespace = characters;
    handler.cdataBlock = literal;
    handler.processingInstruction = instruction;
    handler.serror = hearError;
    return handler;
}

XmlOutcome XmlParsing::run()
{
    xmlSAXHandler handler = handlers();
    m_context.reset(xmlCreateIOParserCtxt(&handler, nullptr, read, nullptr, this, XML_CHAR_ENCODING_UTF8));
    if (!m_context) {
        m_outcome.error = QStringLiteral("there is not enough memory");
        return m_outcome;
    }
    m_context->_private = this;
    xmlCtxtUseOptions(m_context.get(),
                      XML_PARSE_RECOVER | XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
    xmlParseDocument(m_context.get());
    return m_outcome;
}

int XmlParsing::read(void *parsing, char *buffer, int size)
{
    auto &self = *static_cast<XmlParsing *>(parsing);
    const size_t available = self.m_document.copy(buffer, size_t(size), self.m_position);
    self.m_position += available;
    return int(available);
}

void XmlParsing::startElement(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri,
                              int, const xmlChar **, int count, int, const xmlChar **values)
{
    // libxml2 describes an attribute by five pointers: name, prefix, namespace, value and the end of the
    // value.
    constexpr int step = 5;
    XmlParsing &self = of(context);
    self.m_attributes.clear();
    size_t size = view(name).size();
    for (const xmlChar **value = values; value < values + ptrdiff_t(count) * step; value += step) {
        const auto *const text = reinterpret_cast<const char *>(value[3]);
        self.m_attributes.push_back({view(value[1]), view(value[0]), {text, size_t(value[4] - value[3])}});
        size += self.m_attributes.back().name.size() + self.m_attributes.back().value.size();
    }
    if (self.count(size))
        self.goOnIf(self.m_handler.startElement({view(uri), view(prefix), view(name), self.m_attributes}));
}

void XmlParsing::endElement(void *context, const xmlChar *, const xmlChar *, const xmlChar *)
{
    XmlParsing &self = of(context);
    self.goOnIf(self.m_handler.endElement());
}

void XmlParsing::characters(void *context, const xmlChar *text, int size)
{
    of(context).passText({reinterpret_cast<const char *>(text), size_t(size)}, false);
}

void XmlParsing::literal(void *context, const xmlChar *text, int size)
{
    of(context).passText({reinterpret_cast<const char *>(text), size_t(size)}, true);
}

void XmlParsing::instruction(void *context, const xmlChar *target, const xmlChar *)
{
    if (view(target) == cutInstruction)
        of(context).m_handler.documentIsCut();
}

// An entity that is a file or an address is empty, so that it cannot be opened.
void XmlParsing::declareEntity(void *context, const xmlChar *name, int type, const xmlChar *, const xmlChar *,
                               xmlChar *content)
{
    const bool isParameter = type == XML_INTERNAL_PARAMETER_ENTITY || type == XML_EXTERNAL_PARAMETER_ENTITY;
    const bool isInternal = type == XML_INTERNAL_PARAMETER_ENTITY || type == XML_INTERNAL_GENERAL_ENTITY;
    xmlChar nothing[] = {0};
    xmlSAX2EntityDecl(context, name,
                      isParameter ? XML_INTERNAL_PARAMETER_ENTITY : XML_INTERNAL_GENERAL_ENTITY, nullptr,
                      nullptr, isInternal ? content : nothing);
}

void XmlParsing::hearError(void *context, xmlErrorPtr error)
{
    XmlParsing &self = of(context);
    self.m_outcome.expandsTooMuch |= error->code == XML_ERR_ENTITY_LOOP;
    self.m_outcome.lacksEntities |= error->code == XML_WAR_UNDECLARED_ENTITY;
    if (error->level == XML_ERR_FATAL && self.m_outcome.error.isEmpty())
        self.m_outcome.error =
            QStringLiteral("line %1, column %2: %3")
                .arg(QString::number(error->line), QString::number(error->int2), reasonOf(*error));
    if (self.m_onError == OnXmlError::Stop && self.m_outcome.needsMending())
        self.goOnIf(false);
}

void XmlParsing::passText(std::string_view text, bool isLiteral)
{
    if (count(text.size()))
        goOnIf(m_handler.text(text, isLiteral));
}

bool XmlParsing::count(size_t size)
{
    m_textSize += size;
    if (m_textSize <= m_textLimit)
        return true;
    m_outcome.expandsTooMuch = true;
    goOnIf(false);
    return false;
}

void XmlParsing::goOnIf(bool isWanted)
{
    if (!isWanted)
        xmlStopParser(m_context.get());
}

} // namespace

XmlOutcome parseXml(std::string_view document, OnXmlError onError, XmlHandler &handler)
{
    // On whatever thread this is done first, the others wait for it.
    [[maybe_unused]] static const bool isReady = (xmlInitParser(), true);
    return XmlParsing(document, onError, handler).run();
}

} // namespace Tidel
