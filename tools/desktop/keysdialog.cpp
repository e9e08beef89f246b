// SPDX-License-Identifier: LGPL-2.1-or-later
#include "keysdialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace Tidel {

namespace {

QString keysOf(const QAction *action)
{
    QStringList keys;
    const QList<QKeySequence> sequences = action->shortcuts();
    for (const QKeySequence &sequence : sequences)
        keys.append(sequence.toString(QKeySequence::NativeText));
    return keys.join(QStringLiteral(", "));
}

/// The text of \a action without the marks of its place in a menu.
QString nameOf(const QAction *action)
{
    QString name = action->text();
    name.remove(QLatin1Char('&'));
    if (name.endsWith(QLatin1String("...")))
        name.chop(3);
    return name;
}

} // namespace

KeysDialog::KeysDialog(QWidget *window) : QDialog(window)
{
    setWindowTitle(tr("Keys"));
    auto *list = new QTreeWidget;
    list->setHeaderLabels({tr("Action"), tr("Key")});
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAccessibleName(tr("Keys"));
    const QList<QAction *> actions = window->findChildren<QAction *>();
    for (const QAction *action : actions) {
        if (!action->shortcut().isEmpty())
            list->addTopLevelItem(new QTreeWidgetItem({nameOf(action), keysOf(action)}));
    }
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(list);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 28);
}

} // namespace Tidel
