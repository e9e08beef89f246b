// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_NOTIFIER_H
#define TIDEL_DESKTOP_NOTIFIER_H

#include <QObject>

#include <memory>

QT_FORWARD_DECLARE_CLASS(QSystemTrayIcon)

namespace Tidel {

struct RefreshOutcome;

/// Tells the user of new messages, by the tray of the desktop if it has one.
class Notifier : public QObject
{
    Q_OBJECT

public:
    explicit Notifier(QObject *parent = nullptr);
    ~Notifier() override;

    /// Shows an icon in the tray, or none.
    void setEnabled(bool isEnabled);
    /// Shows one notification for all new messages of a refresh.
    void tell(const RefreshOutcome &outcome);

Q_SIGNALS:
    /// The user has chosen the icon or a notification.
    void activated();

private:
    std::unique_ptr<QSystemTrayIcon> m_tray; // Null if there is no tray or the user does not want it.
};

} // namespace Tidel

#endif
