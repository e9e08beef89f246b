// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_REFRESHSTATUS_H
#define TIDEL_DESKTOP_REFRESHSTATUS_H

#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QAction)
QT_FORWARD_DECLARE_CLASS(QProgressBar)

namespace Tidel {

class Refresher;

/// The progress of a refresh, with a button that stops it. Hidden while there is none.
class RefreshStatus : public QWidget
{
    Q_OBJECT

public:
    /// \a stop is the action of the button.
    RefreshStatus(const Refresher *refresher, QAction *stop, QWidget *parent = nullptr);

private:
    QProgressBar *const m_bar;
};

} // namespace Tidel

#endif
