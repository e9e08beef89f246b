// SPDX-License-Identifier: LGPL-2.1-or-later
#include "safehtmlwriter_p.h"

#include "htmlnode_p.h"
#include "htmltables_p.h"
#include "link.h"
#include "usertext.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace Tidel {

namespace {

constexpr int maximumElements = 20000;
constexpr int maximumPictures = 500;
// Each level is indented.
constexpr int maximumIndents = 12;
constexpr int maximumPictureSize = 4000;
constexpr int maximumSpan = 20;

bool isTextBlock(const QByteArray &name)
{
    return name == "p" || (name.size() == 2 && name.at(0) == 'h' && name.at(1) != 'r');
}

bool isIndented(const QByteArray &name)
{
    return name == "ul" || name == "ol" || name == "dl" || name == "blockquote";
}

QByteArray tagName(const GumboNode &node) { return gumbo_normalized_tagname(node.v.element.tag); }

/// Returns true if browsers do not show the element \a node; otherwise returns false.
bool isHidden(const GumboNode &node)
{
    if (gumbo_get_attribute(&node.v.element.attributes, "hidden"))
        return true;
    static const QRegularExpression hiding(
        QStringLiteral("display\\s*:\\s*none|visibility\\s*:\\s*hidden|mso-hide\\s*:\\s*all"),
        QRegularExpression::CaseInsensitiveOption);
    const QString style = attribute(node, "style");
    return !style.isEmpty() && hiding.match(style).hasMatch();
}

QString written(const char *name, const QString &value)
{
    return QStringLiteral(" %1=\"%2\"").arg(QLatin1String(name), value.toHtmlEscaped());
}

/// The attribute \a name of \a node, if it is a number from \a least to \a most; otherwise empty.
QString number(const GumboNode &node, const char *name, int least, int most)
{
    QString text = attribute(node, name);
    text.remove(QLatin1String("px"));
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    return isNumber && value >= least && value <= most ? written(name, QString::number(value)) : QString();
}

QString direction(const GumboNode &node)
{
    const QString value = attribute(node, "dir").toLower();
    return value == QLatin1String("rtl") || value == QLatin1String("ltr") ? written("dir", value) : QString();
}

QString attributesOf(const GumboNode &node, const QByteArray &name)
{
    QString attributes = direction(node);
    if (name == "ol")
        attributes += number(node, "start", 2, 99999);
    if (name == "td" || name == "th")
        attributes += number(node, "colspan", 2, maximumSpan) + number(node, "rowspan", 2, maximumSpan);
    return attributes;
}

} // namespace

SafeHtmlWriter::Handler SafeHtmlWriter::handlerOf(GumboTag tag)
{
    static const QHash<int, Handler> handlers = [] {
        QHash<int, Handler> table;
        const auto set = [&table](std::initializer_list<GumboTag> tags, Handler handler) {
            for (const GumboTag each : tags)
                table.insert(each, handler);
        };
        set({GUMBO_TAG_B,     GUMBO_TAG_STRONG, GUMBO_TAG_I,   GUMBO_TAG_EM,     GUMBO_TAG_U,
             GUMBO_TAG_INS,   GUMBO_TAG_S,      GUMBO_TAG_DEL, GUMBO_TAG_STRIKE, GUMBO_TAG_BIG,
             GUMBO_TAG_SMALL, GUMBO_TAG_SUB,    GUMBO_TAG_SUP, GUMBO_TAG_CODE,   GUMBO_TAG_KBD,
             GUMBO_TAG_SAMP,  GUMBO_TAG_TT,     GUMBO_TAG_VAR, GUMBO_TAG_CITE,   GUMBO_TAG_DFN},
            &SafeHtmlWriter::addInline);
        set({GUMBO_TAG_P,          GUMBO_TAG_H1,      GUMBO_TAG_H2,      GUMBO_TAG_H3,
             GUMBO_TAG_H4,         GUMBO_TAG_H5,      GUMBO_TAG_H6,      GUMBO_TAG_PRE,
             GUMBO_TAG_BLOCKQUOTE, GUMBO_TAG_UL,      GUMBO_TAG_OL,      GUMBO_TAG_DL,
             GUMBO_TAG_DIV,        GUMBO_TAG_ADDRESS, GUMBO_TAG_ARTICLE, GUMBO_TAG_ASIDE,
             GUMBO_TAG_CENTER,     GUMBO_TAG_DETAILS, GUMBO_TAG_DIR,     GUMBO_TAG_FIELDSET,
             GUMBO_TAG_FIGCAPTION, GUMBO_TAG_FIGURE,  GUMBO_TAG_FOOTER,  GUMBO_TAG_HEADER,
             GUMBO_TAG_HGROUP,     GUMBO_TAG_MAIN,    GUMBO_TAG_MENU,    GUMBO_TAG_NAV,
             GUMBO_TAG_SECTION,    GUMBO_TAG_SUMMARY},
            &SafeHtmlWriter::addBlock);
        set({GUMBO_TAG_LI, GUMBO_TAG_DT, GUMBO_TAG_DD, GUMBO_TAG_CAPTION, GUMBO_TAG_TR, GUMBO_TAG_TD,
             GUMBO_TAG_TH},
            &SafeHtmlWriter::addPart);
        set({GUMBO_TAG_TABLE}, &SafeHtmlWriter::addTable);
        set({GUMBO_TAG_HR}, &SafeHtmlWriter::addLine);
        set({GUMBO_TAG_BR}, &SafeHtmlWriter::addBreak);
        set({GUMBO_TAG_A}, &SafeHtmlWriter::addAnchor);
        set({GUMBO_TAG_IMG, GUMBO_TAG_IMAGE}, &SafeHtmlWriter::addPicture);
        set({GUMBO_TAG_AUDIO, GUMBO_TAG_VIDEO, GUMBO_TAG_IFRAME}, &SafeHtmlWriter::addMedium);
        set({GUMBO_TAG_Q}, &SafeHtmlWriter::addShortQuotation);
        set({GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE, GUMBO_TAG_TEMPLATE, GUMBO_TAG_TITLE, GUMBO_TAG_NOEMBED,
             GUMBO_TAG_NOFRAMES, GUMBO_TAG_OBJECT, GUMBO_TAG_APPLET, GUMBO_TAG_EMBED, GUMBO_TAG_SELECT,
             GUMBO_TAG_TEXTAREA, GUMBO_TAG_BUTTON, GUMBO_TAG_INPUT, GUMBO_TAG_SVG, GUMBO_TAG_MATH},
            &SafeHtmlWriter::skip);
        return table;
    }();
    return handlers.value(tag, &SafeHtmlWriter::addChildren);
}

void SafeHtmlWriter::add(const GumboNode &node)
{
    if (isText(node))
        addText(QString::fromUtf8(node.v.text.text));
    else if (node.type == GUMBO_NODE_ELEMENT && !isHidden(node))
        (this->*handlerOf(node.v.element.tag))(node);
}

SafeHtml SafeHtmlWriter::finish()
{
    // A parser drops white space before the first element.
    m_result.html = m_result.html.trimmed();
    return m_result;
}

void SafeHtmlWriter::addText(QString text)
{
    text = cleanText(text.replace(QLatin1Char('\r'), QLatin1Char('\n')));
    // A parser drops the first line break.
    if (m_result.html.endsWith(QLatin1String("<pre>"))) {
        while (text.startsWith(QLatin1Char('\n')))
            text.remove(0, 1);
    }
    m_result.html += text.toHtmlEscaped();
}

void SafeHtmlWriter::addChildren(const GumboNode &node)
{
    forEachChild(node, [this](const GumboNode &child) { add(child); });
}

void SafeHtmlWriter::addInline(const GumboNode &node)
{
    static const QHash<QByteArray, QByteArray> names{
        {"ins", "u"}, {"del", "s"}, {"strike", "s"}, {"strong", "b"}, {"em", "i"}};
    const QByteArray own = tagName(node);
    const QByteArray name = names.value(own, own);
    if (isOpen(name) || !count())
        addChildren(node);
    else
        write(name, QString(), node);
}

void SafeHtmlWriter::addBlock(const GumboNode &node)
{
    static const QSet<QByteArray> kept{"p",  "h1", "h2",  "h3",         "h4", "h5",
                                       "h6", "dl", "pre", "blockquote", "ul", "ol"};
    static const QSet<QByteArray> lists{"dir", "menu"};
    const QByteArray name = tagName(node);
    const bool isTooDeep =
        isIndented(name) && std::count_if(m_open.cbegin(), m_open.cend(), isIndented) >= maximumIndents;
    writeBlock(lists.contains(name) ? "ul" : kept.contains(name) && !isTooDeep ? name : "div", node);
}

// An item, a row or a cell stands in what it is a part of, or else it is a block.
void SafeHtmlWriter::addPart(const GumboNode &node)
{
    static const QHash<QByteArray, QSet<QByteArray>> wholes{
        {"li", {"ul", "ol"}}, {"dt", {"dl"}}, {"dd", {"dl"}}, {"caption", {"table"}},
        {"tr", {"table"}},    {"td", {"tr"}}, {"th", {"tr"}}};
    const QByteArray name = tagName(node);
    const bool isPart = !m_open.isEmpty() && wholes.value(name).contains(m_open.constLast());
    if (isPart && count())
        write(name, attributesOf(node, name), node);
    else
        writeBlock("div", node);
}

void SafeHtmlWriter::addTable(const GumboNode &node)
{
    writeBlock(isDataTable(node) ? "table" : "div", node);
}

void SafeHtmlWriter::addLine(const GumboNode &)
{
    if (beginBlock() && count())
        m_result.html += QLatin1String("<hr>");
}

void SafeHtmlWriter::addBreak(const GumboNode &)
{
    if (count())
        m_result.html += QLatin1String("<br>");
}

void SafeHtmlWriter::addAnchor(const GumboNode &node)
{
    const QString href = attribute(node, "href");
    // A link within the article leads nowhere here.
    const QString target = href.startsWith(QLatin1Char('#')) ? QString() : address(href, false);
    if (target.isEmpty() || isOpen("a") || !count())
        addChildren(node);
    else
        write("a", written("href", target), node);
}

void SafeHtmlWriter::addPicture(const GumboNode &node)
{
    const QString source = address(attribute(node, "src"), true);
    if (source.isEmpty() || isPixel(node) || m_pictureAddresses.size() >= maximumPictures || !count())
        return;
    if (!m_pictureAddresses.contains(source)) {
        m_pictureAddresses.insert(source);
        m_result.pictures.append(source);
    }
    const QString description = attribute(node, "alt").simplified();
    if (m_pictures == SafeHtml::ShownPictures) {
        m_result.html += QLatin1String("<img") + written("src", source)
            + (description.isEmpty() ? QString() : written("alt", description))
            + number(node, "width", 2, maximumPictureSize) + number(node, "height", 2, maximumPictureSize)
            + QLatin1Char('>');
        return;
    }
    const bool isWritten = source.startsWith(QLatin1String("data:"));
    const QString name = description.isEmpty() && !isWritten ? QUrl(source).fileName() : description;
    writeLink(SafeHtml::picturesAddress().toString(),
              QLatin1Char('[') + (name.isEmpty() ? QString(QChar(0x2026)) : name) + QLatin1Char(']'));
}

void SafeHtmlWriter::addMedium(const GumboNode &node)
{
    const QString target = address(addressOfMedium(node), false);
    if (!target.isEmpty() && count())
        writeLink(target, withoutPasswords(target));
}

void SafeHtmlWriter::addShortQuotation(const GumboNode &node)
{
    m_result.html += QChar(0x201c);
    addChildren(node);
    m_result.html += QChar(0x201d);
}

void SafeHtmlWriter::write(const QByteArray &name, const QString &attributes, const GumboNode &node)
{
    const QLatin1String tag(name);
    m_result.html += QLatin1Char('<') + tag + attributes + QLatin1Char('>');
    const int before = int(m_open.size());
    m_open.append(name);
    addChildren(node);
    // A block in it may have ended it.
    if (int(m_open.size()) > before) {
        m_open.removeLast();
        m_result.html += QLatin1String("</") + tag + QLatin1Char('>');
    }
}

void SafeHtmlWriter::writeBlock(const QByteArray &name, const GumboNode &node)
{
    if (beginBlock() && count())
        write(name, attributesOf(node, name), node);
    else
        addChildren(node);
}

void SafeHtmlWriter::writeLink(const QString &target, const QString &text)
{
    const bool isLink = !isOpen("a");
    if (isLink)
        m_result.html += QLatin1String("<a") + written("href", target) + QLatin1Char('>');
    m_result.html += text.toHtmlEscaped();
    if (isLink)
        m_result.html += QLatin1String("</a>");
}

bool SafeHtmlWriter::beginBlock()
{
    if (!m_open.isEmpty() && m_open.constLast() == "p") {
        m_open.removeLast();
        m_result.html += QLatin1String("</p>");
    }
    const auto cell = std::find_if(m_open.crbegin(), m_open.crend(), [](const QByteArray &name) {
        return name == "td" || name == "th" || name == "caption";
    });
    const bool isInText = std::any_of(m_open.crbegin(), cell, isTextBlock);
    if (isInText && !m_result.html.endsWith(QLatin1Char('>')))
        m_result.html += QLatin1String("<br>");
    return !isInText;
}

bool SafeHtmlWriter::count() { return ++m_elements <= maximumElements; }

QString SafeHtmlWriter::address(const QString &text, bool isPicture) const
{
    static const QRegularExpression picture(
        QStringLiteral("^data:image/(png|jpeg|gif|webp);base64,[A-Za-z0-9+/=]+$"));
    if (text.isEmpty())
        return {};
    if (isPicture && picture.match(text).hasMatch())
        return text;
    const QString link = Link::fromText(text, m_base).toString();
    const QString scheme = link.section(QLatin1Char(':'), 0, 0);
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    return isWeb || (!isPicture && scheme == QLatin1String("mailto")) ? link : QString();
}

} // namespace Tidel
