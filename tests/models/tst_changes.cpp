// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/archive.h>
#include <TidelReader/channels.h>
#include <TidelReader/folders.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>
#include <TidelReader/storedatabase.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QSemaphore>
#include <QSparqlConnection>
#include <QSparqlResult>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <map>

using namespace Tidel;

namespace {

using Operation = std::function<Result<void>(const Store &)>;

const char *const newMessage =
    "INSERT { <urn:message:new> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:news> }";
constexpr int patience = 60000; // milliseconds

Result<void> ok() { return {}; }

/// Runs an update on a connection of its own.
Operation update(const QString &text)
{
    return [text](const Store &) {
        QSparqlConnection connection(QStringLiteral("QTRACKER_DIRECT"));
        const std::unique_ptr<QSparqlResult> result(
            connection.exec(QSparqlQuery(text, QSparqlQuery::InsertStatement)));
        result->waitForFinished();
        return result->hasError()
            ? Result<void>(Failure(Error(Error::StoreFailed, text, result->lastError().message())))
            : Result<void>();
    };
}

FeedChannel channelOf(const Store &store, const QString &name)
{
    return *Channels(store).find(*Channels(store).all(), channelUri(name));
}

Operation setRead(const QString &message, bool isRead)
{
    return [=](const Store &store) {
        return ReadState(store).set({messageUri(message)}, isRead).map([](int) {});
    };
}

Operation setFavorite(const QString &message, bool isFavorite)
{
    return [=](const Store &store) { return Messages(store).setFavorite(messageUri(message), isFavorite); };
}

Operation inFolder(const QString &channel, const QString &path)
{
    return [=](const Store &store) { return Folders(store).move(channelUri(channel), path); };
}

Operation rename(const QString &channel, const QString &title)
{
    return [=](const Store &store) {
        return Channels(store).edit(channelOf(store, channel), title, linkOf(channel));
    };
}

Operation unsubscribe(const QString &channel, Channels::Favorites kept)
{
    return [=](const Store &store) {
        return Channels(store).remove(
            channelOf(store, channel), [](int, const QList<FeedEnclosure> &) {}, kept);
    };
}

Operation setInterval(const QString &channel)
{
    return [=](const Store &store) { return Channels(store).setInterval(channelUri(channel), 3600); };
}

struct Change
{
    Operation operation;
    QStringList told;
};

/// What each change of the archive of addArchive() tells.
const std::map<QString, Change> &changes()
{
    static const std::map<QString, Change> all = {
        {"read", {setRead("a", true), {"read a"}}},
        {"unread", {setRead("old", false), {"unread old"}}},
        {"favorite", {setFavorite("a", true), {"favorite a"}}},
        {"no favorite", {setFavorite("star", false), {"no favorite star"}}},
        {"folder", {inFolder("news", "Daily"), {"channels changed news"}}},
        {"out of the folder", {inFolder("other", ""), {"channels changed other"}}},
        {"title", {rename("news", "Newer"), {"channels changed news"}}},
        {"interval", {setInterval("news"), {"channels changed news"}}},
        {"error",
         {update("INSERT { <urn:channel:news> tidel:error 'not found' }"), {"channels changed news"}}},
        {"nothing that is shown",
         {update("INSERT { <urn:channel:news> tidel:entityTag 'x' ; nie:comment 'y' }"), {}}},
        {"text",
         {update("DELETE { <urn:message:a> nie:title 'Title of a' } "
                 "INSERT { <urn:message:a> nie:title 'Other' }"),
          {"messages changed a"}}},
        {"text of a message that is read then",
         {update("INSERT { <urn:message:a> nie:comment 'Other' ; tidel:digest 'x' ; "
                 "tidel:readTime '2026-11-20T10:00:00Z' }"),
          {"messages changed a", "read a"}}},
        {"new message", {update(newMessage), {"messages added new"}}},
        {"new channel with a message",
         {update("INSERT { <urn:channel:new> a mfo:FeedChannel ; nie:title 'New' } "
                 "INSERT { <urn:message:new> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:new> ; "
                 "tidel:readTime '2026-11-20T10:00:00Z' }"),
          {"channels added new", "messages added new"}}},
        {"new enclosure",
         {update("INSERT { <urn:enclosure:new> a mfo:Enclosure ; "
                 "nie:isLogicalPartOf <urn:message:a> }"),
          {"messages changed a"}}},
        {"file of an enclosure",
         {update("INSERT { <urn:enclosure:ogg> nie:contentSize 5 }"), {"messages changed a"}}},
        {"no enclosure", {update("DELETE { <urn:enclosure:ogg> a rdfs:Resource }"), {"messages changed a"}}},
        {"icon", {update("INSERT { <urn:enclosure:icon> nie:contentSize 5 }"), {"channels changed news"}}},
        {"another channel",
         {update("INSERT { <urn:message:a> nie:isLogicalPartOf <urn:channel:other> }"),
          {"messages changed a"}}},
        {"one channel less",
         {update("DELETE { <urn:message:both> nie:isLogicalPartOf <urn:channel:other> }"),
          {"messages changed both"}}},
        {"removed message", {update("DELETE { <urn:message:a> a rdfs:Resource }"), {"messages removed a"}}},
        {"removed channel",
         {unsubscribe("other", Channels::DeleteFavorites),
          {"messages changed both", "messages removed star", "channels removed other"}}},
        {"removed channel, kept favorites",
         {unsubscribe("other", Channels::KeepFavorites),
          {"messages changed both star", "channels removed other"}}},
    };
    return all;
}

/// The last parts of the names of \a uris in alphabetical order.
QString names(const QStringList &uris)
{
    QStringList names;
    for (const QString &uri : uris)
        names.append(uri.section(':', 2));
    return sorted(names).join(' ');
}

/// Collects what an archive tells.
class Told
{
public:
    explicit Told(Archive *archive)
    {
        add(archive, &Archive::channelsAdded, "channels added ");
        add(archive, &Archive::channelsChanged, "channels changed ");
        add(archive, &Archive::channelsRemoved, "channels removed ");
        add(archive, &Archive::messagesAdded, "messages added ");
        add(archive, &Archive::messagesChanged, "messages changed ");
        add(archive, &Archive::messagesRemoved, "messages removed ");
        QObject::connect(archive, &Archive::readStateChanged, archive,
                         [this](const QStringList &uris, bool isRead) {
                             lines.append((isRead ? "read " : "unread ") + names(uris));
                         });
        QObject::connect(archive, &Archive::favoritesChanged, archive,
                         [this](const QStringList &uris, bool isFavorite) {
                             lines.append((isFavorite ? "favorite " : "no favorite ") + names(uris));
                         });
    }

    QStringList lines;

private:
    void add(Archive *archive, void (Archive::*signal)(const QStringList &), const QString &name)
    {
        QObject::connect(archive, signal, archive,
                         [this, name](const QStringList &uris) { lines.append(name + names(uris)); });
    }
};

/// Returns the error of \a program with \a arguments; an empty text if it succeeds.
QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool hasEnded = process.waitForFinished(patience);
    return hasEnded && process.exitCode() == 0 ? QString()
                                               : program + ": " + process.readAllStandardError() + "!";
}

} // namespace

class TestChanges : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void signalOfEach_data();
    void signalOfEach();
    void otherParts();
    void otherPrograms();
    void manyAtOnce();
    void longChange();
    void unchangedRefresh();
    void noLooksWithoutChanges();
    void newStore();
    void replacedStore();
    void changeAtOnce();
    void changesBeforeTheFirstLook();
    void numbersGivenAgain();
    void changesDuringALook();
    void whileOthersWrite();
    void deletedByReceiver();
    void afterClosing();

private:
    void addArchive() const;
    /// Waits until \a archive tells changes.
    void waitFor(Archive *archive) const;
    /// Makes a change that is told last.
    void addLast() const { VERIFY_OK(update("INSERT { <urn:channel:last> a mfo:FeedChannel }")(reader())); }
    QString numberOf(const QString &message) const;
};

/// The channels "news" and "other", which is in a folder, and their messages. "both" belongs to both.
void TestChanges::addArchive() const
{
    addChannel("news");
    addChannel("other");
    addMessages({"a", "old", "both"}, "news");
    addMessages({"star"}, "other");
    share("both", "other");
    addFavorite("star");
    addEnclosure("ogg", messageUri("a"));
    addEnclosure("icon", channelUri("news"));
    VERIFY_OK(inFolder("other", "Weekly")(reader()));
    VERIFY_OK(setRead("old", true)(reader()));
}

void TestChanges::waitFor(Archive *archive) const
{
    const auto change = archive->change([](const Store &) { return ok(); });
    QTRY_VERIFY_WITH_TIMEOUT(change.isFinished(), patience);
}

/// The number and the mark of change that the store gives a message.
QString TestChanges::numberOf(const QString &message) const
{
    return store()
        .texts(QString("SELECT tracker:id(?m) ?mark { ?m nrl:modified ?mark FILTER(?m = <%1>) }")
                   .arg(messageUri(message)))
        .join(',');
}

void TestChanges::signalOfEach_data()
{
    QTest::addColumn<QString>("name");
    for (const auto &[name, change] : changes())
        QTest::newRow(qPrintable(name)) << name;
}

void TestChanges::signalOfEach()
{
    QFETCH(QString, name);
    addArchive();
    Archive archive;
    Told told(&archive);
    const Change change = changes().at(name);
    const auto changed = archive.change(change.operation);
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, change.told, patience);
    QTRY_VERIFY_WITH_TIMEOUT(changed.isFinished(), patience);
    VERIFY_OK(changed.result());
    addLast();
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, change.told + QStringList("channels added last"), patience);
}

/// Another archive and a plain store of this process.
void TestChanges::otherParts()
{
    addArchive();
    Archive archive;
    Archive other;
    Told told(&archive);
    waitFor(&archive);
    other.change(setRead("a", true));
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("read a"), patience);
    VERIFY_OK(setFavorite("a", true)(reader()));
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, (QStringList{"read a", "favorite a"}), patience);
}

void TestChanges::otherPrograms()
{
    addArchive();
    Archive archive;
    Told told(&archive);
    waitFor(&archive);
    QCOMPARE(run(TIDEL_PROGRAM, {"read", "--all"}), QString());
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("read a both star"), patience);
    QCOMPARE(run(QCoreApplication::applicationFilePath(), {"--update", newMessage}), QString());
    QTRY_COMPARE_WITH_TIMEOUT(told.lines.mid(1), QStringList("messages added new"), patience);
    QCOMPARE(run(TIDEL_PROGRAM, {"unsubscribe", "--yes", "other"}), QString());
    QTRY_COMPARE_WITH_TIMEOUT(told.lines.mid(2).join(", "),
                              QString("messages changed both, messages removed star, channels removed other"),
                              patience);
}

void TestChanges::manyAtOnce()
{
    addChannel("news");
    const QStringList all = numberedNames("m", 10000);
    for (int i = 0; i < all.size(); i += 500)
        addMessages(all.mid(i, 500), "news");
    Archive archive;
    Told told(&archive);
    archive.change(
        [all](const Store &store) { return ReadState(store).set(messageUris(all), true).map([](int) {}); });
    QTRY_VERIFY_WITH_TIMEOUT(!told.lines.isEmpty(), patience);
    addLast();
    QTRY_COMPARE_WITH_TIMEOUT(told.lines.constLast(), QString("channels added last"), patience);
    QCOMPARE(told.lines.size(), 2);
    QCOMPARE(told.lines.constFirst(), "read " + sorted(all).join(' '));
}

/// What one change writes is told together, however long it takes.
void TestChanges::longChange()
{
    addArchive();
    Archive archive;
    Told told(&archive);
    archive.change([](const Store &store) {
        const Result<void> first = setRead("a", true)(store);
        QThread::msleep(1500);
        return first.and_then([&] { return setRead("both", true)(store); });
    });
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("read a both"), patience);
}

void TestChanges::unchangedRefresh()
{
    Archive archive;
    Told told(&archive);
    const auto wait = [](const QFuture<ArchiveDownload> &download) {
        QTRY_VERIFY_WITH_TIMEOUT(download.isFinished(), patience);
        QVERIFY(download.result().result.isOk());
    };
    wait(archive.subscribe({QUrl::fromLocalFile(TIDEL_TEST_DATA "/feeds/county-news.xml")}));
    QTRY_VERIFY_WITH_TIMEOUT(told.lines.size() >= 2, patience);
    QVERIFY(told.lines.at(0).startsWith("channels added "));
    QVERIFY(told.lines.at(1).startsWith("messages added "));
    const int before = int(told.lines.size());
    wait(archive.refresh({}, Archive::Forced));
    addLast();
    QTRY_COMPARE_WITH_TIMEOUT(told.lines.mid(before), QStringList("channels added last"), patience);
}

/// Each look runs statements.
void TestChanges::noLooksWithoutChanges()
{
    addArchive();
    MessageLog log;
    int count = 0;
    const auto looks = [&log, &count] {
        const std::vector<LoggedMessage> messages = log.take();
        count += int(std::count_if(messages.begin(), messages.end(), [](const LoggedMessage &message) {
            return message.text.contains("look for changes");
        }));
        return count;
    };
    Archive archive;
    waitFor(&archive);
    QVERIFY(looks() > 0);
    const auto isQuiet = [&looks] {
        const int before = looks();
        QTest::qWait(1000);
        return looks() == before;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isQuiet(), patience);
    const int before = looks();
    addLast();
    QTRY_VERIFY_WITH_TIMEOUT(looks() > before, patience);
}

void TestChanges::newStore()
{
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
    Archive archive;
    Told told(&archive);
    archive.change(update(newMessage));
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("messages added new"), patience);
    QCOMPARE(run(QCoreApplication::applicationFilePath(),
                 {"--update", "DELETE { <urn:message:new> a rdfs:Resource }"}),
             QString());
    QTRY_COMPARE_WITH_TIMEOUT(told.lines.mid(1), QStringList("messages removed new"), patience);
}

void TestChanges::replacedStore()
{
    addArchive();
    Archive archive;
    Told told(&archive);
    const auto isFavorite = [&archive] {
        const auto read =
            archive.read([](const Store &store) { return Messages(store).get(messageUri("a")); });
        [&] { QTRY_VERIFY_WITH_TIMEOUT(read.isFinished(), patience); }();
        return read.result()->isFavorite();
    };
    QVERIFY(!isFavorite());
    archive.change(setRead("a", true));
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("read a"), patience);
    VERIFY_OK(StoreDatabase::salvage());
    QTRY_VERIFY_WITH_TIMEOUT(told.lines.contains("messages changed a both old star"), patience);
    archive.change(setFavorite("a", true));
    QTRY_COMPARE_WITH_TIMEOUT(told.lines.constLast(), QString("favorite a"), patience);
    QVERIFY(isFavorite());
    QCOMPARE(told.lines.filter("added") + told.lines.filter("removed"), QStringList());
}

/// A change waits until its archive knows what was there before. The first look waits for the change in vain.
void TestChanges::changeAtOnce()
{
    addArchive();
    QSemaphore isChanged;
    StatementGate::setJudge([&isChanged](const QString &text) {
        if (text.contains("GROUP BY"))
            isChanged.tryAcquire(1, 300);
        return StatementGate::Pass;
    });
    Archive archive;
    Told told(&archive);
    archive.change([&isChanged](const Store &store) {
        const Result<void> removed = update("DELETE { <urn:message:a> a rdfs:Resource }")(store);
        isChanged.release();
        return removed;
    });
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("messages removed a"), patience);
}

/// What others change before the archive has read all messages.
void TestChanges::changesBeforeTheFirstLook()
{
    addArchive();
    std::atomic_bool isFirst = true;
    StatementGate::setJudge([&isFirst](const QString &text) {
        if (text.contains("GROUP BY") && isFirst.exchange(false)) {
            for (const char *change : {"new channel with a message", "read"})
                static_cast<void>(changes().at(change).operation(*Store::open()));
        }
        return StatementGate::Pass;
    });
    Archive archive;
    Told told(&archive);
    QTRY_VERIFY_WITH_TIMEOUT(!told.lines.isEmpty(), patience);
    addLast();
    QTRY_COMPARE_WITH_TIMEOUT(told.lines,
                              (QStringList{"channels added new", "messages added new", "messages changed a",
                                           "channels added last"}),
                              patience);
}

/// Between two looks a message is deleted, and another one gets its number and its mark.
void TestChanges::numbersGivenAgain()
{
    addArchive();
    const QString program = QCoreApplication::applicationFilePath();
    QCOMPARE(run(program, {"--update", newMessage}), QString());
    const QString number = numberOf("new");
    Archive archive;
    Told told(&archive);
    waitFor(&archive);
    QSemaphore hasBegun;
    QSemaphore goOn;
    StatementGate::setJudge([&](const QString &text) {
        if (text.contains("a mfo:FeedChannel ; nrl:modified")) {
            hasBegun.release();
            goOn.tryAcquire(1, patience);
        }
        return StatementGate::Pass;
    });
    VERIFY_OK(inFolder("other", "")(reader())); // leaves marks as they are
    QVERIFY(hasBegun.tryAcquire(1, patience));
    QCOMPARE(run(program, {"--update", "DELETE { <urn:message:new> a rdfs:Resource }"}), QString());
    QCOMPARE(run(program, {"--update", QString(newMessage).replace("message:new", "message:other")}),
             QString());
    QCOMPARE(numberOf("other"), number);
    goOn.release(100);
    QTRY_COMPARE_WITH_TIMEOUT(
        told.lines, (QStringList{"channels changed other", "messages added other", "messages removed new"}),
        patience);
}

/// A channel that comes after the look has read the channels is told before its message all the same.
void TestChanges::changesDuringALook()
{
    addArchive();
    Archive archive;
    Told told(&archive);
    waitFor(&archive);
    std::atomic_bool isFirst = true;
    StatementGate::setJudge([&isFirst](const QString &text) {
        if (text.contains("GROUP BY") && isFirst.exchange(false))
            static_cast<void>(changes().at("new channel with a message").operation(*Store::open()));
        return StatementGate::Pass;
    });
    archive.change(setRead("a", true));
    QTRY_COMPARE_WITH_TIMEOUT(told.lines, (QStringList{"channels added new", "messages added new", "read a"}),
                              patience);
}

/// Changes are told before there is a pause.
void TestChanges::whileOthersWrite()
{
    addArchive();
    Archive archive;
    Told told(&archive);
    waitFor(&archive);
    int writes = 0;
    const auto write = [&] { return setFavorite("a", ++writes % 2 != 0)(reader()) && told.lines.isEmpty(); };
    QElapsedTimer time;
    time.start();
    while (write() && time.elapsed() < patience)
        QCoreApplication::processEvents();
    QVERIFY(!told.lines.isEmpty());
}

void TestChanges::deletedByReceiver()
{
    addArchive();
    const QPointer<Archive> archive(new Archive);
    Told told(archive);
    connect(archive, &Archive::channelsAdded, this, [&archive] { delete archive; });
    archive->change(changes().at("new channel with a message").operation);
    QTRY_VERIFY_WITH_TIMEOUT(archive.isNull(), patience);
    QCOMPARE(told.lines, QStringList("channels added new"));
}

void TestChanges::afterClosing()
{
    addArchive();
    Archive archive;
    Archive other;
    Told told(&archive);
    Told toldOther(&other);
    waitFor(&archive);
    waitFor(&other);
    VERIFY_OK(setRead("a", true)(reader()));
    QThread::msleep(1500); // The watch may have found it by then.
    QVERIFY(archive.close());
    QTRY_COMPARE_WITH_TIMEOUT(toldOther.lines, QStringList("read a"), patience);
    toldOther.lines.clear();
    addLast();
    QTRY_COMPARE_WITH_TIMEOUT(toldOther.lines, QStringList("channels added last"), patience);
    QCOMPARE(told.lines, QStringList());
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    // Another program that changes the store.
    if (arguments.value(1) == QLatin1String("--update")) {
        const Result<Store> store = Store::open();
        return store && update(arguments.value(2))(*store) ? 0 : 1;
    }
    TestChanges test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_changes.moc"
