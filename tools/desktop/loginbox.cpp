// SPDX-License-Identifier: LGPL-2.1-or-later
#include "loginbox.h"

#include <TidelReader/logins.h>

#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QUrl>

namespace Tidel {

LoginBox::LoginBox(QWidget *parent)
    : QGroupBox(parent), m_server(new QLabel(this)), m_user(new QLineEdit(this)),
      m_password(new QLineEdit(this))
{
    m_password->setEchoMode(QLineEdit::Password);
    auto *place = new QLabel(tr("The password is kept in %1, which nobody else can read, and is sent to this "
                                "server only.")
                                 .arg(QDir::toNativeSeparators(Logins::path())));
    for (QLabel *label : {m_server, place})
        label->setTextFormat(Qt::PlainText);
    place->setWordWrap(true);
    auto *layout = new QFormLayout(this);
    layout->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    layout->addRow(m_server);
    layout->addRow(tr("&User:"), m_user);
    layout->addRow(tr("&Password:"), m_password);
    layout->addRow(place);
    hide();
}

void LoginBox::ask(const QUrl &address)
{
    m_server->setText(tr("Login at %1").arg(address.host()));
    m_user->setText(address.userName(QUrl::FullyDecoded));
    m_password->clear();
    show();
    (m_user->text().isEmpty() ? m_user : m_password)->setFocus();
}

QUrl LoginBox::appliedTo(QUrl address) const
{
    if (isHidden() || m_user->text().isEmpty())
        return address;
    address.setUserName(m_user->text(), QUrl::DecodedMode);
    address.setPassword(m_password->text(), QUrl::DecodedMode);
    return address;
}

} // namespace Tidel
