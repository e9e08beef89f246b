// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SAFEHTMLWRITER_P_H
#define TIDEL_SAFEHTMLWRITER_P_H

#include "safehtml.h"

#include <QSet>
#include <QVector>

#include <gumbo.h>

namespace Tidel {

/// Writes the nodes of an HTML tree as safe HTML. What it writes parses to the elements that it wrote, so
/// that no element ends another one.
class SafeHtmlWriter
{
public:
    SafeHtmlWriter(const QUrl &base, SafeHtml::Pictures pictures) : m_base(base), m_pictures(pictures) { }

    /// Continues with \a node and all nodes in it.
    void add(const GumboNode &node);
    /// Returns what was written.
    SafeHtml finish();

private:
    void addText(QString text);
    void addElement(const GumboNode &node);
    void addChildren(const GumboNode &node);
    void addInline(const GumboNode &node);
    void addBlock(const GumboNode &node);
    void addPart(const GumboNode &node);
    void addTable(const GumboNode &node);
    void addLine(const GumboNode &node);
    void addBreak(const GumboNode &node);
    void addAnchor(const GumboNode &node);
    void addPicture(const GumboNode &node);
    void addMedium(const GumboNode &node);
    void addShortQuotation(const GumboNode &node);
    void skip(const GumboNode &) { }

    using Handler = void (SafeHtmlWriter::*)(const GumboNode &);
    static Handler handlerOf(GumboTag tag);

    /// Writes the element \a name with \a attributes around the children of \a node.
    void write(const QByteArray &name, const QString &attributes, const GumboNode &node);
    void writeBlock(const QByteArray &name, const GumboNode &node);
    void writeLink(const QString &address, const QString &text);
    /// Makes place for a block. Returns false if it cannot stand here; then a line break takes its place.
    bool beginBlock();
    /// Returns false if there are too many elements for another one.
    bool count();
    bool isOpen(const QByteArray &name) const { return m_open.contains(name); }
    /// The address \a text, if it may be followed; otherwise empty.
    QString address(const QString &text, bool isPicture) const;

    const QUrl m_base;
    const SafeHtml::Pictures m_pictures;
    SafeHtml m_result;
    QSet<QString> m_pictureAddresses;
    QVector<QByteArray> m_open; ///< The names of the elements that are open in the result.
    int m_elements = 0;
};

} // namespace Tidel

#endif
