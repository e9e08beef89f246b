// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "output.h"
#include "phrases.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <TidelReader/folders.h>
#include <TidelReader/opml.h>

#include <algorithm>

namespace Tidel {

namespace {

/// What a feed does not have is left out.
QJsonObject json(const Subscription &subscription)
{
    QJsonObject json{{QStringLiteral("link"), subscription.link.toString()},
                     {QStringLiteral("title"), subscription.title}};
    if (!subscription.folder.isEmpty())
        json.insert(QStringLiteral("folder"), Folders::path(subscription.folder));
    if (!subscription.website.isNull())
        json.insert(QStringLiteral("website"), subscription.website.toString());
    return json;
}

QByteArray jsonLines(const QList<Subscription> &subscriptions)
{
    QByteArray lines;
    for (const Subscription &subscription : subscriptions)
        lines += QJsonDocument(json(subscription)).toJson(QJsonDocument::Compact) + '\n';
    return lines;
}

/// Writes \a document to the file \a fileName, which only its owner can read. Returns what is wrong; empty if
/// the file was written.
QString writeFile(const QString &fileName, const QByteArray &document)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile())
        return QStringLiteral("this is not a file; give the name of a file");
    QSaveFile file(fileName);
    const bool isWritten = file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
        && file.write(document) == document.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}

QString misuseOfExport(const Arguments &arguments)
{
    return arguments.isSet("opml") && arguments.isSet("json")
        ? QStringLiteral("--opml and --json exclude each other")
        : QString();
}

void exportChannels(const Store &store, const Arguments &arguments, Output &output)
{
    const auto subscriptions = Subscriptions(store).all();
    if (!subscriptions) {
        output.failure(subscriptions.error());
        return;
    }
    const QByteArray document =
        arguments.isSet("json") ? jsonLines(*subscriptions) : Opml::write(*subscriptions);
    if (arguments.names.isEmpty() && arguments.isSet("json")) {
        for (const Subscription &subscription : *subscriptions)
            output.object(json(subscription));
    } else if (arguments.names.isEmpty()) {
        output.document(document);
    } else {
        const QString fileName = arguments.names.first();
        const QString problem = writeFile(fileName, document);
        if (!problem.isEmpty()) {
            output.error(QStringLiteral("could not export to %1: %2").arg(fileName, problem));
            return;
        }
        output.report(QStringLiteral("%1: %2").arg(fileName, countedChannels(int(subscriptions->size()))),
                      {});
    }
    const auto passwords =
        std::count_if(subscriptions->begin(), subscriptions->end(), [](const Subscription &subscription) {
            return !subscription.link.toUrl().password().isEmpty();
        });
    if (passwords > 0)
        output.note(QStringLiteral("tidel: the addresses of %1 contain passwords; keep the list to yourself")
                        .arg(countedChannels(int(passwords))));
}

} // namespace

const Command exportCommand = {
    "export",
    "[FILE] [--opml | --json]",
    "Write a list of the channels with their titles and folders, for other feed readers.",
    "The file to write, which only you can read; by default the standard output.",
    0,
    1,
    {{"opml", nullptr, "Writes OPML 2.0; this is the default."}},
    {"tidel export subscriptions.opml", "tidel export --json"},
    exportChannels,
    misuseOfExport};

} // namespace Tidel
