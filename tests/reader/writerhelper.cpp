// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/channels.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messagewriter.h>

#include <QCoreApplication>
#include <QTextStream>

/**
 * A program that writes without a turn: `writerhelper NAME COUNT`. It asks the store about everything, writes
 * "ready", waits for a line on its standard input, and adds the channel NAME with COUNT episodes, whose links
 * do not depend on NAME. It adds the channel "same" too, which only one program can. Then it writes the
 * number of its new messages and whether it has added "same".
 */
using namespace Tidel;

namespace {

QString linkOf(const QString &name) { return QStringLiteral("https://example.org/") + name; }

FeedChannel channel(const QString &name)
{
    FeedChannel channel;
    channel.setTitle(name);
    channel.setLink(linkOf(name));
    return channel;
}

QList<StorableMessage> episodes(int count)
{
    QList<StorableMessage> messages;
    for (int i = 0; i < count; ++i) {
        FeedMessage message;
        message.setTitle(QString::number(i));
        StorableMessage episode(Link::fromEncoded(linkOf(QString::number(i))), message);
        episode.addEnclosure(Link::fromEncoded(linkOf(QString::number(i) + QStringLiteral(".ogg"))),
                             FeedEnclosure());
        messages.append(episode);
    }
    return messages;
}

QList<Link> linksOf(const QList<StorableMessage> &messages)
{
    QList<Link> links;
    for (const StorableMessage &message : messages)
        links.append(message.link());
    return links;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    QTextStream out(stdout);
    QTextStream in(stdin);
    const Result<Store> store = Store::open();
    if (!store)
        return 1;
    const Result<QString> uri = Channels(*store).add(channel(arguments.value(1)));
    const QList<StorableMessage> messages = episodes(arguments.value(2).toInt());
    const Result<LinkUse> use = uri.and_then(
        [&](const QString &channelUri) { return LinkUse::of(*store, linksOf(messages), channelUri); });
    if (!use)
        return 1;
    out << "ready\n" << Qt::flush;
    in.readLine();
    const Result<QString> same = Channels(*store).add(channel(QStringLiteral("same")));
    WrittenMessages written;
    const Result<void> done = MessageWriter(*store).write(messages, *uri, *use, {}, &written);
    const bool isFine = done && (same || same.error().kind() == Error::AlreadyStored);
    out << written.added.size() << ' ' << same.has_value() << '\n' << Qt::flush;
    return isFine ? 0 : 1;
}
