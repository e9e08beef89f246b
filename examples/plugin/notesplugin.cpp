// SPDX-License-Identifier: LGPL-2.1-or-later
// A download plug-in for text files of notes.
#include "noteswriter.h"

#include <feedplugininterface.h>

#include <functional>

using namespace Tidel;

class NotesPlugin : public FeedPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid FILE "notes.json")
    Q_PROPERTY(QStringList newMessages MEMBER m_newMessages)

public:
    explicit NotesPlugin(QObject *parent = nullptr) : FeedPluginInterface(parent) { }

    Q_INVOKABLE FeedPluginInterface *createDownloader(QObject *parent) const override
    {
        return new NotesPlugin(parent);
    }
    Q_INVOKABLE void subscribe(const QUrl &address) override;
    Q_INVOKABLE void downloadFeeds(const QStringList &channelUris) override;
    Q_INVOKABLE void downloadEnclosure(const QString &enclosureUri, const QString &folder) override;
    Q_INVOKABLE void cancel() override { m_isCanceled = true; }
    Q_INVOKABLE QString errorString() const override { return m_errorString; }

private:
    using Task = std::function<Outcome(const Store &)>;

    /// Begins an operation that runs \a tasks, one for each channel.
    void begin(const QList<Task> &tasks);
    /// Runs the next task, or ends the operation.
    void runNext();
    /// Ends an operation that cannot begin.
    void refuse(void (FeedPluginInterface::*failed)(int), const Outcome &outcome);

    QList<Task> m_tasks;
    bool m_isBusy = false;
    bool m_isCanceled = false;
    Outcome m_outcome; ///< The first failure of the tasks.
    QString m_errorString;
    QStringList m_newMessages;
};

void NotesPlugin::subscribe(const QUrl &address)
{
    begin({[this, address](const Store &store) { return addNotes(store, address, &m_newMessages); }});
}

void NotesPlugin::downloadFeeds(const QStringList &channelUris)
{
    QList<Task> tasks;
    for (const QString &uri : channelUris)
        tasks.append([this, uri](const Store &store) { return refreshNotes(store, uri, &m_newMessages); });
    begin(tasks);
}

void NotesPlugin::downloadEnclosure(const QString &, const QString &)
{
    refuse(&FeedPluginInterface::downloadEnclosureFailed,
           {FeedDownloadNotFound, QStringLiteral("notes have no enclosures")});
}

void NotesPlugin::begin(const QList<Task> &tasks)
{
    if (m_isBusy) {
        refuse(&FeedPluginInterface::downloadFeedsFailed,
               {FeedDownloadBusy, QStringLiteral("another download is under way")});
        return;
    }
    m_tasks = tasks;
    m_isBusy = true;
    m_isCanceled = false;
    m_outcome = Outcome();
    m_newMessages.clear();
    QMetaObject::invokeMethod(this, &NotesPlugin::runNext, Qt::QueuedConnection);
}

void NotesPlugin::runNext()
{
    if (m_isCanceled)
        m_outcome = {FeedDownloadCanceled, QStringLiteral("canceled")};
    if (m_isCanceled || m_tasks.isEmpty()) {
        // The receiver may begin the next operation.
        m_isBusy = false;
        m_errorString = m_outcome.reason;
        if (m_outcome.error == FeedDownloadNoError)
            Q_EMIT downloadFeedsFinished();
        else
            Q_EMIT downloadFeedsFailed(m_outcome.error);
        return;
    }
    const Task task = m_tasks.takeFirst();
    const Result<Store> store = Store::open();
    const Outcome outcome = store ? task(*store) : storeFailed(store.error());
    if (m_outcome.error == FeedDownloadNoError)
        m_outcome = outcome;
    QMetaObject::invokeMethod(this, &NotesPlugin::runNext, Qt::QueuedConnection);
}

void NotesPlugin::refuse(void (FeedPluginInterface::*failed)(int), const Outcome &outcome)
{
    const auto report = [this, failed, outcome] {
        m_errorString = outcome.reason;
        Q_EMIT(this->*failed)(outcome.error);
    };
    QMetaObject::invokeMethod(this, report, Qt::QueuedConnection);
}

#include "notesplugin.moc"
