// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/writeturn.h>

#include <atomic>
#include <future>
#include <thread>

using namespace Tidel;

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QString channelUri(const QString &name) { return "urn:channel:" + name; }

QString messageUri(const QString &name) { return "urn:message:" + name; }

QString enclosureUri(const QString &name) { return "urn:enclosure:" + name; }

QString linkOf(const QString &name) { return "https://example.org/" + name; }

QStringList messageUris(const QStringList &names)
{
    QStringList uris;
    for (const QString &name : names)
        uris.append(messageUri(name));
    return uris;
}

QStringList linksOf(const QStringList &names)
{
    QStringList links;
    for (const QString &name : names)
        links.append(linkOf(name));
    return links;
}

QStringList numberedNames(const QString &prefix, int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(prefix + QString::number(i));
    return names;
}

bool takesTurn(const std::function<void()> &work)
{
    std::promise<void> begun;
    std::atomic<bool> hasEnded(false);
    std::thread other([&] {
        const auto turn = WriteTurn::take();
        begun.set_value();
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        hasEnded = true;
    });
    begun.get_future().wait();
    work();
    const bool hasWaited = hasEnded;
    other.join();
    return hasWaited && WriteTurn::take(0);
}

RemovalStep StepLog::listener()
{
    return [this](int messages, const QList<FeedEnclosure> &enclosures) {
        QStringList uris;
        for (const FeedEnclosure &enclosure : enclosures)
            uris.append(enclosure.uri());
        m_lines.append((QStringList(QString::number(messages)) + sorted(uris)).join(' '));
        m_enclosures += enclosures;
    };
}

void ReaderTestCase::init()
{
    StoreTestCase::init();
    const Result<Store> opened = Store::open();
    VERIFY_OK(opened);
    m_reader = *opened;
    StatementGate::reset();
}

void ReaderTestCase::cleanup()
{
    m_reader.reset();
    StoreTestCase::cleanup();
}

void ReaderTestCase::addChannel(const QString &name) const
{
    store().update(QString("INSERT { <%2> a nie:DataObject ; nie:created '2026-11-01T10:00:00' . "
                           "<%1> a mfo:FeedChannel ; nie:title '%3' ; nie:characterSet 'rss' ; "
                           "mfo:image '' ; nie:links <%2> }")
                       .arg(channelUri(name), linkOf(name), name));
}

void ReaderTestCase::addMessages(const QStringList &names, const QString &channel, int firstDay) const
{
    QString update;
    int day = firstDay;
    for (const QString &name : names) {
        update += QString("INSERT { <%1> a mfo:FeedMessage ; nie:isLogicalPartOf <%2> ; nie:links <%3> ; "
                          "nie:title 'Title of %4' ; nie:description 'Text of %4' ; "
                          "nie:subject 'Summary of %4' ; mfo:downloadedTime '2026-11-20T10:00:00Z' } ")
                      .arg(messageUri(name), channelUri(channel), linkOf(name), name);
        if (firstDay == 0)
            continue;
        update += QString("INSERT { <%1> nie:contentCreated '2026-11-%2T12:00:00Z' } ")
                      .arg(messageUri(name), QString::number(day++).rightJustified(2, '0'));
    }
    store().update(update);
}

void ReaderTestCase::share(const QString &message, const QString &channel) const
{
    store().update(
        QString("INSERT { <%1> nie:isLogicalPartOf <%2> }").arg(messageUri(message), channelUri(channel)));
}

void ReaderTestCase::addEnclosure(const QString &name, const QString &ownerUri) const
{
    store().update(QString("INSERT { <%1> a mfo:Enclosure ; mfo:remoteLink <%2> ; "
                           "mfo:localLink <file:///files/%3> ; mfo:optional true ; nie:contentSize 77 ; "
                           "nie:mimeType 'audio/ogg' ; nie:identifier 3 ; mfo:groupDefault true ; "
                           "mfo:image '/icons/audio.png' ; nie:isLogicalPartOf <%4> }")
                       .arg(enclosureUri(name), linkOf(name), name, ownerUri));
}

void ReaderTestCase::addOwnAndSharedEnclosures() const
{
    addMessages({"a", "b"}, "news", 1);
    for (const char *name : {"own.ogg", "shared.ogg", "icon.png"})
        addEnclosure(name, messageUri("a"));
    store().update("INSERT { <urn:enclosure:shared.ogg> nie:isLogicalPartOf <urn:message:b> . "
                   "<urn:enclosure:icon.png> nie:isLogicalPartOf <urn:channel:radio> }");
}

void ReaderTestCase::addFavorite(const QString &message) const
{
    store().update(
        QString("INSERT { <%1> nao:hasTag nao:predefined-tag-favorite }").arg(messageUri(message)));
}

void ReaderTestCase::addDropped(const QStringList &names, const QString &channel) const
{
    store().update(QString("INSERT DATA { <%1> tidel:droppedLink '%2' }")
                       .arg(channelUri(channel), linksOf(names).join("' , '")));
}

QStringList ReaderTestCase::messagesIn(const QString &channel) const
{
    QStringList names;
    for (const QString &uri :
         store().texts(QString("SELECT ?m { ?m a mfo:FeedMessage ; nie:isLogicalPartOf <%1> }")
                           .arg(channelUri(channel))))
        names.append(uri.section(':', 2));
    return sorted(names);
}

QStringList ReaderTestCase::droppedFrom(const QString &channel) const
{
    return sorted(store().texts(QString("SELECT ?l { <%1> tidel:droppedLink ?l }").arg(channelUri(channel))));
}
