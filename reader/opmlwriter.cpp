// SPDX-License-Identifier: LGPL-2.1-or-later
#include "opml.h"

#include "cleantext.h"

#include <QXmlStreamWriter>

#include <algorithm>

namespace Tidel::Opml {

namespace {

void writeTitle(QXmlStreamWriter &xml, const QString &title)
{
    xml.writeAttribute(QStringLiteral("text"), title);
    xml.writeAttribute(QStringLiteral("title"), title);
}

void writeFeed(QXmlStreamWriter &xml, const Subscription &subscription)
{
    xml.writeEmptyElement(QStringLiteral("outline"));
    xml.writeAttribute(QStringLiteral("type"), QStringLiteral("rss"));
    writeTitle(xml, cleanText(subscription.title).simplified());
    xml.writeAttribute(QStringLiteral("xmlUrl"), subscription.link.toString());
    if (!subscription.website.isNull())
        xml.writeAttribute(QStringLiteral("htmlUrl"), subscription.website.toString());
}

/// Ends the folders that \a from has and \a to does not, and starts those that \a to has.
void changeFolder(QXmlStreamWriter &xml, const QStringList &from, const QStringList &to)
{
    const auto differing = std::mismatch(from.begin(), from.end(), to.begin(), to.end());
    for (auto name = differing.first; name != from.end(); ++name)
        xml.writeEndElement();
    for (auto name = differing.second; name != to.end(); ++name) {
        xml.writeStartElement(QStringLiteral("outline"));
        writeTitle(xml, *name);
    }
}

} // namespace

QByteArray write(const QList<Subscription> &subscriptions)
{
    QByteArray document;
    QXmlStreamWriter xml(&document);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("opml"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    xml.writeStartElement(QStringLiteral("head"));
    xml.writeTextElement(QStringLiteral("title"), QStringLiteral("Subscriptions"));
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("body"));
    QStringList folder;
    for (const Subscription &subscription : subscriptions) {
        changeFolder(xml, folder, subscription.folder);
        folder = subscription.folder;
        writeFeed(xml, subscription);
    }
    xml.writeEndDocument();
    return document;
}

} // namespace Tidel::Opml
