// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <TidelReader/readstate.h>

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QTextBrowser>

using namespace Tidel;

void WindowTestCase::init()
{
    ReaderTestCase::init();
    m_settings = std::make_unique<QTemporaryDir>();
    // The icons that one test has found are not those of the next one.
    qputenv("XDG_CACHE_HOME", QFile::encodeName(m_settings->filePath(QStringLiteral("cache"))));
    QApplication::setOrganizationName(QStringLiteral("tidel-test"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings->path());
}

void WindowTestCase::cleanup()
{
    m_window.reset();
    m_archive.reset();
    m_settings.reset();
    ReaderTestCase::cleanup();
}

void WindowTestCase::openWindow()
{
    m_window.reset();
    m_archive = std::make_unique<Archive>();
    m_window = std::make_unique<MainWindow>(m_archive.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void WindowTestCase::closeWindow()
{
    QVERIFY(m_window->close());
    m_window.reset();
    QVERIFY(m_archive->close());
    m_archive.reset();
}

void WindowTestCase::press(const QKeySequence &keys) const
{
    // Nobody else does it on the offscreen platform when a dialog has gone.
    window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window()));
    QWidget *target = QApplication::focusWidget() ? QApplication::focusWidget() : window();
    QTest::keySequence(target, keys);
}

namespace {

void collectTitles(const QAbstractItemModel *model, const QModelIndex &parent, int depth, QStringList *lines)
{
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        lines->append(QString(depth, ' ') + index.data().toString());
        collectTitles(model, index, depth + 1, lines);
    }
}

} // namespace

QStringList WindowTestCase::channelTitles() const
{
    QStringList lines;
    collectTitles(channels()->model(), {}, 0, &lines);
    return lines;
}

QStringList WindowTestCase::titles() const
{
    QStringList found;
    for (int row = 0; row < messages()->messages()->rowCount(); ++row)
        found.append(messages()->messages()->index(row).data().toString());
    return found;
}

QString WindowTestCase::shownText() const { return article()->findChild<QTextBrowser *>()->toPlainText(); }

bool WindowTestCase::isRead(const QString &message) const
{
    return !ReadState(reader()).unread({})->contains(messageUri(message));
}
