// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloads.h"
#include "jsonobjects.h"
#include "lastlist.h"
#include "messagefinder.h"
#include "output.h"
#include "phrases.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <feedplugininterface.h>

#include <TidelReader/downloadfolder.h>
#include <TidelReader/downloadqueue.h>
#include <TidelReader/enclosures.h>

namespace Tidel {

namespace {

/// Returns the URIs of the enclosures that \a name identifies: an enclosure, or a message as chooseMessage()
/// finds it. Reports to \a output if there are none.
QStringList findEnclosures(const Store &store, const QString &name, Output &output)
{
    const bool isRow = LastList::rowNumber(name) > 0;
    Result<QStringList> uris = isRow ? QStringList() : Enclosures(store).uris(name);
    if (isRow || (!uris && uris.error().kind() == Error::NotFound)) {
        const auto message = chooseMessage(store, name, output);
        if (!message)
            return {};
        uris = Enclosures(store).uris(message->uri);
    }
    if (!uris) {
        output.failure(name, uris.error());
        return {};
    }
    if (uris->isEmpty())
        output.note(QStringLiteral("%1: the message has no enclosures").arg(name));
    return *uris;
}

/// Copies the file \a path to \a folder unless it is there, and returns the path of the copy. Reports to
/// \a output why it could not.
QString copied(const QString &path, const QString &folder, Output &output)
{
    const QString copy = QDir(folder).absoluteFilePath(QFileInfo(path).fileName());
    if (QFileInfo(copy).canonicalFilePath() == QFileInfo(path).canonicalFilePath())
        return copy;
    if (!QDir().mkpath(folder)) {
        output.error(QStringLiteral("%1: the folder cannot be written to; choose another one").arg(folder));
        return {};
    }
    QFile file(path);
    if (file.copy(copy))
        return copy;
    const QString reason = QFileInfo::exists(copy)
        ? QStringLiteral("a file of this name exists; move it away or choose another folder")
        : file.errorString();
    output.error(copy + QLatin1String(": ") + reason);
    return {};
}

/// Reports the end of the download of \a enclosure. Copies the file to \a folder if that is not empty.
void report(const FeedEnclosure &enclosure, const DownloadResult &result, const QString &folder,
            Output &output)
{
    if (result.error() == FeedDownloadCanceled)
        return;
    if (!result.isOk()) {
        output.error(enclosure.remoteUrl() + QLatin1String(": ") + result.reason(), enclosureJson(enclosure));
        return;
    }
    const bool wasDownloaded = result.localUrl() == enclosure.localUrl() && !result.localUrl().isEmpty();
    const QString path =
        wasDownloaded && !folder.isEmpty() ? copied(result.path(), folder, output) : result.path();
    if (path.isEmpty())
        return;
    const char *const done = path != result.path() ? "Copied"
        : wasDownloaded                            ? "Already downloaded"
                                                   : "Downloaded";
    QJsonObject json = enclosureJson(enclosure);
    addText(json, "file", path);
    addNumber(json, "length", result.length());
    output.report(
        QStringLiteral("%1: %2 (%3 bytes)").arg(QLatin1String(done), path, QString::number(result.length())),
        json);
}

/// Adds the enclosure \a uri to \a queue, for the folder \a into, or for the usual one if it is empty.
void add(DownloadQueue &queue, const Store &store, const QString &uri, const QString &into, Output &output)
{
    const Result<FeedEnclosure> enclosure = Enclosures(store).get(uri);
    if (!enclosure) {
        output.failure(uri, enclosure.error());
        return;
    }
    const QString folder = into.isEmpty() ? DownloadFolder::path() : into;
    queue.downloadEnclosure(uri, folder,
                            [&output, into, enclosure = *enclosure](const DownloadResult &result) {
                                report(enclosure, result, into, output);
                            });
}

/// Shows the numbers of finished downloads and received bytes in \a output.
void showFileProgress(DownloadQueue &queue, Output &output)
{
    struct Progress
    {
        int ended = 0;
        int all = 0;
        qint64 received = 0;
    };
    const auto progress = std::make_shared<Progress>();
    const auto show = [progress, &output] {
        output.progress(shownProgress(progress->ended, progress->all, "files")
                        + QStringLiteral(", %1 KiB").arg(progress->received / 1024));
    };
    QObject::connect(&queue, &DownloadQueue::advanced, &queue, [progress, show](int ended, int all) {
        progress->ended = ended;
        progress->all = all;
        show();
    });
    QObject::connect(&queue, &DownloadQueue::progressed, &queue, [progress, show](qint64 bytes) {
        progress->received = bytes;
        show();
    });
}

void download(const Store &store, const Arguments &arguments, Output &output)
{
    QStringList uris;
    for (const QString &name : arguments.names)
        uris += findEnclosures(store, name, output);
    uris.removeDuplicates();
    FeedPluginInterface *plugin = uris.isEmpty() ? nullptr : downloadPlugin(output);
    if (!plugin)
        return;

    const QString into =
        arguments.isSet("into") ? QFileInfo(arguments.value("into")).absoluteFilePath() : QString();
    DownloadQueue queue(*plugin);
    for (const QString &uri : qAsConst(uris))
        add(queue, store, uri, into, output);
    showFileProgress(queue, output);
    run(queue, output);
}

QString misuseOfDownload(const Arguments &arguments)
{
    return arguments.isSet("into") && arguments.value("into").isEmpty()
        ? QStringLiteral("--into needs a folder")
        : QString();
}

} // namespace

const Command downloadCommand = {
    "download",
    "MESSAGE|ENCLOSURE...",
    "Download the files of messages.",
    "Messages: numbers in the last list, parts of titles, links or URIs; or the addresses or URIs of enclosures.",
    1,
    anyNumber,
    {{"into", "DIRECTORY",
      "The folder for the files; by default \"tidel\" in your download folder. A file that was "
      "downloaded to another one is copied."}},
    {"tidel download https://radio.example.org/episodes/7",
     "tidel download https://radio.example.org/episodes/7 --into ~/Music"},
    download,
    misuseOfDownload};

} // namespace Tidel
