// SPDX-License-Identifier: LGPL-2.1-or-later
#include "notifier.h"

#include "refresher.h"

#include <QApplication>
#include <QSystemTrayIcon>

namespace Tidel {

Notifier::Notifier(QObject *parent) : QObject(parent) { }

Notifier::~Notifier() = default;

void Notifier::setEnabled(bool isEnabled)
{
    m_tray.reset();
    if (!isEnabled || !QSystemTrayIcon::isSystemTrayAvailable())
        return;
    m_tray = std::make_unique<QSystemTrayIcon>(QApplication::windowIcon());
    m_tray->setToolTip(QApplication::applicationDisplayName());
    connect(m_tray.get(), &QSystemTrayIcon::activated, this, &Notifier::activated);
    connect(m_tray.get(), &QSystemTrayIcon::messageClicked, this, &Notifier::activated);
    m_tray->show();
}

void Notifier::tell(const RefreshOutcome &outcome)
{
    constexpr int maximumLines = 3;
    if (m_tray && outcome.newMessages > 0)
        m_tray->showMessage(outcome.toString(),
                            QStringList(outcome.headlines.mid(0, maximumLines)).join(QLatin1Char('\n')),
                            QApplication::windowIcon());
}

} // namespace Tidel
