// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLPARSER_H
#define TIDEL_XMLPARSER_H

#include <QString>

#include <string_view>
#include <vector>

namespace Tidel {

/// A start tag. The views are valid during XmlHandler::startElement().
struct XmlTag
{
    /// An attribute; the values of `xml:base` and `xml:lang` have the prefix "xml".
    struct Attribute
    {
        std::string_view prefix;
        std::string_view name;
        std::string_view value;
    };

    std::string_view uri; ///< The namespace; empty if there is none.
    std::string_view prefix;
    std::string_view name;
    const std::vector<Attribute> &attributes;
};

/// Hears the content of a document.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;

    /// The functions return false to end the parsing.
    /// @{
    virtual bool startElement(const XmlTag &tag) = 0;
    virtual bool endElement() = 0;
    /// \a isLiteral is true in a CDATA section.
    virtual bool text(std::string_view text, bool isLiteral) = 0;
    /// @}

    /// The document ends here; end tags that follow were made up by XmlMender.
    virtual void documentIsCut() = 0;
};

/// What parseXml() does at the first error.
enum class OnXmlError { Stop, GoOn };

/// How the parsing of a document ended.
struct XmlOutcome
{
    QString error; ///< "line 3, column 7: what is wrong", for the first error; empty if it is well-formed.
    bool lacksEntities = false; ///< True if it uses entities that an unread document type may declare.
    bool expandsTooMuch = false; ///< True if the entities of the document stand for too much text.

    /// Returns true if text was lost; otherwise returns false.
    bool needsMending() const { return !error.isEmpty() || lacksEntities; }
};

/// Parses  document, in UTF-8, for  handler. Never opens a file or connection for the document.
XmlOutcome parseXml(std::string_view document, OnXmlError onError, XmlHandler &handler);

} // namespace Tidel

#endif
