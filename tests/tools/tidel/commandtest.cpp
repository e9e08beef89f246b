// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"
#include "capture.h"

#include <TidelReader/store.h>

#include <QtTest>

using namespace Tidel;

CommandResult runCommand(const Command &command, const QStringList &names, const Options &options)
{
    const Result<Store> store = Store::open();
    if (!store)
        return {QString(), store.error().text(), false};
    Capture capture;
    Output output = capture.output();
    output.setStyle(options.contains("json") ? Output::Json : Output::Text, options.contains("quiet"));
    std::get<Command::OnStore>(command.run)(*store, {names, options}, output);
    const bool isFine = output.finish();
    return {capture.out(), capture.err(), isFine};
}

FeedMessage message(const QString &name, const QDateTime &published, const QStringList &enclosures)
{
    FeedMessage result;
    result.setTitle(name);
    result.setLink(linkOf(name));
    result.setPublishedDate(published);
    for (const QString &file : enclosures) {
        FeedEnclosure enclosure;
        enclosure.setRemoteUrl(linkOf(file));
        result.addChild(&enclosure);
    }
    return result;
}

QString linkOf(const QString &name) { return "https://example.org/" + name; }

QDateTime day(int day) { return QDateTime(QDate(2026, 11, day), QTime(12, 0), Qt::UTC); }

void CommandTestCase::init()
{
    StoreTestCase::init();
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", m_home->path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
}

QString CommandTestCase::addChannel(const QString &title, const QList<FeedMessage> &messages) const
{
    FeedChannel channel;
    channel.setTitle(title);
    channel.setLink(linkOf(title));
    const QString uri = tracker()->addChannel(channel);
    const bool isStored = !uri.isEmpty() && (messages.isEmpty() || tracker()->addMessages(messages, uri));
    if (!isStored)
        qFatal("could not store the channel %s", qPrintable(title));
    return uri;
}

QStringList CommandTestCase::titles(const QString &channelUri) const
{
    QStringList titles =
        store().texts(QString("SELECT ?t { ?m a mfo:FeedMessage ; nie:isLogicalPartOf <%1> ; nie:title ?t }")
                          .arg(channelUri));
    titles.sort();
    return titles;
}

QStringList CommandTestCase::dropped(const QString &channelUri) const
{
    QStringList links = store().texts(QString("SELECT ?l { <%1> tidel:droppedLink ?l }").arg(channelUri));
    links.sort();
    return links;
}

void CommandTestCase::addFavorite(const QString &name) const
{
    store().update(QString("INSERT { ?m nao:hasTag nao:predefined-tag-favorite } "
                           "WHERE { ?m a mfo:FeedMessage ; nie:links <%1> }")
                       .arg(linkOf(name)));
}

void CommandTestCase::markRead(const QString &name) const
{
    store().update(QString("INSERT { ?m tidel:readTime '2026-11-20T10:00:00Z' } "
                           "WHERE { ?m a mfo:FeedMessage ; nie:links <%1> }")
                       .arg(linkOf(name)));
}

void CommandTestCase::setLocalUrl(const QString &enclosure, const QString &localUrl) const
{
    const QString node = QString("?e a mfo:Enclosure ; mfo:remoteLink <%1>").arg(linkOf(enclosure));
    store().update(QString("DELETE { ?e mfo:localLink ?l } WHERE { %1 ; mfo:localLink ?l }").arg(node));
    store().update(QString("INSERT { ?e mfo:localLink <%1> } WHERE { %2 }").arg(localUrl, node));
}

QStringList CommandTestCase::costlyQueries()
{
    QStringList costly;
    const QStringList statements = StatementGate::statements();
    for (const QString &statement : statements) {
        if (statement.startsWith("SELECT") && statement.count("nie:isLogicalPartOf") > 1)
            costly.append(statement);
    }
    return costly;
}

void CommandTestCase::failEverywhere(const Command &command, const QStringList &names, const Options &options,
                                     const std::function<void()> &fill, const std::function<void()> &check)
{
    int count = 1;
    for (int at = 0; at < count; ++at) {
        for (StatementGate::Verdict verdict : {StatementGate::Refuse, StatementGate::NoResult}) {
            cleanup();
            init();
            fill();
            StatementGate::reset();
            StatementGate::failAt(at, verdict);
            const CommandResult result = runCommand(command, names, options);
            const QStringList statements = StatementGate::statements();
            StatementGate::reset();
            count = std::max(count, int(statements.size()));
            if (at < statements.size())
                QVERIFY2(!result.isFine, qPrintable(statements.at(at) + '\n' + result.out));
            check();
            if (QTest::currentTestFailed()) {
                qWarning("statement %d: %s", at, qPrintable(statements.value(at)));
                return;
            }
        }
    }
}
