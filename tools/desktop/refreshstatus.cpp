// SPDX-License-Identifier: LGPL-2.1-or-later
#include "refreshstatus.h"

#include "refresher.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QToolButton>

namespace Tidel {

RefreshStatus::RefreshStatus(const Refresher *refresher, QAction *stop, QWidget *parent)
    : QWidget(parent), m_bar(new QProgressBar(this))
{
    auto *button = new QToolButton(this);
    button->setDefaultAction(stop);
    button->setAutoRaise(true);
    m_bar->setAccessibleName(tr("Progress of the refresh"));
    m_bar->setFormat(tr("%v of %m channels"));
    m_bar->setMaximumWidth(fontMetrics().averageCharWidth() * 30);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_bar);
    layout->addWidget(button);
    hide();
    connect(refresher, &Refresher::started, this, [this] {
        m_bar->setRange(0, 0);
        show();
    });
    connect(refresher, &Refresher::advanced, this, [this](int ended, int all) {
        m_bar->setRange(0, all);
        m_bar->setValue(ended);
    });
    connect(refresher, &Refresher::finished, this, &QWidget::hide);
}

} // namespace Tidel
