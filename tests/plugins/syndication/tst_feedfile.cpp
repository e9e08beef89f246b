// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedfile.h>

#include <TidelReader/documenturl.h>
#include <TidelReader/link.h>

#include <QtTest>

#include <unistd.h>

using namespace Tidel;

class TestFeedFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void strangeNames_data();
    void strangeNames();
    void failures();
    void unreadable();
    void tooLarge();

private:
    QString write(const QString &name, const QByteArray &content) const;
    QString failure(const QString &argument) const;

    QTemporaryDir m_dir;
};

void TestFeedFile::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QVERIFY(QDir::setCurrent(m_dir.path()));
}

QString TestFeedFile::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_dir.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName()
                                                                                    : QString();
}

QString TestFeedFile::failure(const QString &argument) const
{
    Outcome outcome;
    const auto document = readDocument(documentUrl(argument).toLocalFile(), 32 * 1024 * 1024, &outcome);
    return document ? QString() : outcome.reason;
}

void TestFeedFile::strangeNames_data()
{
    QTest::addColumn<QString>("name");

    for (const char *name :
         {"plain.xml", "two words.xml", "100%.xml", "a%41b.xml", "a#b?c.xml", "a:b.xml", "[a]{b}.xml",
          "a|b^c`d.xml", "a\"b<c>d.xml", "a\\b.xml", "a&b;c=d,e+f@g!h$i'(j)*~.xml", "-a.xml", "%25.xml"})
        QTest::newRow(name) << QString(name);
    QTest::newRow("non-ASCII") << QStringLiteral("\u4e80\u00e9.xml");
}

// The link of a channel is the path of the file and the key in the store.
void TestFeedFile::strangeNames()
{
    QFETCH(QString, name);
    QVERIFY(!write(name, "<a/>").isEmpty());
    const QString link = Link::encoded(documentUrl(name));
    QCOMPARE(Link::encoded(QUrl::fromUserInput(link)), link);
    QCOMPARE(Link::fromText(link).toString(), link);
    Outcome outcome;
    const auto document = readDocument(QUrl(link).toLocalFile(), 100, &outcome);
    QCOMPARE(document.value_or(outcome.reason.toUtf8()), QByteArray("<a/>"));
}

void TestFeedFile::failures()
{
    QCOMPARE(failure("missing.xml"), QString("no such file"));
    QCOMPARE(failure("."), QString("the path is a directory, not a feed"));
    QCOMPARE(failure("/dev/zero"), QString("the file is not a regular file"));
    write("empty.xml", "");
    QCOMPARE(failure("empty.xml"), QString());
    QVERIFY(QFile::link("gone.xml", m_dir.filePath("dangling.xml")));
    QCOMPARE(failure("dangling.xml"), QString("the file is a link to a file that does not exist"));
}

void TestFeedFile::unreadable()
{
    // This file can be opened, but its first byte cannot be read.
    const QString memory = failure("/proc/self/mem");
    QVERIFY2(memory.startsWith("could not read the file: "), qPrintable(memory));

    const QString path = write("locked.xml", "<a/>");
    QVERIFY(QFile::setPermissions(path, {}));
    QVERIFY(QFile::setPermissions(m_dir.path(), QFile::Permissions(0x7755)));
    // The superuser can read every file.
    const uid_t user = geteuid();
    QCOMPARE(seteuid(user == 0 ? 65534 : user), 0);
    const QString text = failure(path);
    QCOMPARE(seteuid(user), 0);
    QVERIFY2(text.startsWith("could not read the file: "), qPrintable(text));
}

void TestFeedFile::tooLarge()
{
    QFile file(m_dir.filePath("large.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(300 * 1024 * 1024));
    QCOMPARE(failure("large.xml"), QString("the file is larger than the limit of 32 MiB"));
}

QTEST_GUILESS_MAIN(TestFeedFile)
#include "tst_feedfile.moc"
