// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedchannel.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <QDebug>
#include <QtTest>

namespace {

template <typename T> QString spaced(const T &value)
{
    QString out;
    QDebug(&out) << value;
    return out;
}

template <typename T> QString unspaced(const T &value)
{
    QString out;
    QDebug(&out).nospace() << value;
    return out;
}

// Returns what QDebug writes for the items in spacing mode, with a blank after each item.
QString withBlanks(const QStringList &items) { return items.join(' ') + ' '; }

QString withoutBlanks(const QStringList &items) { return items.join(QString()); }

QDateTime day(int number) { return QDateTime(QDate(2020, 1, number), QTime(12, 0), Qt::UTC); }

FeedEnclosure enclosure()
{
    FeedEnclosure result("urn:1", "http://a/1", "file:///1", "media", 4294967295u, FeedEnclosure::Essential,
                         22, true);
    result.setMimeType("audio/ogg");
    result.setTypeIcon("audio-icon");
    return result;
}

QStringList enclosureItems()
{
    return {"\nEnclosure : ",
            "\n Source Namespace : ",
            "\"media\"",
            "\n uri: ",
            "\"urn:1\"",
            "\n         Remote Url: ",
            "\"http://a/1\"",
            "\n         Local Url:",
            "\"file:///1\"",
            "\n         Length: ",
            "4294967295",
            "\n         Type: Essential",
            "\n         Group Id:",
            "22",
            "\n     Default :",
            "true",
            "\n     mimeType:",
            "\"audio/ogg\"",
            "\n      typeIcon:",
            "\"audio-icon\""};
}

QStringList emptyEnclosureItems(const QString &remoteUrl = QString())
{
    return {"\nEnclosure : ",
            "\n Source Namespace : ",
            "\"\"",
            "\n uri: ",
            "\"\"",
            "\n         Remote Url: ",
            '"' + remoteUrl + '"',
            "\n         Local Url:",
            "\"\"",
            "\n         Length: ",
            "0",
            "\n         Type: Optional",
            "\n         Group Id:",
            "0",
            "\n     Default :",
            "false",
            "\n     mimeType:",
            "\"\"",
            "\n      typeIcon:",
            "\"\""};
}

FeedMessage message()
{
    return FeedMessage("title 1", "http://a/1", "id 1", "description 1", "summary 1", day(1), {}, day(2),
                       true);
}

// Returns the text before the list of enclosures.
QStringList messageItems()
{
    return {"\nFeed Message: ",
            "\n         Title: ",
            "\"title 1\"",
            "\n         Link: ",
            "\"http://a/1\"",
            "\n         Description: ",
            "\"description 1\"",
            "\n         Summary: ",
            "\"summary 1\"",
            "\n         Published Date: ",
            unspaced(day(1)),
            "\n         Downloaded Time: ",
            unspaced(day(2)),
            "\n         Favorite: ",
            "true",
            "\n         Id:       ",
            "\"id 1\"",
            "\n         Enclosures: "};
}

QStringList emptyMessageItems(const QString &title = QString())
{
    return {"\nFeed Message: ",
            "\n         Title: ",
            '"' + title + '"',
            "\n         Link: ",
            "\"\"",
            "\n         Description: ",
            "\"\"",
            "\n         Summary: ",
            "\"\"",
            "\n         Published Date: ",
            unspaced(QDateTime()),
            "\n         Downloaded Time: ",
            unspaced(QDateTime()),
            "\n         Favorite: ",
            "false",
            "\n         Id:       ",
            "\"\"",
            "\n         Enclosures: "};
}

FeedChannel channel()
{
    return FeedChannel("urn:1", "http://a/1", "title 1", enclosure(), "type 1", "description 1", day(1),
                       day(2), "last week", {});
}

// Returns the text before the heading of the messages.
QStringList channelItems()
{
    return QStringList{"Channel : ",     "\n         Type: ", "\"type 1\"", "\n        Title: ",
                       "\"title 1\"",    "\n          Uri: ", "\"urn:1\"",  "\n         Link: ",
                       "\"http://a/1\"", "\n        Image: "}
    + enclosureItems() + QStringList{"\n  Description: ",   "\"description 1\"",
                                     "\nSubscribed Time: ", '"' + day(1).toString(Qt::TextDate) + '"',
                                     "\nUpdatedTime: ",     '"' + day(2).toString(Qt::TextDate) + '"'};
}

FeedEnclosure enclosureAt(const QString &remoteUrl)
{
    FeedEnclosure result;
    result.setRemoteUrl(remoteUrl);
    return result;
}

FeedMessage messageWith(const QString &title, const QStringList &remoteUrls)
{
    FeedMessage result;
    result.setTitle(title);
    for (const QString &remoteUrl : remoteUrls)
        result.addEnclosure(enclosureAt(remoteUrl));
    return result;
}

} // namespace

class tst_DebugText : public QObject
{
    Q_OBJECT

private slots:
    void enclosureHasABlankAfterEachItem();
    void enclosureInNoSpacingModeHasNoBlanks();
    void enclosureKeepsTheSpacingMode();
    void enclosureTypeIsEssentialOrOptional_data();
    void enclosureTypeIsEssentialOrOptional();
    void emptyEnclosurePrintsPairsOfQuotes();
    void messageHasABlankAfterEachItem();
    void messageInNoSpacingModeEndsInSpacingMode();
    void messagePrintsEnclosuresWithoutBlanks();
    void emptyMessagePrintsInvalidDatesAndAnEmptyList();
    void channelHasABlankAfterEachItem();
    void channelInNoSpacingModeEndsInSpacingMode();
    void emptyChannelPrintsEmptyDatesAndAnEmptyList();
    void innerListSwitchesSpacingOnForTheOuterOne();
    void wholeChannelTextIsExact();
    void textIsQuotedAndKeepsOtherLetters();
    void valuesMayBeChained();
};

void tst_DebugText::enclosureHasABlankAfterEachItem()
{
    QCOMPARE(spaced(enclosure()),
             QString("\nEnclosure :  \n Source Namespace :  \"media\" \n uri:  \"urn:1\" "
                     "\n         Remote Url:  \"http://a/1\" \n         Local Url: \"file:///1\" "
                     "\n         Length:  4294967295 \n         Type: Essential \n         Group Id: 22 "
                     "\n     Default : true \n     mimeType: \"audio/ogg\" "
                     "\n      typeIcon: \"audio-icon\" "));
    QCOMPARE(spaced(enclosure()), withBlanks(enclosureItems()));
}

void tst_DebugText::enclosureInNoSpacingModeHasNoBlanks()
{
    QCOMPARE(unspaced(enclosure()), withoutBlanks(enclosureItems()));
}

void tst_DebugText::enclosureKeepsTheSpacingMode()
{
    QString out;
    QDebug(&out) << enclosure() << 1 << 2;
    QCOMPARE(out, withBlanks(enclosureItems()) + "1 2 ");

    out.clear();
    QDebug(&out).nospace() << enclosure() << 1 << 2;
    QCOMPARE(out, withoutBlanks(enclosureItems()) + "12");
}

void tst_DebugText::enclosureTypeIsEssentialOrOptional_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0") << 0 << "\n         Type: Optional";
    QTest::newRow("1") << 1 << "\n         Type: Essential";
    QTest::newRow("2") << 2 << "\n         Type: Optional";
    QTest::newRow("7") << 7 << "\n         Type: Optional";
    QTest::newRow("-1") << -1 << "\n         Type: Optional";
}

void tst_DebugText::enclosureTypeIsEssentialOrOptional()
{
    QFETCH(int, type);
    QFETCH(QString, expected);
    FeedEnclosure one = enclosure();
    one.setType(FeedEnclosure::Type(type));
    QStringList items = enclosureItems();
    items[11] = expected;
    QCOMPARE(spaced(one), withBlanks(items));
}

void tst_DebugText::emptyEnclosurePrintsPairsOfQuotes()
{
    QCOMPARE(spaced(FeedEnclosure()), withBlanks(emptyEnclosureItems()));
}

void tst_DebugText::messageHasABlankAfterEachItem()
{
    const QString published = unspaced(day(1));
    const QString downloaded = unspaced(day(2));
    QCOMPARE(spaced(message()),
             "\nFeed Message:  \n         Title:  \"title 1\" \n         Link:  \"http://a/1\" "
             "\n         Description:  \"description 1\" \n         Summary:  \"summary 1\" "
             "\n         Published Date:  "
                 + published + " \n         Downloaded Time:  " + downloaded
                 + " \n         Favorite:  true \n         Id:        \"id 1\" "
                   "\n         Enclosures:  () ");
    QCOMPARE(spaced(message()), withBlanks(messageItems()) + "() ");
}

void tst_DebugText::messageInNoSpacingModeEndsInSpacingMode()
{
    QString out;
    QDebug(&out).nospace() << message() << 1 << 2;
    QCOMPARE(out, withoutBlanks(messageItems()) + "() 1 2 ");
}

void tst_DebugText::messagePrintsEnclosuresWithoutBlanks()
{
    FeedMessage one = message();
    one.addEnclosure(enclosure());
    const QString first = withoutBlanks(enclosureItems());
    QCOMPARE(spaced(one), withBlanks(messageItems()) + '(' + first + ") ");

    one.addEnclosure(FeedEnclosure());
    const QString second = withoutBlanks(emptyEnclosureItems());
    QCOMPARE(spaced(one), withBlanks(messageItems()) + '(' + first + ", " + second + ") ");
    QCOMPARE(unspaced(one), withoutBlanks(messageItems()) + '(' + first + ", " + second + ") ");

    QString out;
    QDebug(&out) << one << 1 << 2;
    QCOMPARE(out, spaced(one) + "1 2 ");
}

void tst_DebugText::emptyMessagePrintsInvalidDatesAndAnEmptyList()
{
    QCOMPARE(spaced(FeedMessage()), withBlanks(emptyMessageItems()) + "() ");
}

void tst_DebugText::channelHasABlankAfterEachItem()
{
    QCOMPARE(spaced(channel()),
             "Channel :  \n         Type:  \"type 1\" \n        Title:  \"title 1\" "
             "\n          Uri:  \"urn:1\" \n         Link:  \"http://a/1\" \n        Image:  "
                 + spaced(enclosure()) + "\n  Description:  \"description 1\" \nSubscribed Time:  \""
                 + day(1).toString(Qt::TextDate) + "\" \nUpdatedTime:  \"" + day(2).toString(Qt::TextDate)
                 + "\" \nMessages in the channel \n() ");
    QCOMPARE(spaced(channel()), withBlanks(channelItems()) + "\nMessages in the channel \n() ");
}

void tst_DebugText::channelInNoSpacingModeEndsInSpacingMode()
{
    QString out;
    QDebug(&out).nospace() << channel() << 1 << 2;
    QCOMPARE(out, withoutBlanks(channelItems()) + "\nMessages in the channel\n() 1 2 ");
}

void tst_DebugText::emptyChannelPrintsEmptyDatesAndAnEmptyList()
{
    QCOMPARE(spaced(FeedChannel()),
             "Channel :  \n         Type:  \"\" \n        Title:  \"\" \n          Uri:  \"\" "
             "\n         Link:  \"\" \n        Image:  "
                 + withBlanks(emptyEnclosureItems())
                 + "\n  Description:  \"\" \nSubscribed Time:  \"\" \nUpdatedTime:  \"\" "
                   "\nMessages in the channel \n() ");
}

void tst_DebugText::innerListSwitchesSpacingOnForTheOuterOne()
{
    QList<FeedMessage> messages{messageWith("one", {"http://a/1", "http://a/2"}),
                                messageWith("two", {"http://b/1", "http://b/2"})};
    const auto listOf = [](const QString &a, const QString &b) {
        return '(' + withoutBlanks(emptyEnclosureItems(a)) + ", " + withoutBlanks(emptyEnclosureItems(b))
            + ") ";
    };
    // The first message is written in no-spacing mode. The end of its list switches spacing on, so there are
    // blanks after the comma, the items of the second message and the last bracket.
    const QString list = '(' + withoutBlanks(emptyMessageItems("one")) + listOf("http://a/1", "http://a/2")
        + ",  " + withBlanks(emptyMessageItems("two")) + listOf("http://b/1", "http://b/2") + ")  ";

    FeedChannel one = channel();
    one.setMessages(messages);
    QCOMPARE(spaced(one), withBlanks(channelItems()) + "\nMessages in the channel \n" + list);
    QCOMPARE(unspaced(one), withoutBlanks(channelItems()) + "\nMessages in the channel\n" + list);
}

void tst_DebugText::wholeChannelTextIsExact()
{
    const QString noDate = unspaced(QDateTime());
    const QString expected = QString("Channel :  \n"
                                     "         Type:  \"\" \n"
                                     "        Title:  \"News\" \n"
                                     "          Uri:  \"\" \n"
                                     "         Link:  \"\" \n"
                                     "        Image:  \n"
                                     "Enclosure :  \n"
                                     " Source Namespace :  \"\" \n"
                                     " uri:  \"\" \n"
                                     "         Remote Url:  \"http://i/1\" \n"
                                     "         Local Url: \"\" \n"
                                     "         Length:  0 \n"
                                     "         Type: Optional \n"
                                     "         Group Id: 0 \n"
                                     "     Default : false \n"
                                     "     mimeType: \"\" \n"
                                     "      typeIcon: \"\" \n"
                                     "  Description:  \"\" \n"
                                     "Subscribed Time:  \"\" \n"
                                     "UpdatedTime:  \"\" \n"
                                     "Messages in the channel \n"
                                     "(\n"
                                     "Feed Message: \n"
                                     "         Title: \"one\"\n"
                                     "         Link: \"\"\n"
                                     "         Description: \"\"\n"
                                     "         Summary: \"\"\n"
                                     "         Published Date: %1\n"
                                     "         Downloaded Time: %1\n"
                                     "         Favorite: false\n"
                                     "         Id:       \"\"\n"
                                     "         Enclosures: (\n"
                                     "Enclosure : \n"
                                     " Source Namespace : \"\"\n"
                                     " uri: \"\"\n"
                                     "         Remote Url: \"http://a/1\"\n"
                                     "         Local Url:\"\"\n"
                                     "         Length: 0\n"
                                     "         Type: Optional\n"
                                     "         Group Id:0\n"
                                     "     Default :false\n"
                                     "     mimeType:\"\"\n"
                                     "      typeIcon:\"\", \n"
                                     "Enclosure : \n"
                                     " Source Namespace : \"\"\n"
                                     " uri: \"\"\n"
                                     "         Remote Url: \"http://a/2\"\n"
                                     "         Local Url:\"\"\n"
                                     "         Length: 0\n"
                                     "         Type: Optional\n"
                                     "         Group Id:0\n"
                                     "     Default :false\n"
                                     "     mimeType:\"\"\n"
                                     "      typeIcon:\"\") ,  \n"
                                     "Feed Message:  \n"
                                     "         Title:  \"two\" \n"
                                     "         Link:  \"\" \n"
                                     "         Description:  \"\" \n"
                                     "         Summary:  \"\" \n"
                                     "         Published Date:  %1 \n"
                                     "         Downloaded Time:  %1 \n"
                                     "         Favorite:  false \n"
                                     "         Id:        \"\" \n"
                                     "         Enclosures:  () )  ")
                                 .arg(noDate);

    QList<FeedMessage> messages{messageWith("one", {"http://a/1", "http://a/2"}), messageWith("two", {})};
    FeedChannel one;
    one.setTitle("News");
    one.setIcon(enclosureAt("http://i/1"));
    one.setMessages(messages);
    QCOMPARE(spaced(one), expected);
}

void tst_DebugText::textIsQuotedAndKeepsOtherLetters()
{
    const QString title = QString::fromUtf8("Grüße \"日本\"\n\xF0\x9F\x93\xBB");
    const QString quoted = QString::fromUtf8("\"Grüße \\\"日本\\\"\\n\xF0\x9F\x93\xBB\"");
    FeedMessage one = message();
    one.setTitle(title);
    QStringList items = messageItems();
    items[2] = quoted;
    QCOMPARE(spaced(one), withBlanks(items) + "() ");
}

void tst_DebugText::valuesMayBeChained()
{
    QString out;
    QDebug(&out) << enclosure() << message() << channel();
    QCOMPARE(out, spaced(enclosure()) + spaced(message()) + spaced(channel()));
}

QTEST_APPLESS_MAIN(tst_DebugText)
#include "tst_debugtext.moc"
