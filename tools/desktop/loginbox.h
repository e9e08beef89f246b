// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_LOGINBOX_H
#define TIDEL_DESKTOP_LOGINBOX_H

#include <QGroupBox>

QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QLineEdit)

namespace Tidel {

/// Asks for the user and the password of a server, and says where they are kept.
class LoginBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit LoginBox(QWidget *parent = nullptr);

    /// Shows the box for the server of \a address, and the user in it.
    void ask(const QUrl &address);
    /// \a address with what the user has typed; unchanged if the box is hidden or empty.
    QUrl appliedTo(QUrl address) const;

private:
    QLabel *const m_server; // A title may be cut off, depending on the font.
    QLineEdit *const m_user;
    QLineEdit *const m_password;
};

} // namespace Tidel

#endif
