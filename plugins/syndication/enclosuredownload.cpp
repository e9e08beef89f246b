// SPDX-License-Identifier: LGPL-2.1-or-later
#include "enclosuredownload.h"

#include "enclosurename.h"

#include <QDir>
#include <QFileInfo>

#include <TidelReader/enclosures.h>
#include <TidelReader/link.h>
#include <TidelReader/writeturn.h>

#include <limits>

namespace Tidel {

namespace {

constexpr int maximumNames = 10000;

/// The path of the file that \a enclosure was downloaded to; empty if the file does not exist.
QString presentFile(const FeedEnclosure &enclosure)
{
    const QString path = QUrl(enclosure.localUrl()).toLocalFile();
    return QFileInfo(path).isFile() ? path : QString();
}

/// Returns true if a download that failed with \a error cannot be continued; otherwise returns false.
bool isFinal(int error) { return error == FeedDownloadTooLarge || error == 404 || error == 410; }

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
    if (m_file.isComplete())
        complete(QString());
    else
        ask(m_file.resumePoint());
}

void EnclosureDownload::ask(const ResumePoint &part)
{
    m_isResumed = part.isValid();
    // A compressed file must not be decompressed.
    const TransferRequest request{QUrl(m_enclosure.remoteUrl()), "*/*", false, {}, {}, part};
    const Transfer *const begun = transfer(request, m_file.device());
    connect(begun, &Transfer::began, this, [this, begun](qint64 offset) {
        if (offset == 0)
            m_file.restart(begun->origin());
    });
    connect(begun, &Transfer::progressed, this, &EnclosureDownload::progressed);
}

void EnclosureDownload::failed(const Outcome &outcome)
{
    if (m_isResumed && (outcome.error == partialContent || outcome.error == noSuchPart)) {
        m_file.restart({});
        ask({});
        return;
    }
    if (isFinal(outcome.error))
        m_file.discard();
    finish(outcome);
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
    if (!QDir().mkpath(m_folder) || !m_file.open(m_folder, m_enclosure.remoteUrl()))
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

void EnclosureDownload::complete(const QString &mimeType)
{
    if (!m_file.finish()) {
        finish(notWritten(qt_error_string()));
        return;
    }
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn) {
        finish(storeFailed(turn.error(), "download it again"));
        return;
    }
    // Another process may have downloaded or deleted the enclosure in the meantime.
    Outcome outcome = readEnclosure();
    m_path = presentFile(m_enclosure);
    if (outcome.isFine() && m_path.isEmpty())
        outcome = keepFile(mimeType);
    else if (outcome.error != FeedDownloadStoreFailed)
        m_file.discard();
    finish(outcome);
}

// The store is told first. If this is interrupted, the next download finds no file and begins again. A file
// that the store does not know would stay for ever.
Outcome EnclosureDownload::keepFile(const QString &mimeType)
{
    const QString path = freePath(QUrl(m_enclosure.remoteUrl()));
    const Outcome noted = noteFile(path, mimeType);
    if (!noted.isFine())
        return noted;
    if (!m_file.moveTo(path)) {
        m_enclosure.setLocalUrl(QString());
        Enclosures(store()).setFile(m_enclosure);
        return notWritten(QStringLiteral("it could not be moved to %1").arg(path));
    }
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
    const qint64 size = m_file.device().size();
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
