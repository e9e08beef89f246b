// SPDX-License-Identifier: LGPL-2.1-or-later
#include "noticebar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

namespace Tidel {

NoticeBar::NoticeBar(QWidget *parent)
    : QFrame(parent), m_text(new QLabel(this)), m_undo(new QToolButton(this))
{
    auto *close = new QToolButton(this);
    close->setIcon(style()->standardIcon(QStyle::SP_DialogCloseButton));
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close"));
    close->setAutoRaise(true);
    m_undo->setText(tr("Undo"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 2, 2, 2);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_undo);
    layout->addWidget(close);
    setFrameShape(QFrame::StyledPanel);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    m_text->setForegroundRole(QPalette::ToolTipText);
    setAutoFillBackground(true);
    setAccessibleName(tr("Notice"));
    hide();
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    connect(m_undo, &QToolButton::clicked, this, [this] {
        hide();
        m_undoFunction();
    });
}

void NoticeBar::show(const QString &text)
{
    m_undo->hide();
    m_text->setText(text);
    setVisible(true);
}

void NoticeBar::showWithUndo(const QString &text, const std::function<void()> &undo)
{
    show(text);
    m_undoFunction = undo;
    m_undo->show();
}

QString NoticeBar::text() const { return isHidden() ? QString() : m_text->text(); }

} // namespace Tidel
