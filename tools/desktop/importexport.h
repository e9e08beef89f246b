// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_IMPORTEXPORT_H
#define TIDEL_DESKTOP_IMPORTEXPORT_H

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace Tidel {

class Archive;

/// Asks for files with lists of channels, and reads or writes them.
class ImportExport : public QObject
{
    Q_OBJECT

public:
    /// Dialogs stand before \a window.
    ImportExport(Archive *archive, QWidget *window);

    void importFile();
    void exportFile();

Q_SIGNALS:
    /// What has happened, for the user.
    void ended(const QString &text);
    /// The channels \a uris are new.
    void imported(const QStringList &uris);

private:
    Archive *const m_archive;
    QWidget *const m_window;
};

} // namespace Tidel

#endif
