// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pluginswitch_p.h"

#include "enclosures.h"
#include "feeds.h"

#include <QUrl>

#include <algorithm>

namespace Tidel {

namespace {

// What a host reads of a downloader after the download of feeds.
const char *const listProperties[] = {"newMessages", "changedMessages", "newNotes", "headlines",
                                      "foundFeeds"};

/// The length of the longest one of \a beginnings that \a address has; -1 if it has none.
int longestMatch(const QStringList &beginnings, const QString &address)
{
    int longest = beginnings.isEmpty() ? 0 : -1;
    for (const QString &beginning : beginnings) {
        if (address.startsWith(beginning))
            longest = std::max(longest, int(beginning.size()));
    }
    return longest;
}

} // namespace

int choiceFor(const QVector<PluginChoice> &choices, const QString &address)
{
    int best = -1;
    int longest = -1;
    for (int i = 0; i < choices.size(); ++i) {
        const int match = longestMatch(choices.at(i).addresses, address);
        if (match > longest) {
            longest = match;
            best = i;
        }
    }
    return best;
}

PluginSwitch::PluginSwitch(const QVector<PluginChoice> &choices, QObject *parent)
    : FeedPluginInterface(parent), m_choices(choices)
{
}

FeedPluginInterface *PluginSwitch::createDownloader(QObject *parent) const
{
    return new PluginSwitch(m_choices, parent);
}

void PluginSwitch::subscribe(const QUrl &address)
{
    if (!begin(&FeedPluginInterface::downloadFeedsFailed))
        return;
    const int choice = choiceFor(m_choices, address.toString());
    if (choice < 0) {
        fail(&FeedPluginInterface::downloadFeedsFailed, FeedDownloadBadAddress,
             QStringLiteral("no download plug-in takes this address"));
        return;
    }
    use(choice)->subscribe(address);
}

void PluginSwitch::downloadFeeds(const QStringList &channelUris)
{
    if (!begin(&FeedPluginInterface::downloadFeedsFailed))
        return;
    const Result<Store> store = Store::open();
    for (const QString &uri : channelUris) {
        const Result<QString> link =
            store.and_then([&](const Store &open) { return Feeds(open).state(uri).map(&FeedState::link); });
        const int choice = choiceForStored(link);
        const auto group = std::find_if(m_groups.begin(), m_groups.end(),
                                        [&](const Group &each) { return each.choice == choice; });
        if (group == m_groups.end())
            m_groups.append(Group{choice, QStringList(uri)});
        else
            group->channels.append(uri);
    }
    if (m_groups.isEmpty())
        m_groups.append(Group{0, {}});
    downloadNextGroup();
}

void PluginSwitch::downloadEnclosure(const QString &enclosureUri, const QString &folder)
{
    if (!begin(&FeedPluginInterface::downloadEnclosureFailed))
        return;
    const Result<QString> address = Store::open().and_then([&](const Store &store) {
        return Enclosures(store).get(enclosureUri).map(&FeedEnclosure::remoteUrl);
    });
    use(choiceForStored(address))->downloadEnclosure(enclosureUri, folder);
}

void PluginSwitch::cancel()
{
    if (m_current)
        m_current->cancel();
}

QString PluginSwitch::errorString() const { return m_errorString; }

bool PluginSwitch::begin(Failed failed)
{
    if (m_current) {
        fail(failed, FeedDownloadBusy, QStringLiteral("another download is under way"));
        return false;
    }
    for (const char *name : listProperties)
        setProperty(name, QVariant());
    m_groups.clear();
    m_firstError = FeedDownloadNoError;
    m_errorString.clear();
    return true;
}

void PluginSwitch::fail(Failed failed, int error, const QString &reason)
{
    QMetaObject::invokeMethod(
        this,
        [this, failed, error, reason] {
            m_errorString = reason;
            Q_EMIT(this->*failed)(error);
        },
        Qt::QueuedConnection);
}

FeedPluginInterface *PluginSwitch::use(int choice)
{
    FeedPluginInterface *&downloader = m_downloaders[choice];
    if (!downloader) {
        downloader = m_choices.at(choice).plugin->createDownloader(this);
        listenTo(downloader);
    }
    m_current = downloader;
    return downloader;
}

void PluginSwitch::listenTo(FeedPluginInterface *downloader)
{
    connect(downloader, &FeedPluginInterface::downloadFeedsFinished, this,
            [this] { endGroup(FeedDownloadNoError); });
    connect(downloader, &FeedPluginInterface::downloadFeedsFailed, this, &PluginSwitch::endGroup);
    connect(downloader, &FeedPluginInterface::enclosureDownloadProgress, this,
            &FeedPluginInterface::enclosureDownloadProgress);
    connect(downloader, &FeedPluginInterface::downloadEnclosureFinished, this,
            [this](const QVariantMap &map) {
                m_current = nullptr;
                Q_EMIT downloadEnclosureFinished(map);
            });
    connect(downloader, &FeedPluginInterface::downloadEnclosureFailed, this, [this](int error) {
        m_errorString = m_current->errorString();
        m_current = nullptr;
        Q_EMIT downloadEnclosureFailed(error);
    });
}

void PluginSwitch::downloadNextGroup()
{
    const Group group = m_groups.takeFirst();
    use(group.choice)->downloadFeeds(group.channels);
}

void PluginSwitch::endGroup(int error)
{
    for (const char *name : listProperties) {
        const QVariantList results = property(name).toList() + m_current->property(name).toList();
        setProperty(name, results);
    }
    if (m_firstError == FeedDownloadNoError && error != FeedDownloadNoError) {
        m_firstError = error;
        m_errorString = m_current->errorString();
    }
    if (!m_groups.isEmpty() && error != FeedDownloadCanceled) {
        downloadNextGroup();
        return;
    }
    m_current = nullptr;
    if (m_firstError == FeedDownloadNoError)
        Q_EMIT downloadFeedsFinished();
    else
        Q_EMIT downloadFeedsFailed(m_firstError);
}

int PluginSwitch::choiceForStored(const Result<QString> &address) const
{
    return address ? std::max(0, choiceFor(m_choices, *address)) : 0;
}

} // namespace Tidel
