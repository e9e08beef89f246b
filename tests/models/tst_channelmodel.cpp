// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/archive.h>
#include <TidelReader/channelmodel.h>
#include <TidelReader/folders.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QThread>

using namespace Tidel;

namespace {

constexpr int patience = 60000; // milliseconds

/// A line for each row below \a parent, indented by its depth: title, unread and all messages, error.
QStringList linesOf(const QAbstractItemModel &model, const QModelIndex &parent = {}, int depth = 0)
{
    QStringList lines;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        lines.append(QString("%1%2 %3/%4 %5")
                         .arg(QString(depth, '-'), index.data().toString(),
                              index.data(ChannelModel::UnreadRole).toString(),
                              index.data(ChannelModel::MessagesRole).toString(),
                              index.data(ChannelModel::ErrorRole).toString())
                         .trimmed());
        lines += linesOf(model, index, depth + 1);
    }
    return lines;
}

} // namespace

/// A model under test, which must never say that all has changed.
struct ShownTree
{
    explicit ShownTree(Archive *archive, bool showsLists = false)
        : model(archive), tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest),
          resets(&model, &QAbstractItemModel::modelReset),
          relayouts(&model, &QAbstractItemModel::layoutChanged)
    {
        model.setShowsLists(showsLists);
    }
    ~ShownTree() { QCOMPARE(resets.count() + relayouts.count(), 0); }
    Q_DISABLE_COPY(ShownTree)

    QStringList lines() const { return linesOf(model); }

    ChannelModel model;
    QAbstractItemModelTester tester;
    QSignalSpy resets;
    QSignalSpy relayouts;
};

#define WAIT_FOR_LINES(tree, expected)                                                                       \
    QTRY_COMPARE_WITH_TIMEOUT((tree).lines(), QStringList(expected), patience)

class TestChannelModel : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void tree();
    void order();
    void lists();
    void roles();
    void queries();
    void searches();
    void changedCounts();
    void rowsKeepTheirIndexes();
    void randomChanges();
    void storeThatCannotBeOpened();
    void otherArchive();
    void archiveGoesFirst();
    void modelGoesFirst();

private:
    void setTitle(const QString &channel, const QString &title) const;
    void changeSomething(QRandomGenerator *random) const;
};

void TestChannelModel::setTitle(const QString &channel, const QString &title) const
{
    store().update(QString("DELETE { <%1> nie:title ?t } WHERE { <%1> nie:title ?t } "
                           "INSERT { ?c nie:title '%2' } WHERE { VALUES ?c { <%1> } ?c a mfo:FeedChannel }")
                       .arg(channelUri(channel), title));
}

void TestChannelModel::tree()
{
    for (const char *name : {"news", "radio", "world", "top"})
        addChannel(name);
    addMessages({"n1", "n2"}, "news");
    addMessages({"w1"}, "world");
    VERIFY_OK(ReadState(reader()).set({messageUri("n1")}, true));
    VERIFY_OK(Folders(reader()).move(channelUri("news"), "News"));
    VERIFY_OK(Folders(reader()).move(channelUri("world"), "News/World"));
    VERIFY_OK(Folders(reader()).move(channelUri("radio"), "Audio/Radio"));
    Archive archive;
    ShownTree tree(&archive);
    QVERIFY(tree.model.isLoading());
    WAIT_FOR_LINES(tree,
                   QStringList({"Audio 0/0", "-Radio 0/0", "--radio 0/0", "News 2/3", "-World 1/1",
                                "--world 1/1", "-news 1/2", "top 0/0"}));
    QVERIFY(!tree.model.isLoading());
    VERIFY_OK(Folders(reader()).move(channelUri("world"), ""));
    WAIT_FOR_LINES(tree,
                   QStringList({"Audio 0/0", "-Radio 0/0", "--radio 0/0", "News 1/2", "-news 1/2", "top 0/0",
                                "world 1/1"}));
}

void TestChannelModel::order()
{
    const QLocale before;
    QLocale::setDefault(QLocale("de_DE"));
    for (const char *title : {"Zebra", "apfel", "Äpfel", "Bote 10", "Bote 9"}) {
        const QString name = QString::number(qHash(QByteArray(title)));
        addChannel(name);
        setTitle(name, title);
    }
    Archive archive;
    ShownTree tree(&archive);
    WAIT_FOR_LINES(tree, QStringList({"apfel 0/0", "Äpfel 0/0", "Bote 9 0/0", "Bote 10 0/0", "Zebra 0/0"}));
    QLocale::setDefault(before);
}

void TestChannelModel::lists()
{
    addChannel("news");
    addMessages({"a", "b", "c"}, "news");
    addFavorite("a");
    addFavorite("b");
    VERIFY_OK(ReadState(reader()).set({messageUri("a")}, true));
    Archive archive;
    ShownTree tree(&archive, true);
    QVERIFY(tree.model.showsLists());
    WAIT_FOR_LINES(tree, QStringList({"All messages 2/3", "Unread 2/2", "Favorites 1/2", "news 2/3"}));
    QSignalSpy changed(&tree.model, &ChannelModel::showsListsChanged);
    tree.model.setShowsLists(false);
    tree.model.setShowsLists(false);
    QCOMPARE(changed.count(), 1);
    WAIT_FOR_LINES(tree, QStringList("news 2/3"));
}

void TestChannelModel::roles()
{
    addChannel("news");
    addEnclosure("picture", channelUri("news"));
    store().update(
        QString("INSERT { <%1> tidel:error 'not found' ; tidel:failures 1 }").arg(channelUri("news")));
    VERIFY_OK(Folders(reader()).move(channelUri("news"), "My/News"));
    Archive archive;
    ShownTree tree(&archive);
    QTRY_VERIFY_WITH_TIMEOUT(!tree.model.isLoading(), patience);
    const QModelIndex news = tree.model.indexOf(channelUri("news"));
    QCOMPARE(news.data(ChannelModel::KindRole).toInt(), int(ChannelModel::ChannelKind));
    QCOMPARE(news.data(ChannelModel::UriRole).toString(), channelUri("news"));
    QCOMPARE(news.data(ChannelModel::TitleRole).toString(), QString("news"));
    QCOMPARE(news.data(ChannelModel::FolderRole).toString(), QString("My/News"));
    QCOMPARE(news.data(ChannelModel::LinkRole).toString(), linkOf("news"));
    QCOMPARE(news.data(ChannelModel::IconRole).toString(), QString("file:///files/picture"));
    QCOMPARE(news.data(ChannelModel::ErrorRole).toString(), QString("not found"));
    QVERIFY(!news.data(Qt::DecorationRole).isValid());
    const QModelIndex folder = news.parent();
    QCOMPARE(folder.data(ChannelModel::KindRole).toInt(), int(ChannelModel::FolderKind));
    QCOMPARE(folder.data(ChannelModel::FolderRole).toString(), QString("My/News"));
    QCOMPARE(folder.data(ChannelModel::UriRole).toString(), QString());
    QCOMPARE(tree.model.roleNames().value(ChannelModel::UnreadRole), QByteArray("unread"));
    QVERIFY(!tree.model.indexOf(channelUri("none")).isValid());
    store().update(QString("DELETE { <%1> mfo:localLink ?f } WHERE { <%1> mfo:localLink ?f }")
                       .arg(enclosureUri("picture")));
    ShownTree other(&archive);
    QTRY_VERIFY_WITH_TIMEOUT(!other.model.isLoading(), patience);
    QCOMPARE(other.model.indexOf(channelUri("news")).data(ChannelModel::IconRole).toString(),
             linkOf("picture"));
}

void TestChannelModel::queries()
{
    for (const char *name : {"news", "world"})
        addChannel(name);
    VERIFY_OK(Folders(reader()).move(channelUri("news"), "News"));
    VERIFY_OK(Folders(reader()).move(channelUri("world"), "News/World"));
    Archive archive;
    ShownTree tree(&archive, true);
    connect(&tree.model, &QAbstractItemModel::rowsInserted, &tree.model,
            [&model = tree.model](const QModelIndex &parent, int row) {
                // The channels of a folder come after it.
                const QModelIndex index = model.index(row, 0, parent);
                if (index.data(ChannelModel::KindRole) == ChannelModel::FolderKind)
                    QVERIFY(!model.query(index).channelUris.isEmpty());
            });
    QTRY_COMPARE_WITH_TIMEOUT(tree.model.rowCount(), 4, patience);
    const auto queryOf = [&tree](int row) { return tree.model.query(tree.model.index(row, 0)); };
    QCOMPARE(queryOf(0).channelUris, QStringList());
    QVERIFY(!queryOf(0).onlyUnread && !queryOf(0).onlyFavorites);
    QVERIFY(queryOf(1).onlyUnread && !queryOf(1).onlyFavorites);
    QVERIFY(!queryOf(2).onlyUnread && queryOf(2).onlyFavorites);
    QCOMPARE(sorted(queryOf(3).channelUris), QStringList({channelUri("news"), channelUri("world")}));
    QCOMPARE(tree.model.query(tree.model.indexOf(channelUri("world"))).channelUris,
             QStringList(channelUri("world")));
    QCOMPARE(tree.model.query({}).channelUris, QStringList());
}

void TestChannelModel::searches()
{
    addChannel("news");
    addChannel("radio");
    VERIFY_OK(Folders(reader()).move(channelUri("radio"), "Audio"));
    Archive archive;
    ShownTree tree(&archive, true);
    const auto search = [](const QString &title, ChannelModel::Kind kind, const QString &place) {
        return ChannelSearch{"urn:search:" + title, title, title + " words", kind, place};
    };
    tree.model.setSearches({search("b", ChannelModel::FolderKind, "Audio"),
                            search("a", ChannelModel::ChannelKind, channelUri("news")),
                            search("c", ChannelModel::FavoritesKind, {}),
                            search("d", ChannelModel::FolderKind, "Other")});
    WAIT_FOR_LINES(tree,
                   QStringList({"All messages 0/0", "Unread 0/0", "Favorites 0/0", "b 0/0", "a 0/0", "c 0/0",
                                "d 0/0", "Audio 0/0", "-radio 0/0", "news 0/0"}));
    const auto queryOf = [&tree](int row) { return tree.model.query(tree.model.index(row, 0)); };
    QCOMPARE(tree.model.index(3, 0).data(ChannelModel::KindRole).toInt(), int(ChannelModel::SearchKind));
    QCOMPARE(tree.model.index(3, 0).data(ChannelModel::UriRole).toString(), QString("urn:search:b"));
    QCOMPARE(queryOf(3).words, QString("b words"));
    QCOMPARE(queryOf(3).channelUris, QStringList(channelUri("radio")));
    QCOMPARE(queryOf(4).channelUris, QStringList(channelUri("news")));
    QVERIFY(queryOf(5).onlyFavorites && !queryOf(5).onlyUnread && queryOf(5).channelUris.isEmpty());
    // Not all channels, and none that is there.
    QCOMPARE(queryOf(6).channelUris, QStringList("urn:search:d"));
    const QPersistentModelIndex a = tree.model.index(4, 0);
    tree.model.setSearches({search("a", ChannelModel::UnreadKind, {})});
    WAIT_FOR_LINES(tree,
                   QStringList({"All messages 0/0", "Unread 0/0", "Favorites 0/0", "a 0/0", "Audio 0/0",
                                "-radio 0/0", "news 0/0"}));
    QCOMPARE(a.row(), 3);
    QVERIFY(tree.model.query(a).onlyUnread);
}

void TestChannelModel::changedCounts()
{
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b"}, "news");
    Archive archive;
    ShownTree tree(&archive);
    WAIT_FOR_LINES(tree, QStringList({"news 2/2", "radio 0/0"}));
    QSignalSpy changed(&tree.model, &ChannelModel::dataChanged);
    VERIFY_OK(ReadState(reader()).set({messageUri("a")}, true));
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, patience);
    QCOMPARE(changed.constFirst().at(0).toModelIndex(), tree.model.indexOf(channelUri("news")));
    QCOMPARE(tree.lines(), QStringList({"news 1/2", "radio 0/0"}));
}

void TestChannelModel::rowsKeepTheirIndexes()
{
    for (const char *name : {"a", "b", "c", "d"})
        addChannel(name);
    Archive archive;
    ShownTree tree(&archive);
    QTRY_COMPARE_WITH_TIMEOUT(tree.model.rowCount(), 4, patience);
    const QPersistentModelIndex a = tree.model.indexOf(channelUri("a"));
    const QPersistentModelIndex c = tree.model.indexOf(channelUri("c"));
    QSignalSpy moved(&tree.model, &ChannelModel::rowsMoved);
    setTitle("a", "z");
    WAIT_FOR_LINES(tree, QStringList({"b 0/0", "c 0/0", "d 0/0", "z 0/0"}));
    QCOMPARE(moved.count(), 1);
    QCOMPARE(a.row(), 3);
    VERIFY_OK(Folders(reader()).move(channelUri("c"), "Folder"));
    WAIT_FOR_LINES(tree, QStringList({"Folder 0/0", "-c 0/0", "b 0/0", "d 0/0", "z 0/0"}));
    QCOMPARE(c.parent().data().toString(), QString("Folder"));
    QCOMPARE(c.data(ChannelModel::UriRole).toString(), channelUri("c"));
    QCOMPARE(moved.count(), 2);
}

void TestChannelModel::changeSomething(QRandomGenerator *random) const
{
    const QString name = "c" + QString::number(random->bounded(12));
    const QString message = "m" + QString::number(random->bounded(100));
    const QStringList paths = {"", "A", "B", "A/X", "B/X", "B/X/Y"};
    const std::function<void()> changes[] = {
        [&] { addChannel(name); },
        [&] { addMessages({message}, name); },
        [&] { store().update(QString("DELETE { <%1> a rdfs:Resource }").arg(channelUri(name))); },
        [&] { setTitle(name, QString(QChar('a' + random->bounded(26)))); },
        [&] { static_cast<void>(Folders(reader()).move(channelUri(name), paths.at(random->bounded(6)))); },
        [&] { static_cast<void>(Folders(reader()).move(channelUri(name), paths.at(random->bounded(6)))); },
        [&] { VERIFY_OK(ReadState(reader()).set({messageUri(message)}, true)); },
    };
    changes[random->bounded(int(std::size(changes)))]();
}

void TestChannelModel::randomChanges()
{
    const int seed = int(QRandomGenerator::global()->bounded(10000));
    QRandomGenerator random{quint32(seed)};
    for (int i = 0; i < 12; ++i)
        addChannel("c" + QString::number(i));
    Archive archive;
    ShownTree tree(&archive, true);
    QHash<QString, QPersistentModelIndex> indexes;
    for (int step = 0; step < 30; ++step) {
        for (int i = random.bounded(8); i >= 0; --i)
            changeSomething(&random);
        ChannelModel fresh(&archive);
        fresh.setShowsLists(true);
        QTRY_COMPARE_WITH_TIMEOUT(fresh.index(0, 0).data().toString(), QString("All messages"), patience);
        const QStringList lines = linesOf(fresh);
        const bool isSame = QTest::qWaitFor([&] { return tree.lines() == lines; }, patience);
        const QString where = QString("seed %1, step %2:\n").arg(seed).arg(step);
        QVERIFY2(isSame, qPrintable(where + tree.lines().join('\n') + "\ninstead of\n" + lines.join('\n')));
        for (int i = 0; i < 12; ++i) {
            const QString uri = channelUri("c" + QString::number(i));
            const QPersistentModelIndex known = indexes.value(uri);
            QVERIFY(!known.isValid() || known.data(ChannelModel::UriRole).toString() == uri);
            indexes.insert(uri, tree.model.indexOf(uri));
        }
    }
}

void TestChannelModel::storeThatCannotBeOpened()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("file");
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    qputenv("XDG_DATA_HOME", QFile::encodeName(file));
    Archive archive;
    ShownTree tree(&archive);
    QSignalSpy failed(&tree.model, &ChannelModel::errorChanged);
    QTRY_VERIFY_WITH_TIMEOUT(!tree.model.isLoading(), patience);
    QCOMPARE(tree.model.error()->kind(), Error::StoreUnavailable);
    QVERIFY(!tree.model.errorText().isEmpty());
    QCOMPARE(failed.count(), 1);
}

void TestChannelModel::otherArchive()
{
    addChannel("news");
    Archive archive;
    ShownTree tree(nullptr);
    QSignalSpy changed(&tree.model, &ChannelModel::archiveChanged);
    QSignalSpy loading(&tree.model, &ChannelModel::loadingChanged);
    tree.model.setArchive(&archive);
    QVERIFY(tree.model.isLoading());
    QCOMPARE(tree.model.archive(), &archive);
    WAIT_FOR_LINES(tree, QStringList("news 0/0"));
    tree.model.setArchive(&archive);
    QCOMPARE(tree.lines(), QStringList("news 0/0"));

    Archive other;
    tree.model.setArchive(&other);
    QCOMPARE(tree.lines(), QStringList());
    QVERIFY(tree.model.isLoading());
    WAIT_FOR_LINES(tree, QStringList("news 0/0"));

    // What has been answered and not taken yet.
    tree.model.setShowsLists(true);
    const auto next = other.read([](const Store &) { return Result<void>(); });
    while (!next.isFinished())
        QThread::msleep(1);
    tree.model.setArchive(nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(tree.lines(), QStringList());
    QVERIFY(!tree.model.isLoading());
    QCOMPARE(changed.count(), 3);
    QCOMPARE(loading.count(), 4);
}

void TestChannelModel::archiveGoesFirst()
{
    addChannel("news");
    auto archive = std::make_unique<Archive>();
    ShownTree shown(archive.get());
    WAIT_FOR_LINES(shown, QStringList("news 0/0"));
    ShownTree loading(archive.get());
    archive->close();
    QTRY_VERIFY_WITH_TIMEOUT(!loading.model.isLoading(), patience);
    archive.reset();
    QCOMPARE(shown.lines(), QStringList("news 0/0"));
    shown.model.setShowsLists(true);
    QCOMPARE(shown.lines(), QStringList("news 0/0"));
}

void TestChannelModel::modelGoesFirst()
{
    addChannel("news");
    Archive archive;
    std::make_unique<ChannelModel>(&archive).reset();
    const auto next = archive.read([](const Store &) { return Result<void>(); });
    QTRY_VERIFY_WITH_TIMEOUT(next.isFinished(), patience);
    Q_EMIT archive.channelsAdded({channelUri("news")});
}

QTEST_GUILESS_MAIN(TestChannelModel)

#include "tst_channelmodel.moc"
