// SPDX-License-Identifier: LGPL-2.1-or-later
#include "streamsamples.h"

#include <memorylimit.h>
#include <streambytes.h>
#include <testdevices.h>

#include <QBuffer>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimeZone>
#include <QtTest>

#include <memory>

namespace {

using Enclosures = QList<FeedEnclosure>;
using Messages = QList<FeedMessage>;

constexpr quint32 ManyElements = 0xffffffff;
/// The size of an enclosure: six texts, three numbers and a flag. A message is larger.
constexpr int SmallestElement = 37;

// Return what QDataStream reads for the fields of a stream, with zeros and empty texts after its end.

template <typename T> QVariant field(QDataStream &stream)
{
    T value{};
    stream >> value;
    return QVariant::fromValue(value);
}

QVariant timeField(QDataStream &stream)
{
    QDateTime value;
    stream >> value;
    return textOf(value);
}

QVariantList enclosureFields(QDataStream &s)
{
    return {field<QString>(s), field<QString>(s), field<QString>(s), field<quint32>(s), field<qint32>(s),
            field<quint32>(s), field<bool>(s),    field<QString>(s), field<QString>(s), field<QString>(s)};
}

QVariantList messageFields(QDataStream &s)
{
    return {field<QString>(s), field<QString>(s), field<QString>(s), field<QString>(s), field<QUrl>(s),
            timeField(s),      timeField(s),      field<bool>(s),    field<QString>(s)};
}

QVariantList channelFields(QDataStream &s)
{
    return {field<QString>(s), field<QString>(s), field<QString>(s), field<QString>(s), enclosureFields(s),
            field<QString>(s), timeField(s),      timeField(s),      field<QString>(s)};
}

/// Reads every beginning of the bytes of \a value into a value that is already filled. The status is Ok for
/// \a elementEnds of them, which end behind an element of a list.
/// \a elementEnds beginnings that end behind an element of a list.
template <typename T>
void checkBeginnings(const T &value, QVariantList (*fields)(QDataStream &), int elementEnds)
{
    const QByteArray bytes = written(value);
    int accepted = 0;
    for (int size = 0; size < bytes.size(); ++size) {
        const QByteArray beginning = bytes.left(size);
        T read(value);
        read.detach();
        if (readFrom(beginning, read) == QDataStream::Ok) {
            ++accepted;
            QCOMPARE(written(read).size(), beginning.size());
        } else {
            QCOMPARE(readFrom(beginning, read), QDataStream::ReadPastEnd);
        }
        QDataStream stream(beginning);
        const QVariantList expected = fields(stream);
        QCOMPARE(valuesOf(read).mid(0, expected.size()), expected);
    }
    QCOMPARE(accepted, elementEnds);
}

/// Returns the bytes of a message or a channel without its empty list.
template <typename T> QByteArray withoutList(const T &value)
{
    QByteArray bytes = written(value);
    bytes.chop(4);
    return bytes;
}

/// Returns the bytes of \a value with an impossible length for its first text.
template <typename T> QByteArray broken(const T &value)
{
    QDataStream stream(written(value));
    QString firstText;
    stream >> firstText;
    return streamed(3u) + written(value).mid(int(stream.device()->pos()));
}

/// Reads a list of a broken element and a \a good one, whose count is larger.
template <typename T> void checkBrokenElement(const T &good, void (T::*setFirstText)(const QString &))
{
    T firstTextEmpty = good;
    (firstTextEmpty.*setFirstText)(QString());
    QByteArray bytes = streamed(ManyElements) + broken(good) + written(good);

    QList<T> list;
    QCOMPARE(readFrom(bytes, list), QDataStream::ReadCorruptData);
    QCOMPARE(valuesOf(list), valuesOf(QList<T>{firstTextEmpty, good}));

    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    SequentialDevice sequential(bytes);
    for (QIODevice *device : std::initializer_list<QIODevice *>{&buffer, &sequential}) {
        const MemoryLimit limit(96 << 20);
        QVERIFY(limit.holds());
        QDataStream stream(device);
        stream.startTransaction();
        stream >> list;
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
        QCOMPARE(list.size(), 1);
        QVERIFY(!stream.commitTransaction());
    }
}

/// Reads a list from a device that fails behind the first element.
template <typename T> void checkFailingDevice(const T &element)
{
    const MemoryLimit limit(96 << 20);
    QVERIFY(limit.holds());
    FailingDevice device(streamed(ManyElements) + written(element));
    QDataStream stream(&device);
    QList<T> list;
    stream >> list;
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    QCOMPARE(list.size(), 2);
    QCOMPARE(valuesOf(list.constFirst()), valuesOf(element));
    QCOMPARE(valuesOf(list.constLast()).constFirst(), QVariant(QString()));
}

int elementsOf(const FeedEnclosure &) { return 0; }
int elementsOf(const FeedMessage &message) { return int(message.enclosures().size()); }
int elementsOf(const FeedChannel &channel);

template <typename T> int elementsOf(const QList<T> &list)
{
    int count = int(list.size());
    for (const T &element : list)
        count += elementsOf(element);
    return count;
}

int elementsOf(const FeedChannel &channel) { return elementsOf(channel.messages()); }

/// Reads \a bytes as a T, and checks that the value contains no more than the bytes do. Only an unfinished
/// message with an unfinished enclosure may be added.
template <typename T> void checkHostile(const QByteArray &bytes, const StreamForm &form)
{
    T value;
    qint64 consumed = 0;
    const QDataStream::Status status = readFrom(bytes, value, form, &consumed);
    QVERIFY(consumed <= bytes.size());
    QVERIFY(elementsOf(value) <= bytes.size() / SmallestElement + 2);
    if (status == QDataStream::Ok) {
        T again;
        QCOMPARE(readFrom(written(value, form), again, form), QDataStream::Ok);
        QCOMPARE(elementsOf(again), elementsOf(value));
    }
}

void checkHostile(const QByteArray &bytes, const StreamForm &form)
{
    checkHostile<FeedEnclosure>(bytes, form);
    checkHostile<FeedMessage>(bytes, form);
    checkHostile<FeedChannel>(bytes, form);
    checkHostile<Enclosures>(bytes, form);
    checkHostile<Messages>(bytes, form);
}

} // namespace

class tst_HostileStreams : public QObject
{
    Q_OBJECT

private slots:
    void countWithNothingBehind_data();
    void countWithNothingBehind();
    void countLargerThanTheElements();
    void unfinishedElementEndsTheList();
    void brokenElementDoesNotEndTheList();
    void failingDeviceEndsTheList();
    void enclosureTruncatedAnywhere();
    void messageTruncatedAnywhere();
    void channelTruncatedAnywhere();
    void memoryIsLimitedByTheBytes_data();
    void memoryIsLimitedByTheBytes();
    void changedBits_data() { addStreamForms(); }
    void changedBits();
    void randomBytes_data() { addStreamForms(); }
    void randomBytes();
    void unknownTimeZone_data();
    void unknownTimeZone();
    void arrivesPieceByPiece();
};

void tst_HostileStreams::countWithNothingBehind_data()
{
    QTest::addColumn<quint32>("count");
    for (const quint32 count : {1u, 2u, 0x7fffffffu, 0x80000000u, 0xfffffffeu, ManyElements})
        QTest::addRow("%u", count) << count;
}

void tst_HostileStreams::countWithNothingBehind()
{
    QFETCH(quint32, count);
    Enclosures enclosures{sampleEnclosure("old")};
    QCOMPARE(readFrom(streamed(count), enclosures), QDataStream::ReadPastEnd);
    QVERIFY(enclosures.isEmpty());
    Messages messages{FeedMessage()};
    QCOMPARE(readFrom(streamed(count), messages), QDataStream::ReadPastEnd);
    QVERIFY(messages.isEmpty());

    FeedMessage message = sampleChannel().messages().constFirst();
    QCOMPARE(readFrom(withoutList(sampleMessage("one", {})) + streamed(count), message),
             QDataStream::ReadPastEnd);
    QCOMPARE(valuesOf(message), valuesOf(sampleMessage("one", {})));
    FeedChannel channel = sampleChannel();
    QCOMPARE(readFrom(withoutList(FeedChannel()) + streamed(count), channel), QDataStream::ReadPastEnd);
    QCOMPARE(valuesOf(channel), valuesOf(FeedChannel()));
}

void tst_HostileStreams::countLargerThanTheElements()
{
    const Enclosures two{sampleEnclosure("one.ogg"), sampleEnclosure("two.pdf")};
    for (const quint32 count : {3u, ManyElements}) {
        Enclosures enclosures;
        QCOMPARE(readFrom(streamed(count, two.at(0), two.at(1)), enclosures), QDataStream::Ok);
        QCOMPARE(valuesOf(enclosures), valuesOf(two));

        const Messages sample = sampleChannel().messages();
        Messages messages;
        QCOMPARE(readFrom(streamed(count, sample.at(0), sample.at(1)), messages), QDataStream::Ok);
        QCOMPARE(valuesOf(messages), valuesOf(sample));

        FeedMessage message;
        QCOMPARE(readFrom(withoutList(FeedMessage()) + streamed(count, two.at(0), two.at(1)), message),
                 QDataStream::Ok);
        QCOMPARE(valuesOf(message.enclosures()), valuesOf(two));
        FeedChannel channel;
        QCOMPARE(readFrom(withoutList(FeedChannel()) + streamed(count, sample.at(0), sample.at(1)), channel),
                 QDataStream::Ok);
        QCOMPARE(valuesOf(channel.messages()), valuesOf(sample));
    }
}

void tst_HostileStreams::unfinishedElementEndsTheList()
{
    QByteArray bytes = streamed(ManyElements, sampleEnclosure("one.ogg"), sampleEnclosure("two.pdf"));
    bytes.chop(1);
    Enclosures enclosures;
    QCOMPARE(readFrom(bytes, enclosures), QDataStream::ReadPastEnd);
    FeedEnclosure unfinished = sampleEnclosure("two.pdf");
    unfinished.setsourceNamespace(QString());
    QCOMPARE(valuesOf(enclosures), valuesOf(Enclosures{sampleEnclosure("one.ogg"), unfinished}));
}

void tst_HostileStreams::brokenElementDoesNotEndTheList()
{
    checkBrokenElement(sampleEnclosure("one.ogg"), &FeedEnclosure::setUri);
    checkBrokenElement(sampleMessage("one", {}), &FeedMessage::setTitle);
}

void tst_HostileStreams::failingDeviceEndsTheList()
{
    checkFailingDevice(sampleEnclosure("one.ogg"));
    checkFailingDevice(sampleMessage("one", {}));
}

void tst_HostileStreams::enclosureTruncatedAnywhere()
{
    checkBeginnings(sampleEnclosure("one.ogg"), enclosureFields, 0);
}

void tst_HostileStreams::messageTruncatedAnywhere()
{
    checkBeginnings(sampleMessage("one", {sampleEnclosure("one.ogg"), FeedEnclosure()}), messageFields, 1);
}

void tst_HostileStreams::channelTruncatedAnywhere() { checkBeginnings(sampleChannel(), channelFields, 2); }

void tst_HostileStreams::memoryIsLimitedByTheBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    constexpr int Size = 1 << 20;
    QTest::newRow("a count") << streamed(0x7fffffffu);
    QTest::newRow("the greatest count") << streamed(ManyElements);
    QTest::newRow("a long text") << streamed(0x7ffffffeu, QString("text"));
    QTest::newRow("the longest text") << streamed(0xfffffffeu, QString("text"));
    QTest::newRow("an enclosure with a long text") << streamed(ManyElements, 0xfffffffeu, QString("text"));
    QTest::newRow("zeros") << streamed(ManyElements) + QByteArray(Size, '\0');
    QTest::newRow("ones") << QByteArray(Size, '\xff');
    QTest::newRow("long texts in turn")
        << streamed(ManyElements) + streamed(0x7ffffffeu, 0x7ffffffeu, 0x7ffffffeu).repeated(1000);
}

void tst_HostileStreams::memoryIsLimitedByTheBytes()
{
    QFETCH(QByteArray, bytes);
    const MemoryLimit limit(96 << 20);
    QVERIFY(limit.holds());
    checkHostile(bytes, StreamForm());
}

void tst_HostileStreams::changedBits()
{
    QFETCH(StreamForm, form);
    QRandomGenerator random(20261121);
    const QByteArray whole = written(sampleChannel(), form);
    for (int round = 0; round < 500; ++round) {
        QByteArray bytes = whole;
        for (int i = 0; i <= round % 4; ++i) {
            char &byte = bytes.data()[random.bounded(int(bytes.size()))];
            byte = char(byte ^ (1 << random.bounded(8)));
        }
        checkHostile<FeedChannel>(bytes, form);
    }
}

void tst_HostileStreams::randomBytes()
{
    QFETCH(StreamForm, form);
    QRandomGenerator random(11);
    for (int round = 0; round < 500; ++round) {
        QByteArray bytes(random.bounded(2000), '\0');
        // Small numbers give lengths and counts that fit.
        for (char &byte : bytes)
            byte = char(random.bounded(4) ? 0 : random.bounded(round % 2 ? 256 : 16));
        checkHostile(bytes, form);
    }
}

void tst_HostileStreams::unknownTimeZone_data()
{
    QTest::addColumn<QString>("zone");
    for (const char *zone : {"Nowhere/Land", "-No Time Zone Specified!", "UTC+99:00"})
        QTest::newRow(zone) << QString(zone);
}

/// Qt 5 crashes if it writes or prints a time whose zone it does not know.
void tst_HostileStreams::unknownTimeZone()
{
    QFETCH(QString, zone);
    constexpr qint8 InAZone = 3;
    const QByteArray time = streamed(QDate(2026, 1, 1), QTime(1, 2, 3), InAZone, zone);
    const QByteArray empty = streamed(QString());

    FeedMessage message;
    QCOMPARE(readFrom(empty.repeated(4) + streamed(QUrl()) + time + time + streamed(true) + empty
                          + streamed(quint32(0)),
                      message),
             QDataStream::Ok);
    QVERIFY(!message.publishedDate().isValid());
    QVERIFY(!message.downloadedTime().isValid());
    QString text;
    QDebug(&text) << message;
    QVERIFY(!text.isEmpty());
    message.setPublishedDate(QDateTime(QDate(2026, 1, 1), QTime(1, 2, 3), QTimeZone(zone.toLatin1())));
    FeedMessage messageBack;
    QCOMPARE(readFrom(written(message), messageBack), QDataStream::Ok);
    QVERIFY(!messageBack.publishedDate().isValid());
    QVERIFY(!messageBack.downloadedTime().isValid());
    QVERIFY(messageBack.isFavorite());

    FeedChannel channel;
    QCOMPARE(readFrom(empty.repeated(4) + written(FeedEnclosure()) + empty + time + time + empty
                          + streamed(quint32(0)),
                      channel),
             QDataStream::Ok);
    text.clear();
    QDebug(&text) << channel;
    QVERIFY(!text.isEmpty());
    FeedChannel channelBack;
    QCOMPARE(readFrom(written(channel), channelBack), QDataStream::Ok);
    QVERIFY(!channelBack.subscribedTime().isValid());
    QVERIFY(!channelBack.updatedTime().isValid());
}

/// A transaction does not notice that a list is incomplete when its bytes end behind an element. So the
/// sender writes the size of the bytes first.
void tst_HostileStreams::arrivesPieceByPiece()
{
    const QByteArray bytes = streamed(written(sampleChannel()));
    const int lastMessage = int(written(sampleChannel().messages().constLast()).size());
    const QList<int> ends{
        0, 3, 100, 700, int(bytes.size()) - lastMessage, int(bytes.size()) - 1, int(bytes.size())};

    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QTcpSocket receiver;
    receiver.connectToHost(server.serverAddress(), server.serverPort());
    QVERIFY(server.waitForNewConnection(10000));
    const std::unique_ptr<QTcpSocket> sender(server.nextPendingConnection());
    QDataStream stream(&receiver);
    QByteArray received;
    int sent = 0;
    for (const int end : ends) {
        sender->write(bytes.mid(sent, end - sent));
        sender->flush();
        sent = end;
        while (receiver.bytesAvailable() < end)
            QVERIFY(receiver.waitForReadyRead(10000));

        stream.startTransaction();
        stream >> received;
        const bool complete = end == bytes.size();
        QCOMPARE(stream.commitTransaction(), complete);
        QCOMPARE(stream.status(), complete ? QDataStream::Ok : QDataStream::ReadPastEnd);
    }
    FeedChannel channel;
    QCOMPARE(readFrom(received, channel), QDataStream::Ok);
    QCOMPARE(valuesOf(channel), valuesOf(sampleChannel()));
    QCOMPARE(receiver.bytesAvailable(), 0);
}

QTEST_GUILESS_MAIN(tst_HostileStreams)
#include "tst_hostilestreams.moc"
