// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_PICTUREBAR_H
#define TIDEL_DESKTOP_PICTUREBAR_H

#include <QFrame>

namespace Tidel {

/// Says that there are pictures, and asks whether to fetch them.
class PictureBar : public QFrame
{
    Q_OBJECT

public:
    explicit PictureBar(QWidget *parent = nullptr);

Q_SIGNALS:
    void allowedOnce();
    void allowedForChannel();
};

} // namespace Tidel

#endif
