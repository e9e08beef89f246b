// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_NOTICEBAR_H
#define TIDEL_DESKTOP_NOTICEBAR_H

#include <QFrame>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QToolButton)

namespace Tidel {

/// A line above the panes that says what has happened, and may offer to undo it. It replaces dialogs that
/// nobody has asked for.
class NoticeBar : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    /// Shows \a text until the user closes it or another text comes.
    void show(const QString &text);
    /// Shows \a text, with a button that calls \a undo.
    void showWithUndo(const QString &text, const std::function<void()> &undo);
    /// What is shown; empty if nothing is.
    QString text() const;

private:
    QLabel *const m_text;
    QToolButton *const m_undo;
    std::function<void()> m_undoFunction;
};

} // namespace Tidel

#endif
