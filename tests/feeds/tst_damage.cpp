// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedsamples.h"

#include <feedparser.h>
#include <memorylimit.h>

#include <QRandomGenerator>
#include <QtTest>

#include <unistd.h>

using namespace Tidel;

Q_DECLARE_METATYPE(FeedSample)

namespace {

constexpr quint32 rounds = 3000;
constexpr int maximumDamages = 4; // At once.
constexpr int maximumSizeToRepeat = 100000;
constexpr rlim_t maximumMemory = 256 * 1024 * 1024;
constexpr unsigned maximumSeconds = 20; // A reading takes milliseconds, but the machine may be busy.

/// A piece of a document.
struct Piece
{
    int from;
    int length;
};

/// A piece of \a document anywhere, mostly a small one.
Piece pieceOf(const QByteArray &document, QRandomGenerator &random)
{
    const int size = int(document.size());
    const int from = random.bounded(size + 1);
    const int most = random.bounded(4) == 0 ? size : qMin(size, 40);
    return {from, qMin(size - from, random.bounded(most + 1))};
}

QByteArray bytesOf(const QByteArray &document, const Piece &piece)
{
    return document.mid(piece.from, piece.length);
}

using Damage = void (*)(QByteArray &, QRandomGenerator &);

void cut(QByteArray &document, QRandomGenerator &random)
{
    document.truncate(random.bounded(int(document.size()) + 1));
}

void changeBytes(QByteArray &document, QRandomGenerator &random)
{
    for (int count = random.bounded(8); count > 0 && !document.isEmpty(); --count)
        document[random.bounded(int(document.size()))] = char(random.bounded(256));
}

// These bytes mean more to a reader of feeds than others do.
void insertMark(QByteArray &document, QRandomGenerator &random)
{
    static const QByteArrayList marks{
        "<",    ">", "&", "\"", "]]>", "<![CDATA[", "<!--",           "-->",           "<?",       "</",
        "&#0;", "{", "}", "[",  "\\u", "\xff\xfe",  QByteArray(1, 0), "<!DOCTYPE a [", "xmlns:a='"};
    document.insert(random.bounded(int(document.size()) + 1), marks.at(random.bounded(int(marks.size()))));
}

void repeatPiece(QByteArray &document, QRandomGenerator &random)
{
    const Piece piece = pieceOf(document, random);
    if (document.size() <= maximumSizeToRepeat)
        document.insert(piece.from, bytesOf(document, piece).repeated(random.bounded(1, 20)));
}

void removePiece(QByteArray &document, QRandomGenerator &random)
{
    const Piece piece = pieceOf(document, random);
    document.remove(piece.from, piece.length);
}

void movePiece(QByteArray &document, QRandomGenerator &random)
{
    const Piece piece = pieceOf(document, random);
    const QByteArray bytes = bytesOf(document, piece);
    document.remove(piece.from, piece.length);
    document.insert(random.bounded(int(document.size()) + 1), bytes);
}

QByteArray damaged(QByteArray document, QRandomGenerator &random)
{
    static constexpr Damage damages[] = {cut, changeBytes, insertMark, repeatPiece, removePiece, movePiece};
    for (int count = random.bounded(1, maximumDamages + 1); count > 0; --count)
        damages[random.bounded(int(std::size(damages)))](document, random);
    return document;
}

QStringList linksOf(const FeedDocument &document)
{
    const auto feed = ParsedFeed::parse(document, document.address);
    QStringList links;
    if (!feed)
        return links;
    for (const ClaimedItem &claimed : feed->claimedItems()) {
        links += claimed.link.toString();
        feed->message(claimed);
    }
    return links;
}

QVector<FeedSample> allSamples()
{
    return samplesIn(QStringLiteral("documents")) + samplesIn(QStringLiteral("feeds"))
        + samplesIn(QStringLiteral("broken"));
}

} // namespace

class TestDamage : public QObject
{
    Q_OBJECT

private slots:
    void read_data();
    void read();
};

void TestDamage::read_data()
{
    QTest::addColumn<FeedSample>("sample");
    QTest::addColumn<quint32>("seed");
    const QVector<FeedSample> samples = allSamples();
    QVERIFY(!samples.isEmpty());
    for (quint32 seed = 0; seed < rounds; ++seed) {
        const FeedSample &sample = samples.at(int(seed % quint32(samples.size())));
        QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(sample.name).arg(seed))) << sample << seed;
    }
}

// The name of the row tells which document ended the program: the seed gives the same one again.
void TestDamage::read()
{
    QFETCH(FeedSample, sample);
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QByteArray document = damaged(sample.document, random);

    alarm(maximumSeconds);
    const MemoryLimit limit(maximumMemory);
    QVERIFY(limit.holds());
    QCOMPARE(describe(readFeed(document, sample.charset)), describe(readFeed(document, sample.charset)));
    const FeedDocument received{document, QUrl("https://example.org/feed"), sample.charset, {}, {}};
    const QStringList links = linksOf(received);
    QCOMPARE(linksOf(received), links);
    QCOMPARE(QSet<QString>(links.begin(), links.end()).size(), links.size());
    alarm(0);
}

QTEST_GUILESS_MAIN(TestDamage)
#include "tst_damage.moc"
