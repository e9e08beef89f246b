// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sharedvalue.h"
#include "streamsamples.h"

#include <QFile>
#include <QtTest>

#include <climits>

namespace {

// Writes the format with QDataStream's own operators for Qt's types only.

void writeReference(QDataStream &stream, const FeedMessage &m);

void writeReference(QDataStream &stream, const FeedEnclosure &e)
{
    stream << e.uri();
    stream << e.remoteUrl();
    stream << e.localUrl();
    stream << qint32(e.length());
    stream << qint32(e.type());
    stream << qint32(e.groupId());
    stream << e.isDefault();
    stream << e.mimeType();
    stream << e.typeIcon();
    stream << e.sourceNamespace();
}

template <typename T> void writeReference(QDataStream &stream, const QList<T> &list)
{
    stream << quint32(list.size());
    for (const T &element : list)
        writeReference(stream, element);
}

void writeReference(QDataStream &stream, const FeedMessage &m)
{
    stream << m.title();
    stream << m.link();
    stream << m.description();
    stream << m.summary();
    stream << m.baseUrl();
    stream << m.publishedDate();
    stream << m.downloadedTime();
    stream << m.isFavorite();
    stream << m.id();
    writeReference(stream, m.enclosures());
}

void writeReference(QDataStream &stream, const FeedChannel &c)
{
    stream << c.type();
    stream << c.title();
    stream << c.uri();
    stream << c.link();
    writeReference(stream, c.icon());
    stream << c.description();
    stream << c.subscribedTime();
    stream << c.updatedTime();
    stream << c.lastModifiedTime();
    writeReference(stream, c.messages());
}

template <typename T> QByteArray reference(const T &value, const StreamForm &form)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    form.applyTo(stream);
    writeReference(stream, value);
    return bytes;
}

template <typename T> void checkBytes(const T &value, const StreamForm &form)
{
    const QVariantList before = valuesOf(value);
    const QByteArray bytes = written(value, form);
    QCOMPARE(bytes.toHex(' '), reference(value, form).toHex(' '));
    QCOMPARE(valuesOf(value), before);

    T readBack;
    qint64 consumed = 0;
    QCOMPARE(readFrom(bytes + "what follows", readBack, form, &consumed), QDataStream::Ok);
    QCOMPARE(consumed, qint64(bytes.size()));
    QCOMPARE(valuesOf(readBack), before);
}

template <typename T> void checkThatCopiesChangeToo(T value, const T &other)
{
    const T copy = value;
    const void *record = recordOf(value);
    QVERIFY(valuesOf(copy) != valuesOf(other));
    QCOMPARE(readFrom(written(other), value), QDataStream::Ok);
    QCOMPARE(recordOf(value), record);
    QCOMPARE(recordOf(copy), record);
    QCOMPARE(valuesOf(value), valuesOf(other));
    QCOMPARE(valuesOf(copy), valuesOf(other));
}

} // namespace

class tst_Streams : public QObject
{
    Q_OBJECT

private slots:
    void enclosureIsWrittenFieldByField_data() { addStreamForms(); }
    void enclosureIsWrittenFieldByField();
    void messageIsWrittenFieldByField_data() { addStreamForms(); }
    void messageIsWrittenFieldByField();
    void channelIsWrittenFieldByField_data() { addStreamForms(); }
    void channelIsWrittenFieldByField();
    void listsAreWrittenAsACountAndElements_data() { addStreamForms(); }
    void listsAreWrittenAsACountAndElements();
    void defaultsComeBack();
    void bytesStayAsTheyAre_data() { addStreamForms(); }
    void bytesStayAsTheyAre();

    void typesKeepTheirValue_data();
    void typesKeepTheirValue();
    void numbersAreUnsigned();
    void textsAreNotAltered();
    void timesKeepTheirZone();
    void readingReplacesTheWholeBaseUrl();

    void readingAnEnclosureChangesItsCopies();
    void readingAMessageChangesItsCopies();
    void readingAChannelChangesItsCopies();
    void readingAChannelChangesTheCopiesOfItsIcon();
    void readingIntoADetachedCopyChangesOnlyThat();
    void readingAMessageMakesNewEnclosures();
    void readingAChannelMakesNewMessages();
    void messagesStayInTheOrderOfTheStream();

    void listReadersReplaceTheList();
    void listReadersDoNotChangeCopiesOfTheList();
    void emptyListsMayEndTheStream();
};

void tst_Streams::enclosureIsWrittenFieldByField()
{
    QFETCH(StreamForm, form);
    checkBytes(sampleEnclosure("one.ogg"), form);
}

void tst_Streams::messageIsWrittenFieldByField()
{
    QFETCH(StreamForm, form);
    checkBytes(sampleMessage("one", {sampleEnclosure("one.ogg"), sampleEnclosure("two.pdf")}), form);
}

void tst_Streams::channelIsWrittenFieldByField()
{
    QFETCH(StreamForm, form);
    checkBytes(sampleChannel(), form);
}

void tst_Streams::listsAreWrittenAsACountAndElements()
{
    QFETCH(StreamForm, form);
    checkBytes(QList<FeedEnclosure>(), form);
    checkBytes(QList<FeedEnclosure>{sampleEnclosure("one.ogg"), FeedEnclosure(), sampleEnclosure("two.pdf")},
               form);
    checkBytes(QList<FeedMessage>(), form);
    checkBytes(sampleChannel().messages(), form);
}

void tst_Streams::defaultsComeBack()
{
    FeedChannel channel = sampleChannel();
    QCOMPARE(readFrom(written(FeedChannel()), channel), QDataStream::Ok);
    QCOMPARE(valuesOf(channel), valuesOf(FeedChannel()));
    QVERIFY(channel.subscribedTime().isNull());

    FeedMessage message = sampleChannel().messages().constFirst();
    QCOMPARE(readFrom(written(FeedMessage()), message), QDataStream::Ok);
    QCOMPARE(valuesOf(message), valuesOf(FeedMessage()));
    QVERIFY(message.publishedDate().isNull());
    QVERIFY(message.baseUrl().isEmpty());
}

/// If the format is meant to change, set TIDEL_WRITE_SAMPLES to write new files.
void tst_Streams::bytesStayAsTheyAre()
{
    QFETCH(StreamForm, form);
    QFile file(QString(TIDEL_TEST_DATA "/streams/channel-%1.bin").arg(QTest::currentDataTag()));
    if (qEnvironmentVariableIsSet("TIDEL_WRITE_SAMPLES")) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(written(sampleChannel(), form));
        file.close();
    }
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
    const QByteArray bytes = file.readAll();
    QCOMPARE(written(sampleChannel(), form).toHex(' '), bytes.toHex(' '));

    FeedChannel channel;
    qint64 consumed = 0;
    QCOMPARE(readFrom(bytes, channel, form, &consumed), QDataStream::Ok);
    QCOMPARE(consumed, qint64(bytes.size()));
    QCOMPARE(valuesOf(channel), valuesOf(sampleChannel()));
}

void tst_Streams::typesKeepTheirValue_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {1, 2, 0, 7, -1, INT_MAX, INT_MIN})
        QTest::addRow("%d", type) << type;
}

void tst_Streams::typesKeepTheirValue()
{
    QFETCH(int, type);
    FeedEnclosure enclosure;
    enclosure.setType(FeedEnclosure::Type(type));
    FeedEnclosure readBack;
    QCOMPARE(readFrom(written(enclosure), readBack), QDataStream::Ok);
    QCOMPARE(int(readBack.type()), type);
}

void tst_Streams::numbersAreUnsigned()
{
    for (const unsigned int number : {0u, 1u, 0x7fffffffu, 0x80000000u, 0xfffffffeu, 0xffffffffu}) {
        FeedEnclosure enclosure;
        enclosure.setLength(number);
        enclosure.setGroupId(number - 1);
        FeedEnclosure readBack;
        QCOMPARE(readFrom(written(enclosure), readBack), QDataStream::Ok);
        QCOMPARE(readBack.length(), number);
        QCOMPARE(readBack.groupId(), number - 1);
    }
}

void tst_Streams::textsAreNotAltered()
{
    FeedMessage message(QString(), " \nlink\t ", QString(), QDateTime());
    FeedMessage messageBack;
    readFrom(written(message), messageBack);
    QCOMPARE(messageBack.link(), QString(" \nlink\t "));

    const FeedChannel channel(QString(), QString(), " two\t  words ", FeedEnclosure(), QString(), QString(),
                              QDateTime(), QDateTime(), QString(), {});
    FeedChannel channelBack;
    readFrom(written(channel), channelBack);
    QCOMPARE(channelBack.title(), QString(" two\t  words "));
}

void tst_Streams::timesKeepTheirZone()
{
    const QDate date(2026, 11, 17);
    const QTime time(18, 0, 1, 234);
    for (const QDateTime &published : {QDateTime(date, time), QDateTime(date, time, Qt::UTC),
                                       QDateTime(date, time, Qt::OffsetFromUTC, -12600), QDateTime()}) {
        FeedMessage message;
        message.setPublishedDate(published);
        FeedMessage readBack;
        QCOMPARE(readFrom(written(message), readBack), QDataStream::Ok);
        QCOMPARE(textOf(readBack.publishedDate()), textOf(published));
        QCOMPARE(readBack.publishedDate().offsetFromUtc(), published.offsetFromUtc());
    }
}

void tst_Streams::readingReplacesTheWholeBaseUrl()
{
    for (const QUrl &address : {QUrl("relative/path"), QUrl("https://example.org/"), QUrl()}) {
        FeedMessage message;
        message.setBaseUrl(address);
        FeedMessage readBack = sampleMessage("one", {});
        QVERIFY(readBack.baseUrl().hasQuery() && readBack.baseUrl().hasFragment());
        QCOMPARE(readFrom(written(message), readBack), QDataStream::Ok);
        QCOMPARE(readBack.baseUrl(), address);
        QCOMPARE(readBack.baseUrl().query(), QString());
    }
}

void tst_Streams::readingAnEnclosureChangesItsCopies()
{
    checkThatCopiesChangeToo(sampleEnclosure("one.ogg"), sampleEnclosure("two.pdf"));
}

void tst_Streams::readingAMessageChangesItsCopies()
{
    checkThatCopiesChangeToo(sampleMessage("one", {sampleEnclosure("one.ogg")}), sampleMessage("two", {}));
}

void tst_Streams::readingAChannelChangesItsCopies()
{
    checkThatCopiesChangeToo(FeedChannel(), sampleChannel());
}

void tst_Streams::readingAChannelChangesTheCopiesOfItsIcon()
{
    const FeedEnclosure icon = sampleEnclosure("old.png");
    FeedChannel channel;
    channel.setIcon(icon);
    FeedChannel detached = channel;
    detached.detach();

    QCOMPARE(readFrom(written(sampleChannel()), channel), QDataStream::Ok);
    QCOMPARE(valuesOf(icon), valuesOf(sampleEnclosure("icon.png")));
    QCOMPARE(recordOf(channel.icon()), recordOf(icon));
    QCOMPARE(valuesOf(detached.icon()), valuesOf(sampleEnclosure("icon.png")));
    QCOMPARE(detached.title(), QString());
}

void tst_Streams::readingIntoADetachedCopyChangesOnlyThat()
{
    const FeedEnclosure enclosure = sampleEnclosure("one.ogg");
    FeedEnclosure enclosureCopy = enclosure;
    enclosureCopy.detach();
    readFrom(written(FeedEnclosure()), enclosureCopy);
    QCOMPARE(valuesOf(enclosure), valuesOf(sampleEnclosure("one.ogg")));

    const FeedMessage message = sampleMessage("one", {});
    FeedMessage messageCopy = message;
    messageCopy.detach();
    readFrom(written(FeedMessage()), messageCopy);
    QCOMPARE(valuesOf(message), valuesOf(sampleMessage("one", {})));
}

void tst_Streams::readingAMessageMakesNewEnclosures()
{
    const FeedEnclosure enclosure = sampleEnclosure("one.ogg");
    FeedMessage message = sampleMessage("one", {enclosure});
    const QList<FeedEnclosure> before = message.enclosures();
    QCOMPARE(readFrom(written(sampleMessage("two", {sampleEnclosure("two.pdf")})), message), QDataStream::Ok);
    QCOMPARE(message.enclosures().constFirst().uri(), QString("urn:two.pdf"));
    QCOMPARE(valuesOf(enclosure), valuesOf(sampleEnclosure("one.ogg")));
    QCOMPARE(before.constFirst().uri(), QString("urn:one.ogg"));
}

void tst_Streams::readingAChannelMakesNewMessages()
{
    FeedMessage message = sampleMessage("old", {});
    FeedChannel channel;
    channel.addChild(&message);
    channel.addChild(&message);
    channel.addChild(&message);
    const QList<FeedMessage> before = channel.messages();
    QCOMPARE(readFrom(written(sampleChannel()), channel), QDataStream::Ok);
    QCOMPARE(valuesOf(channel.messages()), valuesOf(sampleChannel().messages()));
    QCOMPARE(message.title(), QString("Title of old"));
    QCOMPARE(before.size(), 3);
}

void tst_Streams::messagesStayInTheOrderOfTheStream()
{
    FeedMessage newer;
    newer.setPublishedDate(QDateTime(QDate(2026, 2, 2), QTime(0, 0), Qt::UTC));
    FeedMessage older;
    older.setPublishedDate(QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC));
    QList<FeedMessage> messages{older, newer, FeedMessage(), older};
    FeedChannel channel;
    channel.setMessages(messages);

    FeedChannel readBack;
    QCOMPARE(readFrom(written(channel), readBack), QDataStream::Ok);
    QCOMPARE(valuesOf(readBack.messages()), valuesOf(messages));
}

void tst_Streams::listReadersReplaceTheList()
{
    QList<FeedEnclosure> enclosures{sampleEnclosure("old"), sampleEnclosure("older")};
    QCOMPARE(readFrom(written(QList<FeedEnclosure>{sampleEnclosure("new")}), enclosures), QDataStream::Ok);
    QCOMPARE(valuesOf(enclosures), valuesOf(QList<FeedEnclosure>{sampleEnclosure("new")}));

    QList<FeedMessage> messages = sampleChannel().messages();
    QCOMPARE(readFrom(written(QList<FeedMessage>()), messages), QDataStream::Ok);
    QVERIFY(messages.isEmpty());
}

void tst_Streams::listReadersDoNotChangeCopiesOfTheList()
{
    QList<FeedEnclosure> enclosures{sampleEnclosure("old")};
    const QList<FeedEnclosure> copy = enclosures;
    readFrom(written(QList<FeedEnclosure>{sampleEnclosure("new")}), enclosures);
    QCOMPARE(valuesOf(copy), valuesOf(QList<FeedEnclosure>{sampleEnclosure("old")}));
}

void tst_Streams::emptyListsMayEndTheStream()
{
    QList<FeedEnclosure> enclosures{sampleEnclosure("old")};
    QCOMPARE(readFrom(QByteArray(4, '\0'), enclosures), QDataStream::Ok);
    QVERIFY(enclosures.isEmpty());
    QList<FeedMessage> messages = sampleChannel().messages();
    QCOMPARE(readFrom(QByteArray(4, '\0'), messages), QDataStream::Ok);
    QVERIFY(messages.isEmpty());
}

QTEST_APPLESS_MAIN(tst_Streams)
#include "tst_streams.moc"
