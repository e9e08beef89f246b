// SPDX-License-Identifier: LGPL-2.1-or-later
#include "picturebar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace Tidel {

PictureBar::PictureBar(QWidget *parent) : QFrame(parent)
{
    auto *text = new QLabel(tr("Pictures were not fetched, so that nobody learns what you read."));
    text->setWordWrap(true);
    auto *once = new QPushButton(tr("Show &Pictures"));
    auto *always = new QPushButton(tr("&Always for This Channel"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 6, 12, 6);
    layout->addWidget(text, 1);
    layout->addWidget(once);
    layout->addWidget(always);
    setAccessibleName(text->text());
    setAutoFillBackground(true);
    connect(once, &QPushButton::clicked, this, &PictureBar::allowedOnce);
    connect(always, &QPushButton::clicked, this, &PictureBar::allowedForChannel);
}

} // namespace Tidel
