// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <loginbox.h>
#include <subscribedialog.h>
#include <subscriptionfiles.h>

#include <TidelReader/channels.h>
#include <TidelReader/folders.h>
#include <TidelReader/logins.h>

#include <feedserver.h>
#include <soon.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>

using namespace Tidel;

namespace {

QString sampleFeed(const QString &name) { return QStringLiteral(TIDEL_TEST_DATA "/feeds/") + name; }

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

class TestDesktopSubscribing : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void address();
    void page();
    void failure();
    void passwordInTheAddress();
    void passwordThatIsAskedFor();
    void closedTooEarly();
    void drop();
    void importAndExport();
    void importWithoutFile();

private:
    SubscribeDialog *openDialog();
    static bool says(const SubscribeDialog *subscribe, const QString &words)
    {
        const QList<QLabel *> labels = subscribe->findChildren<QLabel *>();
        return std::any_of(labels.cbegin(), labels.cend(),
                           [&](const QLabel *label) { return label->text().contains(words); });
    }
    static void accept(SubscribeDialog *subscribe)
    {
        subscribe->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    }
};

SubscribeDialog *TestDesktopSubscribing::openDialog()
{
    press(QKeySequence("Ctrl+N"));
    return dialog<SubscribeDialog>();
}

/// The new channel is in its folder and becomes the current one.
void TestDesktopSubscribing::address()
{
    openWindow();
    SubscribeDialog *subscribe = openDialog();
    QVERIFY(subscribe);
    const auto *ok = subscribe->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
    QVERIFY(!ok->isEnabled());
    subscribe->findChild<QLineEdit *>()->setText(sampleFeed("garden-notes.atom"));
    subscribe->findChild<QComboBox *>()->setEditText("Home/Garden");
    QVERIFY(ok->isEnabled());
    accept(subscribe);
    VERIFY_SOON(!dialog<SubscribeDialog>());
    COMPARE_SOON(channelTitles().mid(3), QStringList({"Home", " Garden", "  Garden Notes"}));
    COMPARE_SOON(channels()->title(), QString("Garden Notes"));
    VERIFY_SOON(!titles().isEmpty());
}

void TestDesktopSubscribing::page()
{
    QTemporaryDir folder;
    QVERIFY(QFile::copy(sampleFeed("garden-notes.atom"), folder.filePath("garden.atom")));
    QVERIFY(QFile::copy(sampleFeed("county-news.xml"), folder.filePath("county.xml")));
    write(folder.filePath("page.html"),
          "<html><head><link rel='alternate' type='application/atom+xml' title='Garden' href='garden.atom'>"
          "<link rel='alternate' type='application/rss+xml' title='County' href='county.xml'></head></html>");
    FeedServer server(folder.path());
    QVERIFY(server.isRunning());
    openWindow();
    SubscribeDialog *subscribe = openDialog();
    auto *feeds = subscribe->findChild<QListWidget *>();
    subscribe->setAddress(server.url("/files/page.html"));
    accept(subscribe);
    VERIFY_SOON(feeds->isVisible());
    QCOMPARE(feeds->count(), 2);
    QCOMPARE(feeds->item(1)->text(), QString("County"));
    QCOMPARE(Channels(reader()).all()->size(), 0);
    feeds->setCurrentRow(1);
    accept(subscribe);
    VERIFY_SOON(!dialog<SubscribeDialog>());
    const QList<FeedChannel> stored = *Channels(reader()).all();
    QCOMPARE(stored.size(), 1);
    QCOMPARE(stored.constFirst().link(), server.url("/files/county.xml"));
}

/// The dialog says why it could not subscribe, and stays for another address.
void TestDesktopSubscribing::failure()
{
    openWindow();
    SubscribeDialog *subscribe = openDialog();
    subscribe->setAddress("/nowhere/feed.xml");
    accept(subscribe);
    VERIFY_SOON(says(subscribe, "Could not subscribe: "));
    QVERIFY(subscribe->isVisible());
    QVERIFY(subscribe->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->isEnabled());
}

/// A password in the address is kept apart, and is not to be seen any more.
void TestDesktopSubscribing::passwordInTheAddress()
{
    FeedServer server(TIDEL_TEST_DATA "/feeds");
    QUrl address(server.url("/locked"));
    address.setUserName("Ann");
    openWindow();
    SubscribeDialog *subscribe = openDialog();
    const auto *line = subscribe->findChild<QLineEdit *>();
    QUrl secret = address;
    secret.setPassword("open sesame");
    subscribe->setAddress(secret.toString(QUrl::FullyEncoded));
    accept(subscribe);
    COMPARE_SOON(line->text(), address.toString());
    VERIFY_SOON(!dialog<SubscribeDialog>());
    const QList<FeedChannel> stored = *Channels(reader()).all();
    QCOMPARE(stored.size(), 1);
    QCOMPARE(stored.constFirst().link(), address.toString());
    QCOMPARE(Logins::of(address).password, QString("open sesame"));
    COMPARE_SOON(channels()->title(), QString("Locked"));
}

void TestDesktopSubscribing::passwordThatIsAskedFor()
{
    FeedServer server(TIDEL_TEST_DATA "/feeds");
    openWindow();
    SubscribeDialog *subscribe = openDialog();
    const auto *login = subscribe->findChild<LoginBox *>();
    QVERIFY(!login->isVisible());
    subscribe->setAddress(server.url("/locked"));
    accept(subscribe);
    VERIFY_SOON(login->isVisible());
    QVERIFY(says(subscribe, "This server asks who you are."));
    QVERIFY(says(subscribe, Logins::path()));
    const QList<QLabel *> labels = subscribe->findChildren<QLabel *>();
    for (const QLabel *label : labels)
        QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
    const QList<QLineEdit *> lines = login->findChildren<QLineEdit *>();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(1)->echoMode(), QLineEdit::Password);
    lines.at(0)->setText("Ann");
    lines.at(1)->setText("wrong");
    accept(subscribe);
    VERIFY_SOON(says(subscribe, "The server refuses this user or password."));
    QCOMPARE(lines.at(0)->text(), QString("Ann"));
    QCOMPARE(lines.at(1)->text(), QString());
    QUrl address(server.url("/locked"));
    address.setUserName("Ann");
    COMPARE_SOON(Logins::of(address).password, QString());
    lines.at(1)->setText("open sesame");
    accept(subscribe);
    VERIFY_SOON(!dialog<SubscribeDialog>());
    QCOMPARE(Channels(reader()).all()->constFirst().link(), address.toString());
    QCOMPARE(Logins::of(address).password, QString("open sesame"));
}

/// Whether the password is right is not known.
void TestDesktopSubscribing::closedTooEarly()
{
    FeedServer server(TIDEL_TEST_DATA "/feeds");
    QUrl address(server.url("/silent"));
    address.setUserName("Ann");
    openWindow();
    SubscribeDialog *subscribe = openDialog();
    QUrl secret = address;
    secret.setPassword("open sesame");
    subscribe->setAddress(secret.toString(QUrl::FullyEncoded));
    accept(subscribe);
    COMPARE_SOON(Logins::of(address).password, QString("open sesame"));
    subscribe->reject();
    COMPARE_SOON(Logins::of(address).password, QString());
    QCOMPARE(Channels(reader()).all()->size(), 0);
}

void TestDesktopSubscribing::drop()
{
    openWindow();
    QMimeData data;
    data.setUrls({QUrl("https://example.org/feed.xml")});
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window(), &drop);
    QVERIFY(dialog<SubscribeDialog>());
    QCOMPARE(dialog<SubscribeDialog>()->findChild<QLineEdit *>()->text(),
             QString("https://example.org/feed.xml"));
}

void TestDesktopSubscribing::importAndExport()
{
    QTemporaryDir folder;
    write(folder.filePath("in.opml"),
          "<opml version='2.0'><body><outline text='Arts'><outline text='Music' type='rss' "
          "xmlUrl='https://example.org/music.xml'/></outline><outline text='News' type='rss' "
          "xmlUrl='https://example.org/news.xml'/><outline text='x' type='rss' "
          "xmlUrl='javascript:1'/></body></opml>");
    Archive own;
    const auto imported = importChannels(&own, folder.filePath("in.opml"));
    VERIFY_SOON(imported.isFinished());
    VERIFY_OK(imported.result());
    QCOMPARE(imported.result()->toString(), QString("2 new channel(s); 1 could not be read"));
    QCOMPARE(imported.result()->uris.size(), 2);
    const auto exported = exportChannels(&own, folder.filePath("out.opml"));
    VERIFY_SOON(exported.isFinished());
    VERIFY_OK(exported.result());
    QCOMPARE(*exported.result(), 2);
    const auto again = importChannels(&own, folder.filePath("out.opml"));
    VERIFY_SOON(again.isFinished());
    QCOMPARE(again.result()->toString(), QString("0 new channel(s); 2 were there before"));
}

void TestDesktopSubscribing::importWithoutFile()
{
    Archive own;
    const auto imported = importChannels(&own, "/nowhere/list.opml");
    VERIFY_SOON(imported.isFinished());
    VERIFY_ERROR(imported.result(), Error::FileFailed,
                 "could not read /nowhere/list.opml: No such file or directory");
    const auto exported = exportChannels(&own, "/nowhere/list.opml");
    VERIFY_SOON(exported.isFinished());
    QVERIFY(errorText(exported.result()).startsWith("could not write /nowhere/list.opml: "));
}

QTEST_MAIN(TestDesktopSubscribing)
#include "tst_desktopsubscribing.moc"
