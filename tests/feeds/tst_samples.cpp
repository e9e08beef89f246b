// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedsamples.h"

#include <QtTest>

using namespace Tidel;

Q_DECLARE_METATYPE(FeedSample)

namespace {

QString pathOf(const QString &name) { return QStringLiteral(TIDEL_TEST_DATA "/") + name; }

QString expectedTextOf(const QString &name)
{
    QFile file(pathOf(name) + QStringLiteral(".expected"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Returns true if \a found is \a expected. An expected line that ends in "..." expects a line that begins
/// so: the rest are words of a library.
bool matches(const QString &expected, const QString &found)
{
    const QStringList expectedLines = expected.split('\n');
    const QStringList foundLines = found.split('\n');
    const auto isSame = [](const QString &expectedLine, const QString &line) {
        return expectedLine.endsWith(QLatin1String("...")) ? line.startsWith(expectedLine.chopped(3))
                                                           : line == expectedLine;
    };
    return std::equal(expectedLines.begin(), expectedLines.end(), foundLines.begin(), foundLines.end(),
                      isSame);
}

/// Writes \a found to a file, because Qt Test shortens long texts, and returns what to tell.
QByteArray difference(const QString &name, const QString &expected, const QString &found)
{
    QFile file(QFileInfo(name).fileName() + QStringLiteral(".found"));
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(found.toUtf8()) >= 0;
    const QString where =
        isWritten ? QFileInfo(file).absoluteFilePath() : QStringLiteral("not written: ") + file.errorString();
    const QString what = expected.isEmpty() ? QStringLiteral("there is no expectation")
                                            : QStringLiteral("expected was:\n%1").arg(expected);
    return QStringLiteral("%1\nfound was (%2):\n%3").arg(what, where, found).toUtf8();
}

} // namespace

class TestSamples : public QObject
{
    Q_OBJECT

private slots:
    void read_data();
    void read();
    void expectationsHaveSamples();
    void expectationsAreNotTheSame_data();
    void expectationsAreNotTheSame();
};

void TestSamples::read_data()
{
    QTest::addColumn<FeedSample>("sample");
    const QVector<FeedSample> samples = samplesIn(QStringLiteral("documents"));
    QVERIFY(!samples.isEmpty());
    for (const FeedSample &sample : samples)
        QTest::newRow(qPrintable(sample.name)) << sample;
}

void TestSamples::read()
{
    QFETCH(FeedSample, sample);
    const QString expected = expectedTextOf(sample.name);
    const QString found = describe(readFeed(sample.document, sample.charset));
    QVERIFY2(matches(expected, found), difference(sample.name, expected, found).constData());
}

void TestSamples::expectationsHaveSamples()
{
    const QStringList files = QDir(pathOf(QStringLiteral("documents"))).entryList(QDir::Files);
    for (const QString &file : files) {
        if (file.endsWith(QLatin1String(".expected")) || file.endsWith(QLatin1String(".charset")))
            QVERIFY2(files.contains(file.section('.', 0, -2)), qPrintable(file));
    }
}

void TestSamples::expectationsAreNotTheSame_data()
{
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("found");
    QTest::newRow("another value") << "title: a\n"
                                   << "title: b\n";
    QTest::newRow("a line more") << "title: a\n"
                                 << "title: a\ntext: b\n";
    QTest::newRow("a line less") << "title: a\ntext: b\n"
                                 << "title: a\n";
    QTest::newRow("another beginning") << "note: line 1, ...\n"
                                       << "note: line 2, words\n";
    QTest::newRow("nothing") << ""
                             << "title: a\n";
}

// The comparison itself must be able to fail.
void TestSamples::expectationsAreNotTheSame()
{
    QFETCH(QString, expected);
    QFETCH(QString, found);
    QVERIFY(!matches(expected, found));
    QVERIFY(matches(found, found));
}

QTEST_GUILESS_MAIN(TestSamples)
#include "tst_samples.moc"
