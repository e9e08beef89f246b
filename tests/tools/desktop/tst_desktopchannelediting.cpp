// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <propertiesdialog.h>
#include <soon.h>

#include <TidelReader/channels.h>
#include <TidelReader/feeds.h>
#include <TidelReader/folders.h>
#include <TidelReader/readstate.h>
#include <TidelReader/retentionrules.h>

#include <QCheckBox>
#include <QComboBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>

using namespace Tidel;

/// What a user changes of channels.
class TestDesktopChannelEditing : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void rename();
    void dragIntoFolder();
    void moveByName();
    void unsubscribeAndUndo();
    void unsubscribeAndClose();
    void unsubscribeButKeepFavorites();
    void noQuestionNoLoss();
    void nothingIsLostWithoutClosing();
    void properties();
    void actionsNeedAChannel();

private:
    void select(const QString &channel);
    bool dropNewsOn(const QModelIndex &target);
    QMessageBox *askToUnsubscribe();
    void answer(QMessageBox *box, QMessageBox::ButtonRole role);
    QStringList storedChannels() const;
    QString folderOf(const QString &channel) const
    {
        return Folders(reader()).all()->value(channelUri(channel));
    }
};

void TestDesktopChannelEditing::init()
{
    WindowTestCase::init();
    addChannel("news");
    addChannel("music");
    addMessages({"a", "b"}, "news", 1);
    addMessages({"d"}, "music", 10);
    VERIFY_OK(Folders(reader()).move(channelUri("music"), "Arts"));
    openWindow();
    COMPARE_SOON(channelTitles(),
                 QStringList({"All messages", "Unread", "Favorites", "Arts", " music", "news"}));
}

void TestDesktopChannelEditing::select(const QString &channel)
{
    channels()->select(channelUri(channel));
    QCOMPARE(channels()->channel(), channelUri(channel));
    channels()->setFocus();
}

QStringList TestDesktopChannelEditing::storedChannels() const
{
    QStringList titles;
    const Result<QList<FeedChannel>> stored = Channels(reader()).all();
    for (const FeedChannel &channel : *stored)
        titles.append(channel.title());
    return titles;
}

void TestDesktopChannelEditing::rename()
{
    select("news");
    press(Qt::Key_F2);
    auto *editor = channels()->findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), QString("news"));
    editor->setText("The  Courier");
    QTest::keyClick(editor, Qt::Key_Return);
    COMPARE_SOON(storedChannels(), QStringList({"music", "The Courier"}));
    VERIFY_SOON(channelTitles().contains("The Courier"));
    QCOMPARE(channels()->channel(), channelUri("news"));
}

/// Drags the channel "news" over \a target, or over the free space below all rows, and lets go of it. Returns
/// true if it may be dropped there; otherwise returns false.
bool TestDesktopChannelEditing::dropNewsOn(const QModelIndex &target)
{
    const QAbstractItemModel *model = channels()->model();
    const std::unique_ptr<QMimeData> data(model->mimeData({channels()->currentIndex()}));
    const QPoint place = target.isValid() ? channels()->visualRect(target).center()
                                          : channels()->viewport()->rect().bottomLeft() + QPoint(5, -5);
    const Qt::DropActions actions = model->supportedDragActions();
    QDragEnterEvent enter(place, actions, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(channels()->viewport(), &enter);
    QDragMoveEvent move(place, actions, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(channels()->viewport(), &move);
    QDropEvent drop(place, actions, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(channels()->viewport(), &drop);
    return enter.isAccepted() && move.isAccepted();
}

void TestDesktopChannelEditing::dragIntoFolder()
{
    const QAbstractItemModel *model = channels()->model();
    const QModelIndex arts = model->index(3, 0);
    QVERIFY(!(model->flags(arts) & Qt::ItemIsDragEnabled));
    select("news");
    QVERIFY(dropNewsOn(arts));
    COMPARE_SOON(folderOf("news"), QString("Arts"));
    COMPARE_SOON(channelTitles().mid(3), QStringList({"Arts", " music", " news"}));
    QVERIFY(dropNewsOn({}));
    COMPARE_SOON(folderOf("news"), QString());
    COMPARE_SOON(channelTitles().mid(3), QStringList({"Arts", " music", "news"}));
    // A channel stands for the folder that it is in.
    QVERIFY(dropNewsOn(model->index(0, 0, arts)));
    COMPARE_SOON(folderOf("news"), QString("Arts"));
}

void TestDesktopChannelEditing::moveByName()
{
    select("news");
    press(QKeySequence("Ctrl+M"));
    auto *input = dialog<QInputDialog>();
    QVERIFY(input);
    QCOMPARE(input->comboBoxItems(), QStringList({"", "Arts"}));
    input->setTextValue(" Daily / World");
    input->accept();
    COMPARE_SOON(folderOf("news"), QString("Daily/World"));
    COMPARE_SOON(channelTitles().mid(3), QStringList({"Arts", " music", "Daily", " World", "  news"}));
}

QMessageBox *TestDesktopChannelEditing::askToUnsubscribe()
{
    press(QKeySequence("Ctrl+Del"));
    [&] { VERIFY_SOON(dialog<QMessageBox>()); }();
    return dialog<QMessageBox>();
}

void TestDesktopChannelEditing::answer(QMessageBox *box, QMessageBox::ButtonRole role)
{
    QVERIFY(box);
    const QList<QAbstractButton *> buttons = box->buttons();
    for (QAbstractButton *button : buttons) {
        if (box->buttonRole(button) == role) {
            button->click();
            return;
        }
    }
    QFAIL("There is no such button.");
}

void TestDesktopChannelEditing::unsubscribeAndUndo()
{
    select("news");
    QMessageBox *box = askToUnsubscribe();
    QVERIFY(box && box->text().contains("news"));
    QVERIFY(box->informativeText().contains("2 message"));
    answer(box, QMessageBox::AcceptRole);
    QVERIFY(channels()->isRowHidden(4, {}));
    QVERIFY(notice()->text().contains("news"));
    QCOMPARE(channels()->channel(), channelUri("music"));
    COMPARE_SOON(titles(), QStringList("Title of d"));
    press(QKeySequence::Undo);
    QVERIFY(!channels()->isRowHidden(4, {}));
    QCOMPARE(notice()->text(), QString());
    QCOMPARE(channels()->channel(), channelUri("news"));
    COMPARE_SOON(titles(), QStringList({"Title of b", "Title of a"}));
    closeWindow();
    QCOMPARE(storedChannels(), QStringList({"music", "news"}));
}

void TestDesktopChannelEditing::unsubscribeAndClose()
{
    select("news");
    answer(askToUnsubscribe(), QMessageBox::AcceptRole);
    QCOMPARE(storedChannels(), QStringList({"music", "news"}));
    closeWindow();
    QCOMPARE(storedChannels(), QStringList("music"));
    QCOMPARE(messagesIn("news"), QStringList());
}

void TestDesktopChannelEditing::unsubscribeButKeepFavorites()
{
    addFavorite("a");
    select("news");
    QMessageBox *box = askToUnsubscribe();
    QVERIFY(box && box->checkBox());
    answer(box, QMessageBox::AcceptRole);
    closeWindow();
    QCOMPARE(storedChannels(), QStringList("music"));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 2);
}

void TestDesktopChannelEditing::noQuestionNoLoss()
{
    select("news");
    answer(askToUnsubscribe(), QMessageBox::RejectRole);
    closeWindow();
    QCOMPARE(storedChannels(), QStringList({"music", "news"}));
}

/// Who kills the program keeps the channel.
void TestDesktopChannelEditing::nothingIsLostWithoutClosing()
{
    select("news");
    answer(askToUnsubscribe(), QMessageBox::AcceptRole);
    openWindow();
    VERIFY_SOON(channelTitles().contains("news"));
    QVERIFY(!channels()->isRowHidden(4, {}));
}

void TestDesktopChannelEditing::properties()
{
    select("news");
    press(QKeySequence("Alt+Return"));
    VERIFY_SOON(dialog<PropertiesDialog>());
    auto *properties = dialog<PropertiesDialog>();
    QVERIFY(properties->windowTitle().contains("news"));
    auto *interval = properties->findChild<QComboBox *>();
    QCOMPARE(interval->currentData().toInt(), 0);
    interval->setCurrentIndex(interval->findData(3600));
    properties->findChildren<QSpinBox *>().constFirst()->setValue(1);
    properties->findChild<QCheckBox *>()->setChecked(true);
    properties->accept();
    COMPARE_SOON(RetentionRules(reader()).all()->value(channelUri("news")).toString(),
                 QString("keep=1 unread"));
    COMPARE_SOON(messagesIn("news"), QStringList("b"));
    QCOMPARE(messagesIn("music"), QStringList("d"));
    QCOMPARE(Feeds(reader()).plan(channelUri("news"))->interval, 3600);
}

void TestDesktopChannelEditing::actionsNeedAChannel()
{
    channels()->setCurrentIndex(channels()->model()->index(3, 0));
    channels()->setFocus();
    press(QKeySequence("Ctrl+Del"));
    press(QKeySequence("Alt+Return"));
    press(QKeySequence("Ctrl+M"));
    QTest::qWait(100);
    QVERIFY(!dialog<QDialog>());
}

QTEST_MAIN(TestDesktopChannelEditing)
#include "tst_desktopchannelediting.moc"
