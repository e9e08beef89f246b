// SPDX-License-Identifier: LGPL-2.1-or-later
// Uses the window of a program as a user does: QT_QPA_GENERIC_PLUGINS=windowwatch loads it into the program.
#include <QGenericPlugin>
#include <QGuiApplication>
#include <QPalette>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QTest>
#include <QTextStream>
#include <QTimer>

namespace {

QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x38, 0x3d));
    palette.setColor(QPalette::Base, QColor(0x22, 0x24, 0x28));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        for (const auto group : {QPalette::Active, QPalette::Inactive})
            palette.setColor(group, role, QColor(0xe8, 0xe8, 0xe8));
    return palette;
}

/// Marks the first message as a favorite and as read. Ends the program when it shows WINDOWWATCH_TEXTS, or
/// fails.
class WindowWatch : public QObject
{
    Q_OBJECT

public:
    WindowWatch()
    {
        if (qEnvironmentVariableIsSet("WINDOWWATCH_DARK"))
            QGuiApplication::setPalette(darkPalette());
        m_timer.setInterval(100);
        connect(&m_timer, &QTimer::timeout, this, &WindowWatch::look);
        m_timer.start();
        QTimer::singleShot(60000, this, [this] {
            QTextStream(stderr) << "the window shows this instead of what it should:\n" << m_shown << '\n';
            QCoreApplication::exit(1);
        });
    }

private:
    void look()
    {
        const QWindowList windows = QGuiApplication::allWindows();
        if (windows.isEmpty())
            return;
        m_window = qobject_cast<QQuickWindow *>(windows.constFirst());
        const QQuickItem *row = firstRow();
        if (!row || row->property("title").toString().isEmpty())
            return;
        if (!row->property("isFavorite").toBool())
            click(row->findChild<QQuickItem *>("star"));
        else if (!row->property("isRead").toBool())
            click(row);
        QStringList texts;
        addTexts(m_window->contentItem(), &texts);
        m_shown = texts.join('\n');
        if (m_shown == m_expected)
            finish();
    }

    const QQuickItem *firstRow() const
    {
        const auto *list = m_window->findChild<QQuickItem *>("messages");
        QQuickItem *row = nullptr;
        QMetaObject::invokeMethod(const_cast<QQuickItem *>(list), "itemAtIndex",
                                  Q_RETURN_ARG(QQuickItem *, row), Q_ARG(int, 0));
        return row;
    }

    /// Clicks once; what it does takes a while.
    void click(const QQuickItem *item)
    {
        if (item == m_clicked)
            return;
        m_clicked = item;
        const QPointF center = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(m_window, Qt::LeftButton, {}, center.toPoint());
    }

    void finish()
    {
        const QString picture = qEnvironmentVariable("WINDOWWATCH_PICTURE");
        if (!picture.isEmpty())
            m_window->screen()->grabWindow(m_window->winId()).save(picture);
        QCoreApplication::quit();
    }

    void addTexts(const QQuickItem *item, QStringList *texts) const
    {
        if (!item->isVisible())
            return;
        const QString text = item->property("text").toString();
        // A button and its label have the same text.
        if (!text.isEmpty() && (texts->isEmpty() || texts->constLast() != text))
            texts->append(text);
        const QList<QQuickItem *> children = item->childItems();
        for (const QQuickItem *child : children)
            addTexts(child, texts);
    }

    const QString m_expected = qEnvironmentVariable("WINDOWWATCH_TEXTS");
    QString m_shown;
    QTimer m_timer;
    QQuickWindow *m_window = nullptr;
    const QQuickItem *m_clicked = nullptr;
};

} // namespace

class WindowWatchPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "windowwatch.json")

public:
    QObject *create(const QString &, const QString &) override { return new WindowWatch; }
};

#include "windowwatch.moc"
