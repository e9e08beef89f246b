// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_SUBSCRIBEDIALOG_H
#define TIDEL_DESKTOP_SUBSCRIBEDIALOG_H

#include <TidelReader/archive.h>
#include <TidelReader/logins.h>

#include <QDialog>

QT_FORWARD_DECLARE_CLASS(QComboBox)
QT_FORWARD_DECLARE_CLASS(QDialogButtonBox)
QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QLineEdit)
QT_FORWARD_DECLARE_CLASS(QListWidget)

namespace Tidel {

class LoginBox;

/// Subscribes to the feed at an address. If the page there has several feeds, the user chooses.
class SubscribeDialog : public QDialog
{
    Q_OBJECT

public:
    /// Offers \a folders, of which \a folder is chosen.
    SubscribeDialog(Archive *archive, const QStringList &folders, const QString &folder,
                    QWidget *parent = nullptr);
    ~SubscribeDialog() override;

    /// Proposes \a address.
    void setAddress(const QString &address);

Q_SIGNALS:
    /// The channel \a uri is new.
    void subscribed(const QString &uri);

private:
    void layOut();
    void subscribe();
    void start(const QList<Logins::Trial> &trials);
    QList<Logins::Trial> trials() const { return *m_logins.result(); }
    void restore(const ArchiveDownload &failed);
    void askForLogin(const QUrl &address);
    QList<QUrl> addresses() const;
    void finish(const QList<ArchiveDownload> &downloads);
    void offer(const QVector<FoundFeed> &feeds);
    void put(const QStringList &links);
    void showAddress(const QUrl &address);
    void setBusy(bool isBusy);
    void say(const QString &text);
    void grow();

    Archive *const m_archive;
    QLineEdit *const m_address;
    LoginBox *const m_login;
    QComboBox *const m_folder;
    QListWidget *const m_feeds; // Those of a page.
    QLabel *const m_state;
    QDialogButtonBox *const m_buttons;
    bool m_isBusy = false;
    QFuture<Result<QList<Logins::Trial>>> m_logins; // Of what is under way.
    QFuture<ArchiveDownload> m_download;
};

} // namespace Tidel

#endif
