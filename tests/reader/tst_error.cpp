// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/channels.h>
#include <TidelReader/downloadresult.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/error.h>
#include <TidelReader/feeds.h>
#include <TidelReader/knownitems.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/orphans.h>
#include <TidelReader/retention.h>
#include <TidelReader/storablemessage.h>

#include <QtTest>

#include <type_traits>

using namespace Tidel;

namespace {

template <typename T> constexpr bool isOnePointer = sizeof(T) == sizeof(void *);
template <typename T>
constexpr bool movesWithoutThrowing =
    std::is_nothrow_move_constructible_v<T> &&std::is_nothrow_move_assignable_v<T>;

// A later version may add members to these classes only if the programs see nothing of them.
static_assert(isOnePointer<Error> && movesWithoutThrowing<Error>);
static_assert(isOnePointer<DownloadResult> && movesWithoutThrowing<DownloadResult>);
static_assert(isOnePointer<FeedState> && movesWithoutThrowing<FeedState>);
static_assert(isOnePointer<KnownItems> && movesWithoutThrowing<KnownItems>);
static_assert(isOnePointer<LinkUse> && movesWithoutThrowing<LinkUse>);
static_assert(isOnePointer<StorableMessage> && movesWithoutThrowing<StorableMessage>);
static_assert(isOnePointer<Store> && isOnePointer<Channels> && isOnePointer<Messages>);
static_assert(isOnePointer<Enclosures> && isOnePointer<Feeds> && isOnePointer<MessageWriter>);
static_assert(isOnePointer<Retention> && isOnePointer<Orphans>);
static_assert(sizeof(Link) == sizeof(QString));

} // namespace

class TestError : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data();
    void values();
    void textsAreNoTemplates();
    void copies();
    void resultOfAFailure();
};

void TestError::values_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("attempt");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("text");
    QTest::newRow("with attempt") << int(Error::StoreFailed) << "read the channels"
                                  << "database is locked"
                                  << "could not read the channels: database is locked";
    QTest::newRow("without attempt") << int(Error::NotFound) << ""
                                     << "no such channel"
                                     << "no such channel";
    QTest::newRow("null attempt") << int(Error::Ambiguous) << QString() << "2 channels"
                                  << "2 channels";
    QTest::newRow("without reason") << int(Error::StoreRefused) << "write"
                                    << ""
                                    << "could not write: ";
    for (Error::Kind kind :
         {Error::StoreUnavailable, Error::StoreFailed, Error::StoreRefused, Error::NotFound, Error::Ambiguous,
          Error::AlreadyStored, Error::LinkInUse, Error::PluginUnusable, Error::QueryRefused})
        QTest::addRow("kind %d", kind) << int(kind) << "a"
                                       << "b"
                                       << "could not a: b";
}

void TestError::values()
{
    QFETCH(int, kind);
    QFETCH(QString, attempt);
    QFETCH(QString, reason);
    const Error error(Error::Kind(kind), attempt, reason);
    QCOMPARE(int(error.kind()), kind);
    QCOMPARE(error.attempt(), attempt);
    QCOMPARE(error.reason(), reason);
    QTEST(error.text(), "text");
}

void TestError::textsAreNoTemplates()
{
    const Error error(Error::StoreFailed, "read %2", "%1 is unknown");
    QCOMPARE(error.text(), QString("could not read %2: %1 is unknown"));
}

void TestError::copies()
{
    const Error error(Error::NotFound, "find it", "no such message");
    Error other(Error::StoreFailed, "write", "no");
    const Error old = other;
    other = error;
    const Error moved = std::move(other);
    QCOMPARE(moved.text(), error.text());
    QCOMPARE(moved.kind(), Error::NotFound);
    QCOMPARE(old.text(), QString("could not write: no"));
    other = old;
    QCOMPARE(other.kind(), Error::StoreFailed);
}

void TestError::resultOfAFailure()
{
    const Result<QString> failed = Failure(Error(Error::LinkInUse, {}, "is in use"));
    QVERIFY(!failed);
    QCOMPARE(failed.error().kind(), Error::LinkInUse);
    const Result<QString> empty = QString();
    QVERIFY(empty);
}

QTEST_GUILESS_MAIN(TestError)
#include "tst_error.moc"
