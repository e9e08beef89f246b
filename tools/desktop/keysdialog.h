// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_KEYSDIALOG_H
#define TIDEL_DESKTOP_KEYSDIALOG_H

#include <QDialog>

namespace Tidel {

/// Lists the keys of the actions of a window.
class KeysDialog : public QDialog
{
    Q_OBJECT

public:
    explicit KeysDialog(QWidget *window);
};

} // namespace Tidel

#endif
