// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LINK_H
#define TIDEL_LINK_H

#include "tidelreaderglobal.h"

#include <QString>
#include <QUrl>

namespace Tidel {

/**
 * An address in the form in which the store keeps addresses: absolute and encoded, so that it can stand in a
 * statement, and so that reading it as a user's input gives the same address again.
 *
 * A link is made by cleaning an address once. Who is handed a Link need not check it.
 * \code
 * const Link link = Link::fromText(" /a b ", QUrl("https://example.org/blog/"));
 * link.toString(); // https://example.org/a%20b
 * \endcode
 */
class TIDELREADER_EXPORT Link
{
public:
    /// The null link.
    Link() = default;

    /// The address \a text of a page, relative to \a base. Null if a reader cannot follow it: its scheme must
    /// be http, https, ftp, gemini, gopher, file, magnet, mailto, news or nntp.
    static Link fromText(const QString &text, const QUrl &base = QUrl());
    /// The address \a text of a file, relative to \a base. Null unless it is http, https, ftp or file.
    static Link toFile(const QString &text, const QUrl &base = QUrl());
    /// The link \a text, which is encoded already, of any scheme. Null if it is relative or not encoded.
    static Link fromEncoded(const QString &text);
    /// A link for an item that has none, made of the address of its feed and its \a id.
    static Link ofItem(const QString &feedLink, const QString &id);

    /// This link with a fragment made of \a id. It leads to the same place, and differs from the links of
    /// other items.
    Link forItem(const QString &id) const;

    /// Returns true if there is no link; otherwise returns false.
    bool isNull() const { return m_text.isEmpty(); }
    /// The encoded address; empty if the link is null.
    QString toString() const { return m_text; }
    /// The address; empty if the link is null.
    QUrl toUrl() const { return QUrl(m_text); }

    /// Returns true if the addresses are equal; otherwise returns false.
    bool operator==(const Link &other) const { return m_text == other.m_text; }
    /// Returns true if the addresses differ; otherwise returns false.
    bool operator!=(const Link &other) const { return m_text != other.m_text; }

    /// Returns true if \a text has no scheme, so that it needs a base; otherwise returns false.
    static bool isRelative(const QString &text);
    /// \a url in the form in which the store keeps addresses.
    static QString encoded(const QUrl &url);

private:
    explicit Link(const QString &text) : m_text(text) { }

    QString m_text; // no other member: this is the whole value
};

} // namespace Tidel

#endif
