// SPDX-License-Identifier: LGPL-2.1-or-later
#include "subscriptionfiles.h"

#include <TidelReader/opml.h>
#include <TidelReader/subscriptions.h>

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

namespace Tidel {

namespace {

Failure fileFailure(const QString &attempt, const QFileDevice &file)
{
    return Failure(Error(Error::FileFailed, attempt, file.errorString()));
}

Result<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fileFailure(QStringLiteral("read ") + path, file);
    // One byte more, so that too long a file is refused and not cut.
    return file.read(Opml::maximumSize + 1);
}

Result<ImportOutcome> importContent(const Store &store, const Opml::Content &content)
{
    return Subscriptions(store).add(content.subscriptions).map([&](const QList<FeedChannel> &added) {
        ImportOutcome outcome;
        for (const FeedChannel &channel : added)
            outcome.uris.append(channel.uri());
        outcome.known = int(content.subscriptions.size() - added.size());
        outcome.problems = int(content.problems.size());
        return outcome;
    });
}

Result<int> write(const QString &path, const QList<Subscription> &subscriptions)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fileFailure(QStringLiteral("write ") + path, file);
    file.write(Opml::write(subscriptions));
    if (!file.commit())
        return fileFailure(QStringLiteral("write ") + path, file);
    return int(subscriptions.size());
}

QString text(const char *source, int number)
{
    return QCoreApplication::translate("Tidel::SubscriptionFiles", source, nullptr, number);
}

} // namespace

QString ImportOutcome::toString() const
{
    QString line =
        text(QT_TRANSLATE_N_NOOP("Tidel::SubscriptionFiles", "%n new channel(s)"), int(uris.size()));
    if (known > 0)
        line += text(QT_TRANSLATE_N_NOOP("Tidel::SubscriptionFiles", "; %n were there before"), known);
    if (problems > 0)
        line += text(QT_TRANSLATE_N_NOOP("Tidel::SubscriptionFiles", "; %n could not be read"), problems);
    return line;
}

QFuture<Result<ImportOutcome>> importChannels(Archive *archive, const QString &path)
{
    return archive->change([path](const Store &store) {
        return contentOf(path).and_then(Opml::read).and_then([&store](const Opml::Content &content) {
            return importContent(store, content);
        });
    });
}

QFuture<Result<int>> exportChannels(Archive *archive, const QString &path)
{
    return archive->read([path](const Store &store) {
        return Subscriptions(store).all().and_then(
            [&path](const QList<Subscription> &all) { return write(path, all); });
    });
}

} // namespace Tidel
