// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/folders.h>
#include <TidelReader/opml.h>

#include <QDir>
#include <QtTest>

using namespace Tidel;

namespace {

const QDir samples(TIDEL_TEST_DATA "/opml");

QByteArray bytesOf(const QString &name)
{
    QFile file(samples.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing: " + name.toUtf8());
}

/// A line for each feed: folder, title, address, website; then the problems, or the error alone.
QString described(const Result<Opml::Content> &content)
{
    if (!content)
        return content.error().text() + '\n';
    QStringList lines;
    for (const Subscription &subscription : content->subscriptions)
        lines.append(QStringList{subscription.folder.join('/'), subscription.title,
                                 subscription.link.toString(), subscription.website.toString()}
                         .join(" | ")
                         .remove(QRegularExpression(" $")));
    return (lines + content->problems).join('\n') + '\n';
}

QByteArray inDocument(const QByteArray &body)
{
    return "<opml version='2.0'><body>" + body + "</body></opml>";
}

QByteArray feeds(int count)
{
    QByteArray body;
    for (int i = 0; i < count; ++i)
        body += "<outline xmlUrl='https://example.org/" + QByteArray::number(i) + "'/>";
    return inDocument(body);
}

QByteArray folders(int count)
{
    const QByteArray feed = "<outline text='a' xmlUrl='https://example.org/a'/>";
    return inDocument(QByteArray("<outline text='f'>").repeated(count) + feed
                      + QByteArray("</outline>").repeated(count));
}

QByteArray attributes(int count)
{
    QByteArray element = "<outline ";
    for (int i = 0; i < count; ++i)
        element += 'a' + QByteArray::number(i) + (i % 2 == 0 ? " = \"\" " : "=\n'' ");
    return inDocument("\n" + element + "/>");
}

QByteArray sized(int size)
{
    const QByteArray document = feeds(1);
    return document + QByteArray(size - document.size(), ' ');
}

} // namespace

class TestOpml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samples_data();
    void samples();
    void limits_data();
    void limits();
    void longTexts();
    void longError();
    void write();
    void roundTrip();
};

void TestOpml::samples_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = ::samples.entryList({"*.opml"});
    QVERIFY(names.size() > 10);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void TestOpml::samples()
{
    QFETCH(QString, name);
    const QString expected = QString::fromUtf8(bytesOf(QString(name).replace(".opml", ".expected")));
    QCOMPARE(described(Opml::read(bytesOf(name))), expected);
}

void TestOpml::limits_data()
{
    QTest::addColumn<QByteArray>("most");
    QTest::addColumn<QByteArray>("tooMuch");
    QTest::addColumn<QString>("reason");
    QTest::newRow("feeds") << feeds(10000) << feeds(10001) << "line 1: there are more than 10000 feeds";
    QTest::newRow("depth") << folders(20) << folders(21) << "line 1: folders are nested more than 20 deep";
    QTest::newRow("great depth") << folders(20) << folders(100000)
                                 << "line 1: folders are nested more than 20 deep";
    QTest::newRow("attributes") << attributes(100) << attributes(101)
                                << "line 52: an element has more than 100 attributes";
    QTest::newRow("many attributes") << attributes(100) << attributes(500000)
                                     << "line 52: an element has more than 100 attributes";
    QTest::newRow("size") << sized(10 * 1024 * 1024) << sized(10 * 1024 * 1024 + 1)
                          << "it is larger than 10 MiB";
    const QByteArray bad = "<outline xmlUrl='x'/>";
    QTest::newRow("problems") << inDocument(bad.repeated(100)) << inDocument(bad.repeated(101))
                              << "line 1: more than 100 feeds have no usable address";
}

void TestOpml::limits()
{
    QFETCH(QByteArray, most);
    QFETCH(QByteArray, tooMuch);
    const auto content = Opml::read(most);
    QVERIFY2(content, content ? "" : qPrintable(content.error().text()));
    const auto refused = Opml::read(tooMuch);
    QVERIFY(!refused);
    QCOMPARE(refused.error().kind(), Error::FileFailed);
    QTEST(refused.error().reason(), "reason");
}

void TestOpml::longTexts()
{
    const QByteArray longText = QByteArray("x").repeated(1000 * 1000);
    const auto content = Opml::read(inDocument("<outline text='" + longText + "'><outline text='" + longText
                                               + "' xmlUrl='https://example.org/'/></outline>"));
    QVERIFY(content);
    const Subscription &subscription = content->subscriptions.constFirst();
    QCOMPARE(subscription.title, QString(1000, 'x'));
    QCOMPARE(subscription.folder, QStringList(QString(200, 'x')));
}

void TestOpml::longError()
{
    const QByteArray longName = QByteArray("x").repeated(3000);
    const auto content = Opml::read(inDocument("<outline text='&" + longName + ";'/>"));
    QVERIFY(!content);
    QVERIFY(content.error().reason().size() < 250);
}

void TestOpml::write()
{
    const QString url = "https://example.org/";
    const auto feed = [&](const QString &title, const QStringList &folder, const QString &website = {}) {
        return Subscription{Link::fromText(url + title.left(1)), title, Link::fromText(website), folder};
    };
    const QList<Subscription> list = {feed("a\t\"<&>\" \n\x01 é😀", {}, url + "?a&b"), feed("b", {"F"}),
                                      feed("c", {"F", "G", "H"}), feed("d", {"F", "I"}), feed("e", {"J"})};
    const QString expected = R"(<?xml version="1.0" encoding="UTF-8"?>
<opml version="2.0">
  <head>
    <title>Subscriptions</title>
  </head>
  <body>
    <outline type="rss" text="a &quot;&lt;&amp;&gt;&quot; é😀" title="a &quot;&lt;&amp;&gt;&quot; é😀" xmlUrl="https://example.org/a" htmlUrl="https://example.org/?a&amp;b"/>
    <outline text="F" title="F">
      <outline type="rss" text="b" title="b" xmlUrl="https://example.org/b"/>
      <outline text="G" title="G">
        <outline text="H" title="H">
          <outline type="rss" text="c" title="c" xmlUrl="https://example.org/c"/>
        </outline>
      </outline>
      <outline text="I" title="I">
        <outline type="rss" text="d" title="d" xmlUrl="https://example.org/d"/>
      </outline>
    </outline>
    <outline text="J" title="J">
      <outline type="rss" text="e" title="e" xmlUrl="https://example.org/e"/>
    </outline>
  </body>
</opml>
)";
    QCOMPARE(QString::fromUtf8(Opml::write(list)), expected);
}

void TestOpml::roundTrip()
{
    for (const char *name : {"nested.opml", "names.opml", "version1.1-categories.opml", "no-feeds.opml"}) {
        auto content = Opml::read(bytesOf(name));
        QVERIFY(content);
        content->problems.clear();
        const auto again = Opml::read(Opml::write(content->subscriptions));
        QCOMPARE(described(again), described(content));
    }
}

QTEST_GUILESS_MAIN(TestOpml)
#include "tst_opml.moc"
