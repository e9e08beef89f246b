// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <downloadrow.h>

#include <TidelReader/downloadfolder.h>

#include <feedserver.h>
#include <soon.h>

#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTextBrowser>

using namespace Tidel;

/// Downloads of enclosures.
class TestDesktopDownloading : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void progressAndContinuation();
    void severalAtOnce();
    void failure();

private:
    /// Shows a message with a file at each of \a paths of the server.
    void showMessage(const QStringList &paths);
    void click(int enclosure) const
    {
        Q_EMIT article()->findChild<QTextBrowser *>()->anchorClicked(
            QUrl(QStringLiteral("tidel-download:%1").arg(enclosure)));
    }
    QList<DownloadRow *> rows() const { return window()->findChildren<DownloadRow *>(); }
    /// What a row says.
    static QStringList texts(const DownloadRow *row)
    {
        QStringList found;
        const QList<QLabel *> labels = row->findChildren<QLabel *>();
        for (const QLabel *label : labels)
            found.append(label->text());
        return found;
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<FeedServer> m_server;
};

void TestDesktopDownloading::init()
{
    WindowTestCase::init();
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", QFile::encodeName(m_home->path()));
    qunsetenv("XDG_CONFIG_HOME");
    QFile file(m_home->filePath("beans.mp3"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(400 * 1024, 'x'));
    m_server = std::make_unique<FeedServer>(m_home->path());
    QVERIFY(m_server->isRunning());
}

void TestDesktopDownloading::showMessage(const QStringList &paths)
{
    addChannel("news");
    addMessages({"a"}, "news");
    for (int i = 0; i < paths.size(); ++i)
        store().update(
            QString("INSERT { <%1> a mfo:Enclosure ; mfo:remoteLink <%2> ; nie:isLogicalPartOf <%3> }")
                .arg(enclosureUri(QString::number(i)), m_server->url(paths.at(i)), messageUri("a")));
    openWindow();
    COMPARE_SOON(titles().size(), 1);
    messages()->setCurrentIndex(messages()->model()->index(0, 0));
    COMPARE_SOON(shown(), messageUri("a"));
    QCOMPARE(article()->message().enclosures.size(), paths.size());
}

void TestDesktopDownloading::progressAndContinuation()
{
    showMessage({"/ranged/beans.mp3?cut=204800&hold"});
    QVERIFY(rows().isEmpty());
    click(0);
    click(0);
    QCOMPARE(rows().size(), 1);
    DownloadRow *row = rows().constFirst();
    VERIFY_SOON(row->isVisible());
    COMPARE_SOON(texts(row), QStringList({"200.0 KiB of 400.0 KiB (50%)", "beans.mp3"}));
    const auto *bar = row->findChild<QProgressBar *>();
    QCOMPARE(bar->value() * 2, bar->maximum());
    row->findChild<QPushButton *>()->click();
    VERIFY_SOON(rows().isEmpty());
    VERIFY_SOON(shownText().contains("Continue (200.00 KiB there)"));
    QCOMPARE(notice()->text(), QString());

    click(0);
    const QString path = DownloadFolder::path() + "/beans.mp3";
    COMPARE_SOON(window()->statusBar()->currentMessage(), "Downloaded " + path);
    QCOMPARE(QFile(path).size(), 400 * 1024);
    QCOMPARE(m_server->requests().filter(" 206").size(), 1);
    VERIFY_SOON(shownText().contains("Open"));
    VERIFY_SOON(rows().isEmpty());
}

void TestDesktopDownloading::severalAtOnce()
{
    showMessage({"/ranged/beans.mp3?cut=102400&hold", "/ranged/beans.mp3?cut=204800&hold"});
    click(0);
    click(1);
    QCOMPARE(rows().size(), 2);
    const auto isThere = [this](const QString &text) {
        const QList<DownloadRow *> all = rows();
        return std::any_of(all.cbegin(), all.cend(),
                           [&](const DownloadRow *row) { return texts(row).contains(text); });
    };
    VERIFY_SOON(isThere("100.0 KiB of 400.0 KiB (25%)"));
    VERIFY_SOON(isThere("200.0 KiB of 400.0 KiB (50%)"));
    rows().constFirst()->findChild<QPushButton *>()->click();
    COMPARE_SOON(rows().size(), 1);
}

void TestDesktopDownloading::failure()
{
    showMessage({"/status/404"});
    click(0);
    VERIFY_SOON(notice()->text().startsWith("Could not download the file: "));
    VERIFY_SOON(rows().isEmpty());
    QVERIFY(!shownText().contains("Continue"));
}

QTEST_MAIN(TestDesktopDownloading)
#include "tst_desktopdownloading.moc"
