// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LOGINS_H
#define TIDEL_LOGINS_H

#include "error.h"
#include "tidelreaderglobal.h"

#include <QString>
#include <QUrl>

namespace Tidel {

/**
 * The passwords of the user, in the file `tidel/logins.json` below the user's data folder, which nobody else
 * can read. They are not a part of the archive, of backups and of lists.
 *
 * A password belongs to one server, which is a scheme, a host and a port, and to a user there. Addresses keep
 * the name of the user alone.
 */
namespace Logins {

/// A user of a server.
struct Login
{
    QString user; ///< Empty if there is none.
    QString password;
};

/// A password that may be wrong.
struct Trial
{
    QUrl address; ///< Without the password.
    QString before; ///< The password that was stored before; empty if there was none.
    bool isNew = false; ///< If false, the address had no password.
};

/// The path of the file.
TIDELREADER_EXPORT QString path();
/// What to send to the server of \a address: the password of the user in \a address, or the only login for
/// this server if \a address names no user. If \a address has a password, or there is none, what \a address
/// says.
TIDELREADER_EXPORT Login of(const QUrl &address);
/// Stores \a password for the user and the server of \a address, or forgets it if \a password is empty.
TIDELREADER_EXPORT Result<void> set(const QUrl &address, const QString &password);
/// Stores the password in \a address, if there is one, and returns \a address without it.
TIDELREADER_EXPORT Result<QUrl> takeApart(const QUrl &address);
/// As takeApart(), for an address that restore() may be called for.
TIDELREADER_EXPORT Result<Trial> tryOut(const QUrl &address);
/// Stores what was stored before \a trial, because its password does not work.
TIDELREADER_EXPORT Result<void> restore(const Trial &trial);

} // namespace Logins

} // namespace Tidel

#endif
