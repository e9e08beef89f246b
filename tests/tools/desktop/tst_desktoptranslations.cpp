// SPDX-License-Identifier: LGPL-2.1-or-later
#include <installtranslations.h>

#include <QtTest>

using namespace Tidel;

class TestDesktopTranslations : public QObject
{
    Q_OBJECT

private slots:
    void languages_data();
    void languages();
};

void TestDesktopTranslations::languages_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("many");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("ofLibrary");

    QTest::newRow("none") << "C"
                          << "1 message(s)"
                          << "1000 message(s)"
                          << "Comments"
                          << "Favorites";
    QTest::newRow("English") << "en_GB"
                             << "1 message"
                             << "1000 messages"
                             << "Comments"
                             << "Favorites";
    QTest::newRow("German") << "de_AT"
                            << "1 Nachricht"
                            << "1000 Nachrichten"
                            << "Kommentare"
                            << "Favoriten";
}

void TestDesktopTranslations::languages()
{
    QFETCH(QString, locale);
    QFETCH(QString, one);
    QFETCH(QString, many);
    QFETCH(QString, plain);
    QFETCH(QString, ofLibrary);
    int argc = 0;
    QCoreApplication application(argc, nullptr);
    installTranslations(application, QLocale(locale));
    const auto translated = [](int count) {
        return QCoreApplication::translate("Tidel::ChannelEditing", "%n message(s)", nullptr, count);
    };
    QCOMPARE(translated(1), one);
    QCOMPARE(translated(1000), many);
    QCOMPARE(QCoreApplication::translate("Tidel::ArticleHtml", "Comments"), plain);
    QCOMPARE(QCoreApplication::translate("Tidel::ChannelModel", "Favorites"), ofLibrary);
}

QTEST_APPLESS_MAIN(TestDesktopTranslations)
#include "tst_desktoptranslations.moc"
