// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/worddiff.h>

#include <QRandomGenerator>
#include <QtTest>

using namespace Tidel;

class TestWordDiff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pieces_data();
    void pieces();
    void randomTexts();
    void longTexts();
};

namespace {

/// Removed words in [- -], added ones in {+ +}.
QString shown(const QVector<DiffPiece> &pieces)
{
    static const char *const forms[] = {"%1", "[-%1-]", "{+%1+}"};
    QString text;
    for (const DiffPiece &piece : pieces)
        text += QString(forms[piece.kind]).arg(piece.text);
    return text;
}

QString without(DiffPiece::Kind kind, const QVector<DiffPiece> &pieces)
{
    QString text;
    for (const DiffPiece &piece : pieces)
        text += piece.kind == kind ? QString() : piece.text;
    return text;
}

} // namespace

void TestWordDiff::pieces_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty") << ""
                           << ""
                           << "";
    QTest::newRow("same") << "a b c"
                          << "a b c"
                          << "a b c";
    QTest::newRow("all added") << ""
                               << "a b"
                               << "{+a b+}";
    QTest::newRow("all removed") << "a b"
                                 << ""
                                 << "[-a b-]";
    QTest::newRow("all replaced") << "a b"
                                  << "c"
                                  << "[-a b-]{+c+}";
    QTest::newRow("one word") << "the old bean climbs"
                              << "the new bean climbs"
                              << "the [-old -]{+new +}bean climbs";
    QTest::newRow("at the beginning") << "b c"
                                      << "a b c"
                                      << "{+a +}b c";
    QTest::newRow("at the end") << "a b"
                                << "a b c"
                                << "a [-b-]{+b c+}";
    QTest::newRow("two places") << "one a two b three"
                                << "one two b four three"
                                << "one [-a -]two b {+four +}three";
    QTest::newRow("moved") << "a b c d"
                           << "c d a b"
                           << "[-a b -]c [-d-]{+d a b+}";
    QTest::newRow("lines") << "a\nb\nc"
                           << "a\nx\nc"
                           << "a\n[-b-]{+x+}\nc";
    QTest::newRow("repeated") << "a a a a "
                              << "a a "
                              << "a a [-a a -]";
}

void TestWordDiff::pieces()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, expected);
    QCOMPARE(shown(wordDiff(before, after)), expected);
}

void TestWordDiff::randomTexts()
{
    QRandomGenerator random(1);
    const auto text = [&random] {
        QString words;
        for (int i = random.bounded(30); i > 0; --i)
            words += QChar('a' + random.bounded(4)) + QString(random.bounded(5) == 0 ? "\n" : " ");
        return words;
    };
    for (int i = 0; i < 2000; ++i) {
        const QString before = text();
        const QString after = text();
        const QVector<DiffPiece> pieces = wordDiff(before, after);
        QCOMPARE(without(DiffPiece::Added, pieces), before);
        QCOMPARE(without(DiffPiece::Removed, pieces), after);
        for (int k = 1; k < pieces.size(); ++k)
            QVERIFY(pieces.at(k).kind != pieces.at(k - 1).kind);
    }
}

// Half a million different words do not take half a million times half a million steps.
void TestWordDiff::longTexts()
{
    QString before = "begin ";
    QString after = "begin ";
    for (int i = 0; i < 500000; ++i) {
        before += 'a' + QString::number(i) + ' ';
        after += 'b' + QString::number(i) + ' ';
    }
    const QVector<DiffPiece> pieces = wordDiff(before + "end", after + "end");
    QCOMPARE(pieces.size(), 4);
    QCOMPARE(pieces.first().text, QString("begin "));
    QCOMPARE(pieces.last().text, QString("end"));
}

QTEST_GUILESS_MAIN(TestWordDiff)
#include "tst_worddiff.moc"
