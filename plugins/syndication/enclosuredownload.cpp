// SPDX-License-Identifier: LGPL-2.1-or-later
#include "enclosuredownload.h"

#include "enclosurename.h"

#include <QDir>
#include <QFileInfo>

#include <TidelReader/enclosures.h>
#include <TidelReader/link.h>
#include <TidelReader/writeturn.h>

#include <limits>

#include <sys/stat.h>

namespace Tidel {

namespace {

constexpr int maximumNames = 10000;

/// The path of the file that \a enclosure was downloaded to; empty if the file does not exist.
QString presentFile(const FeedEnclosure &enclosure)
{
    const QString path = QUrl(enclosure.localUrl()).toLocalFile();
    return QFileInfo(path).isFile() ? path : QString();
}

/// The permissions of a new file. A temporary file can only be accessed by its owner.
QFileDevice::Permissions usualPermissions()
{
    const mode_t mask = umask(0);
    umask(mask);
    QFileDevice::Permissions permissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    for (const auto &[bit, permission] : {std::pair(mode_t(S_IRGRP), QFileDevice::ReadGroup),
                                          std::pair(mode_t(S_IWGRP), QFileDevice::WriteGroup),
                                          std::pair(mode_t(S_IROTH), QFileDevice::ReadOther),
                                          std::pair(mode_t(S_IWOTH), QFileDevice::WriteOther)})
        permissions.setFlag(permission, !(mask & bit));
    return permissions;
}

} // namespace

EnclosureDownload::EnclosureDownload(const DownloadTools &tools, const QString &enclosureUri,
                                     const QString &folder)
    : Download(tools), m_uri(enclosureUri), m_folder(folder)
{
}

void EnclosureDownload::start()
{
    const Outcome prepared = prepare();
    if (!prepared.isFine() || !m_path.isEmpty()) {
        finish(prepared);
        return;
    }
    // A compressed file must not be decompressed.
    const TransferRequest request{QUrl(m_enclosure.remoteUrl()), "*/*", false, {}};
    connect(transfer(request, m_file), &Transfer::progressed, this, &EnclosureDownload::progressed);
}

Outcome EnclosureDownload::prepare()
{
    const Outcome found = readEnclosure();
    if (!found.isFine())
        return found;
    m_path = presentFile(m_enclosure);
    if (!m_path.isEmpty())
        return {};
    const QUrl address(m_enclosure.remoteUrl());
    if (!canTransfer(address))
        return badAddress();
    if (address.isLocalFile() && !QFileInfo(address.toLocalFile()).isFile())
        return {FeedDownloadNotFound, QStringLiteral("no such file")};
    m_file.setFileTemplate(m_folder + QStringLiteral("/.tidel-XXXXXX.part"));
    if (!QDir().mkpath(m_folder) || !m_file.open())
        return {FeedDownloadNotWritten, QStringLiteral("the folder %1 cannot be written to").arg(m_folder)};
    return {};
}

Outcome EnclosureDownload::readEnclosure()
{
    const Result<FeedEnclosure> stored = Enclosures(store()).get(m_uri);
    if (!stored && stored.error().kind() == Error::NotFound)
        return {FeedDownloadNotFound, stored.error().reason()};
    if (!stored)
        return storeFailed(stored.error(), "try again");
    m_enclosure = *stored;
    return {};
}

void EnclosureDownload::transferred(const Transfer &transfer)
{
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn) {
        finish(storeFailed(turn.error(), "download it again"));
        return;
    }
    // Another process may have downloaded or deleted the enclosure in the meantime.
    Outcome outcome = readEnclosure();
    m_path = presentFile(m_enclosure);
    if (outcome.isFine() && m_path.isEmpty())
        outcome = keepFile(transfer.mimeType());
    finish(outcome);
}

// The store is told first. If this is interrupted, the next download finds no file and begins again. A file
// that the store does not know would stay for ever.
Outcome EnclosureDownload::keepFile(const QString &mimeType)
{
    if (!m_file.flush() || !m_file.setPermissions(usualPermissions()))
        return notWritten(m_file.errorString());
    const QString path = freePath(QUrl(m_enclosure.remoteUrl()));
    const Outcome noted = noteFile(path, mimeType);
    if (!noted.isFine())
        return noted;
    if (!m_file.rename(path)) {
        m_enclosure.setLocalUrl(QString());
        Enclosures(store()).setFile(m_enclosure);
        return notWritten(m_file.errorString());
    }
    m_file.setAutoRemove(false);
    m_path = path;
    return {};
}

QString EnclosureDownload::freePath(const QUrl &address) const
{
    const EnclosureName name(address);
    const QDir folder(m_folder);
    int number = 1;
    const auto isTaken = [](const QString &path) {
        return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
    };
    while (number < maximumNames && isTaken(folder.absoluteFilePath(name.attempt(number))))
        ++number;
    return folder.absoluteFilePath(name.attempt(number));
}

Outcome EnclosureDownload::noteFile(const QString &path, const QString &mimeType)
{
    const qint64 size = m_file.size();
    m_enclosure.setLocalUrl(Link::encoded(QUrl::fromLocalFile(path)));
    m_enclosure.setLength(size > std::numeric_limits<unsigned int>::max() ? 0 : unsigned(size));
    if (!mimeType.isEmpty())
        m_enclosure.setMimeType(mimeType);
    const Result<void> noted = Enclosures(store()).setFile(m_enclosure);
    return noted ? Outcome() : storeFailed(noted.error(), "download it again");
}

QVariantMap EnclosureDownload::results() const
{
    return {{QStringLiteral("uri"), m_uri},
            {QStringLiteral("remoteUrl"), m_enclosure.remoteUrl()},
            {QStringLiteral("localUrl"), Link::encoded(QUrl::fromLocalFile(m_path))},
            {QStringLiteral("length"), QFileInfo(m_path).size()},
            {QStringLiteral("mimeType"), m_enclosure.mimeType()}};
}

} // namespace Tidel
