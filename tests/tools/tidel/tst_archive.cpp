// SPDX-License-Identifier: LGPL-2.1-or-later
#include "archivemodel.h"
#include "commandtest.h"

#include <TidelReader/feeds.h>
#include <TidelReader/messagewriter.h>
#include <commands.h>
#include <storable.h>

#include <QtTest>

#include <random>

using namespace Tidel;

namespace {

constexpr int stepsOfASeed = 200;
constexpr int itemsOfAll = 24;

/// The present content of a feed. The name is the title of the channel.
struct Feed
{
    QString name;
    QString image;
    QList<FeedItem> items;
};

/// The item \a number in the feed \a feed. Several feeds may contain an item. Some items have no date or the
/// same date, share an enclosure, or have an enclosure in one feed only.
FeedItem item(int number, const QString &feed)
{
    FeedItem item{QString("i%1").arg(number), {}, {}};
    if (number % 6 != 0)
        item.published = day(1 + number * 7 % 13);
    if (number % 3 == 0)
        item.enclosures.append(QString("shared%1.ogg").arg(number % 5));
    if (number % 4 == 1)
        item.enclosures.append(item.title + '-' + feed + ".ogg");
    if (number % 11 == 7)
        item.enclosures.append("image.png");
    return item;
}

QString nameOf(const QString &link) { return link.mid(linkOf(QString()).size()); }

} // namespace

/// Compares the store with a model after random operations on both.
class TestArchive : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void randomWork_data();
    void randomWork();

private:
    using Work = void (TestArchive::*)();

    int random(int below) { return std::uniform_int_distribution<int>(0, below - 1)(m_random); }
    Feed &anyFeed() { return m_feeds[random(m_feeds.size())]; }
    QString anyOf(const QStringList &names)
    {
        return names.isEmpty() ? QString() : names.at(random(names.size()));
    }
    QString channelUri(const QString &channel) const;

    void publish();
    void subscribe();
    void refresh();
    void markFavorite() { setFavorite(true); }
    void unmarkFavorite() { setFavorite(false); }
    void setFavorite(bool isFavorite);
    void prune();
    void unsubscribe();
    void clean();
    void abandonMessage();
    void abandonEnclosure();

    void readFeed(const Feed &feed);
    bool storeMessages(const Store &store, const QList<FeedMessage> &messages, const QString &uri) const;
    CommandResult runLogged(const QString &name, const Command &command, const QStringList &arguments,
                            const Options &options = {});
    QStringList facts() const;
    QString report() const;

    std::mt19937 m_random;
    bool m_usesWriter = false;
    QList<Feed> m_feeds;
    ArchiveModel m_model;
    QStringList m_steps;
};

QString TestArchive::channelUri(const QString &channel) const
{
    return store()
        .texts(QString("SELECT ?c { ?c a mfo:FeedChannel ; nie:title '%1' }").arg(channel))
        .value(0);
}

void TestArchive::publish()
{
    Feed &feed = anyFeed();
    m_steps.append("publish " + feed.name);
    QMap<int, FeedItem> items;
    for (int i = random(9); i > 0; --i) {
        const int number = random(itemsOfAll);
        items.insert(number, item(number, feed.name));
    }
    feed.items = items.values();
}

void TestArchive::subscribe()
{
    const Feed &feed = anyFeed();
    if (m_model.hasChannel(feed.name))
        return;
    m_steps.append("subscribe " + feed.name);
    const QString uri = addChannel(feed.name);
    if (!feed.image.isEmpty()) {
        FeedEnclosure image;
        image.setRemoteUrl(linkOf(feed.image));
        QVERIFY(tracker()->addEnclosures({image}, uri));
    }
    m_model.subscribe(feed.name, feed.image);
    readFeed(feed);
}

void TestArchive::refresh()
{
    const Feed &feed = anyFeed();
    if (!m_model.hasChannel(feed.name))
        return;
    m_steps.append("refresh " + feed.name);
    readFeed(feed);
}

// Does the same as the download of a feed.
void TestArchive::readFeed(const Feed &feed)
{
    const Result<Store> store = Store::open();
    QVERIFY(store);
    const QString uri = channelUri(feed.name);
    const QStringList stored = tracker()->messageLinksOfChannel(uri);
    QSet<QString> forgotten = Feeds(*store).memory(uri)->droppedLinks;
    QList<FeedMessage> messages;
    for (const FeedItem &item : qAsConst(feed.items)) {
        const QString link = linkOf(item.title);
        if (!forgotten.remove(link) && !stored.contains(link))
            messages.append(message(item.title, item.published, item.enclosures));
    }
    QVERIFY(messages.isEmpty() || storeMessages(*store, messages, uri));
    QVERIFY(Feeds(*store).forgetDropped(uri, forgotten.values()));
    m_model.refresh(feed.name, feed.items);
}

bool TestArchive::storeMessages(const Store &store, const QList<FeedMessage> &messages,
                                const QString &uri) const
{
    if (!m_usesWriter)
        return tracker()->addMessages(messages, uri);
    const QList<StorableMessage> storables = storable(messages);
    const Result<LinkUse> use = LinkUse::of(store, linksOf(storables), uri);
    return use && MessageWriter(store).write(storables, uri, *use);
}

void TestArchive::setFavorite(bool isFavorite)
{
    const QString name = anyOf(m_model.messages());
    if (name.isEmpty())
        return;
    QVERIFY(runLogged(isFavorite ? "favorite" : "unfavorite",
                      isFavorite ? favoriteCommand : unfavoriteCommand, {linkOf(name)})
                .isFine);
    m_model.setFavorite(name, isFavorite);
}

void TestArchive::prune()
{
    const QString channel = anyOf(m_model.channels());
    if (channel.isEmpty())
        return;
    const int keep = random(6);
    const Options real{{"keep", QString::number(keep)}, {"include-unread", QString()}};
    Options dry = real;
    dry.insert("dry-run", QString());
    QSet<QString> messages;
    const QStringList lines =
        runLogged("prune --dry-run", Tidel::pruneCommand, {channel}, dry).out.split('\n', Qt::SkipEmptyParts);
    for (const QString &line : lines.mid(1))
        messages.insert(line.section(' ', -1));
    QVERIFY2(m_model.areOldest(messages, channel, keep), qPrintable(lines.join('\n')));

    const CommandResult result =
        runLogged(QString("prune --keep %1").arg(keep), Tidel::pruneCommand, {channel}, real);
    QVERIFY2(result.isFine, qPrintable(result.err));
    m_model.prune(channel, messages);
}

void TestArchive::unsubscribe()
{
    const QString channel = anyOf(m_model.channels());
    if (channel.isEmpty())
        return;
    const CommandResult result = runLogged("unsubscribe", Tidel::unsubscribeCommand, {channel});
    QVERIFY2(result.isFine, qPrintable(result.err));
    m_model.unsubscribe(channel);
}

void TestArchive::clean()
{
    const CommandResult result = runLogged("clean", Tidel::cleanCommand, {});
    QVERIFY2(result.isFine, qPrintable(result.err));
    m_model.clean();
}

void TestArchive::abandonMessage()
{
    const QString name = anyOf(m_model.messages());
    if (name.isEmpty())
        return;
    m_steps.append("abandon " + name);
    store().update(QString("DELETE { ?m nie:isLogicalPartOf ?c } "
                           "WHERE { ?m a mfo:FeedMessage ; nie:title '%1' ; nie:isLogicalPartOf ?c }")
                       .arg(name));
    m_model.abandonMessage(name);
}

void TestArchive::abandonEnclosure()
{
    const QString name = anyOf(m_model.enclosures());
    if (name.isEmpty())
        return;
    m_steps.append("abandon " + name);
    store().update(QString("DELETE { ?e nie:isLogicalPartOf ?o } "
                           "WHERE { ?e a mfo:Enclosure ; mfo:remoteLink <%1> ; nie:isLogicalPartOf ?o }")
                       .arg(linkOf(name)));
    m_model.abandonEnclosure(name);
}

CommandResult TestArchive::runLogged(const QString &name, const Command &command,
                                     const QStringList &arguments, const Options &options)
{
    m_steps.append(QString("%1 %2").arg(name, arguments.join(' ')).trimmed());
    return runCommand(command, arguments, options);
}

/// The content of the store in the format of ArchiveModel::facts().
QStringList TestArchive::facts() const
{
    QStringList facts;
    const auto add = [&](const char *prefix, const QString &pattern, const char *separator = "") {
        const auto rows = store().select("SELECT ?a ?b { " + pattern + " }");
        for (const QSparqlResultRow &row : rows) {
            const QString a = row.value(0).toString();
            const QString b = row.value(1).toString();
            facts.append(prefix + (a.startsWith("http") ? nameOf(a) : a) + separator
                         + (b.startsWith("http") ? nameOf(b) : b));
        }
    };
    add("channel ", "?c a mfo:FeedChannel ; nie:title ?a");
    add("dropped ", "?c a mfo:FeedChannel ; nie:title ?b ; tidel:droppedLink ?a", " by ");
    add("message ", "?m a mfo:FeedMessage ; nie:title ?a");
    add("favorite ", "?m a mfo:FeedMessage ; nie:title ?a ; nao:hasTag nao:predefined-tag-favorite");
    add("message ",
        "?m a mfo:FeedMessage ; nie:title ?a ; nie:isLogicalPartOf ?c . OPTIONAL { ?c nie:title ?t } BIND(COALESCE(?t, 'a deleted owner') AS ?b)",
        " of ");
    add("enclosure ", "?e a mfo:Enclosure ; mfo:remoteLink ?a");
    add("enclosure ",
        "?e a mfo:Enclosure ; mfo:remoteLink ?a ; nie:isLogicalPartOf ?o . OPTIONAL { ?o nie:title ?t } BIND(COALESCE(?t, 'a deleted owner') AS ?b)",
        " of ");
    facts.sort();
    return facts;
}

QString TestArchive::report() const
{
    const QStringList expected = m_model.facts();
    const QStringList actual = facts();
    QStringList lines;
    for (const QString &fact : expected) {
        if (!actual.contains(fact))
            lines.append("missing: " + fact);
    }
    for (const QString &fact : actual) {
        if (!expected.contains(fact))
            lines.append("surplus: " + fact);
    }
    return lines.mid(0, 20).join('\n') + "\nafter " + m_steps.join(", ");
}

void TestArchive::randomWork_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 10; ++seed)
        QTest::addRow("%d", seed) << seed;
}

void TestArchive::randomWork()
{
    QFETCH(int, seed);
    m_random.seed(unsigned(seed));
    m_usesWriter = seed % 2 == 0;
    m_feeds = {{"A", "image.png", {}}, {"B", "image.png", {}}, {"C", "c.png", {}}, {"D", QString(), {}}};
    m_model = {};
    m_steps.clear();
    // Frequent operations are listed several times.
    const std::vector<Work> works{
        &TestArchive::publish,        &TestArchive::publish,         &TestArchive::publish,
        &TestArchive::subscribe,      &TestArchive::subscribe,       &TestArchive::refresh,
        &TestArchive::refresh,        &TestArchive::refresh,         &TestArchive::refresh,
        &TestArchive::markFavorite,   &TestArchive::unmarkFavorite,  &TestArchive::prune,
        &TestArchive::prune,          &TestArchive::unsubscribe,     &TestArchive::clean,
        &TestArchive::abandonMessage, &TestArchive::abandonEnclosure};
    for (int i = 0; i < stepsOfASeed; ++i) {
        // Operations that need a channel or a message do nothing if there is none.
        for (const auto before = m_steps.size(); m_steps.size() == before;)
            (this->*works.at(size_t(random(int(works.size())))))();
        QVERIFY2(!QTest::currentTestFailed() && facts() == m_model.facts(), qPrintable(report()));
    }
    QCOMPARE(subjectsIn(store()).size(), m_model.resources());
}

QTEST_GUILESS_MAIN(TestArchive)
#include "tst_archive.moc"
