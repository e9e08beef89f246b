// SPDX-License-Identifier: LGPL-2.1-or-later
#include "logins.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace Tidel {

namespace {

// A user with thousands of passwords is none.
constexpr qint64 maximumSize = 1024 * qint64(1024);
constexpr int longestWait = 30000; // milliseconds

/// The server of \a address as "https://example.org:443".
QString serverOf(const QUrl &address)
{
    const int usualPort = address.scheme() == QLatin1String("https") ? 443 : 80;
    return QStringLiteral("%1://%2:%3")
        .arg(address.scheme(), address.host(QUrl::FullyEncoded))
        .arg(address.port(usualPort));
}

Error notKept(const QString &reason)
{
    return Error(Error::StoreFailed, QStringLiteral("keep the password in %1").arg(Logins::path()), reason);
}

/// The passwords of each server, by user. Fails if there are some that cannot be read, which must not be
/// replaced.
Result<QJsonObject> readAll()
{
    QFile file(Logins::path());
    if (!file.exists())
        return QJsonObject();
    if (!file.open(QIODevice::ReadOnly))
        return Failure(notKept(file.errorString()));
    const QJsonDocument document = QJsonDocument::fromJson(file.read(maximumSize));
    return document.isObject()
        ? Result<QJsonObject>(document.object())
        : Failure(notKept(QStringLiteral("the file is damaged, correct or remove it")));
}

Result<void> writeAll(const QJsonObject &servers)
{
    QSaveFile file(Logins::path());
    // Before the first byte, so that nobody can open the file in between.
    const bool isWritten = QDir().mkpath(QFileInfo(Logins::path()).path()) && file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        && file.write(QJsonDocument(servers).toJson()) > 0 && file.commit();
    return isWritten ? Result<void>() : Failure(notKept(file.errorString()));
}

} // namespace

QString Logins::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QLatin1String("/tidel/logins.json");
}

Logins::Login Logins::of(const QUrl &address)
{
    const QString user = address.userName(QUrl::FullyDecoded);
    const QString password = address.password(QUrl::FullyDecoded);
    if (!password.isEmpty())
        return {user, password};
    const QJsonObject users = readAll().value_or(QJsonObject()).value(serverOf(address)).toObject();
    if (user.isEmpty() && users.size() == 1)
        return {users.begin().key(), users.begin().value().toString()};
    return {user, users.value(user).toString()};
}

Result<void> Logins::set(const QUrl &address, const QString &password)
{
    // Another process may change the file, too.
    QDir().mkpath(QFileInfo(path()).path());
    QLockFile lock(path() + QLatin1String(".lock"));
    if (!lock.tryLock(longestWait))
        return Failure(notKept(QStringLiteral("another program uses the file; try again")));
    const Result<QJsonObject> known = readAll();
    if (!known)
        return Failure(known.error());
    QJsonObject servers = *known;
    QJsonObject users = servers.value(serverOf(address)).toObject();
    if (password.isEmpty())
        users.remove(address.userName(QUrl::FullyDecoded));
    else
        users.insert(address.userName(QUrl::FullyDecoded), password);
    if (users.isEmpty())
        servers.remove(serverOf(address));
    else
        servers.insert(serverOf(address), users);
    return servers == *known ? Result<void>() : writeAll(servers);
}

Result<QUrl> Logins::takeApart(const QUrl &address)
{
    const QString password = address.password(QUrl::FullyDecoded);
    if (password.isEmpty())
        return address;
    return set(address, password).map([&] { return address.adjusted(QUrl::RemovePassword); });
}

Result<Logins::Trial> Logins::tryOut(const QUrl &address)
{
    const QString before = of(address.adjusted(QUrl::RemovePassword)).password;
    const bool isNew = !address.password().isEmpty();
    return takeApart(address).map([&](const QUrl &bare) { return Trial{bare, before, isNew}; });
}

Result<void> Logins::restore(const Trial &trial)
{
    return trial.isNew ? set(trial.address, trial.before) : Result<void>();
}

} // namespace Tidel
