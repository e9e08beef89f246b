// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloads.h"
#include "enclosurefinder.h"
#include "fileprogress.h"
#include "filequeue.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <feedplugininterface.h>

#include <TidelReader/downloadfolder.h>
#include <TidelReader/downloadqueue.h>
#include <TidelReader/enclosurequeue.h>
#include <TidelReader/enclosures.h>

namespace Tidel {

namespace {

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
    output.report(shownFile(done, path, result.length()), json);
}

/// Downloads the enclosures \a uris. Those that have waited for it then wait no more.
void downloadFiles(const Store &store, const QStringList &uris, const QString &into, Output &output)
{
    FeedPluginInterface *const plugin = uris.isEmpty() ? nullptr : downloadPlugin(output);
    if (!plugin)
        return;
    const auto queued = EnclosureQueue(store).times(uris);
    if (!queued) {
        output.failure(queued.error());
        return;
    }
    DownloadQueue queue(*plugin);
    for (const QString &uri : uris) {
        const Result<FeedEnclosure> enclosure = Enclosures(store).get(uri);
        if (!enclosure) {
            output.failure(uri, enclosure.error());
            continue;
        }
        const auto end = [&, isQueued = queued->contains(uri),
                          enclosure = *enclosure](const DownloadResult &result) {
            report(enclosure, result, into, output);
            if (isQueued && result.isOk())
                unqueue(store, enclosure.uri(), output);
        };
        queue.downloadEnclosure(uri, into.isEmpty() ? DownloadFolder::path() : into, end);
    }
    showFileProgress(queue, output);
    run(queue, output);
}

/// The value of --new; 0 if it is no number of files.
int countIn(const Arguments &arguments)
{
    static const QRegularExpression number(QStringLiteral("^\\d{1,9}$"));
    const QString value = arguments.value("new");
    return number.match(value).hasMatch() ? value.toInt() : 0;
}

void download(const Store &store, const Arguments &arguments, Output &output)
{
    const bool isAboutQueue = arguments.names.isEmpty() && !arguments.isSet("new");
    const QStringList uris = isAboutQueue ? queuedEnclosures(store, output)
        : arguments.isSet("new") ? newestEnclosures(store, countIn(arguments), arguments.names, output)
                                 : findEnclosures(store, arguments.names, output);
    const QString into =
        arguments.isSet("into") ? QFileInfo(arguments.value("into")).absoluteFilePath() : QString();
    if (arguments.isSet("queue"))
        queue(store, uris, output);
    else if (arguments.isSet("unqueue"))
        unqueue(store, uris, output);
    else
        downloadFiles(store, uris, into, output);
}

QString misuseOfDownload(const Arguments &arguments)
{
    const bool isAboutQueue = arguments.isSet("queue") || arguments.isSet("unqueue");
    if (arguments.isSet("into") && arguments.value("into").isEmpty())
        return QStringLiteral("--into needs a folder");
    if (arguments.isSet("new") && countIn(arguments) == 0)
        return QStringLiteral("--new needs a number of files, 1 or more");
    if (arguments.isSet("queue") && arguments.names.isEmpty() && !arguments.isSet("new"))
        return QStringLiteral("--queue needs a message, an enclosure, or --new N");
    if (arguments.isSet("unqueue") && (arguments.names.isEmpty() || arguments.isSet("new")))
        return QStringLiteral("--unqueue needs a message or an enclosure");
    if (arguments.isSet("queue") && arguments.isSet("unqueue"))
        return QStringLiteral("choose --queue or --unqueue");
    if (isAboutQueue && arguments.isSet("into"))
        return QStringLiteral("--into downloads at once; leave out --queue and --unqueue");
    return {};
}

} // namespace

const Command downloadCommand = {
    "download",
    "[MESSAGE|ENCLOSURE|CHANNEL...]",
    "Download the files of messages, or those that wait.",
    "Messages: numbers in the last list, parts of titles, links or URIs; or the addresses or URIs of enclosures. "
    "With --new, channels; all channels by default. Without any argument, downloads what waits. A download that "
    "was interrupted goes on where it ended.",
    0,
    anyNumber,
    {{"new", "N",
      "Downloads the newest N files, of all these channels together, that were never downloaded."},
     {"queue", nullptr, "Downloads nothing now. The files wait until \"tidel download\" is run."},
     {"unqueue", nullptr, "The files wait no more."},
     {"into", "DIRECTORY",
      "The folder for the files; by default \"tidel\" in your download folder. A file that was "
      "downloaded to another one is copied."}},
    {"tidel download https://radio.example.org/episodes/7",
     "tidel download https://radio.example.org/episodes/7 --into ~/Music",
     "tidel download --new 3 --queue \"Radio Hillside\"", "tidel download"},
    download,
    misuseOfDownload};

} // namespace Tidel
