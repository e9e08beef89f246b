// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagewriter.h"

#include "likeness_p.h"
#include "messageupdate_p.h"
#include "readingnote_p.h"
#include "statements_p.h"

#include <algorithm>

namespace Tidel {

namespace {

const char *const attempt = "add messages to the store";
// In characters. While one update runs, other programs wait and this one hears no signal.
constexpr int maximumWeight = 250 * 1000;

Failure failure(Error::Kind kind, const char *reason)
{
    return Failure(Error(kind, QString::fromLatin1(attempt), QString::fromLatin1(reason)));
}

// Other texts would be encoded, and then name another resource.
bool mayBeChannel(const QString &uri)
{
    return !uri.isEmpty() && Statements::iri(uri) == QLatin1Char('<') + uri + QLatin1Char('>');
}

} // namespace

class MessageWriter::Groups
{
public:
    Groups(const Store &store, const QString &channelUri, const LinkUse &use, const KnownItems &items)
        : m_store(store), m_channelUri(channelUri), m_use(use), m_items(items)
    {
    }

    /// Writes one group. If the store refuses it because of a value, writes its halves, so that only the
    /// messages with such values are left out.
    Result<void> write(const QList<StorableMessage> &messages)
    {
        const Result<void> written = writeAtOnce(messages);
        const bool canBeSplit = messages.size() > 1;
        if (written || written.error().kind() != Error::StoreRefused || !canBeSplit)
            return written;
        const int half = int(messages.size()) / 2;
        const Result<void> first = write(messages.mid(0, half));
        const Result<void> second = write(messages.mid(half));
        return first ? second : first;
    }

    /// Writes \a messages and notes \a reading with one update, or writes nothing.
    Result<void> write(const QList<StorableMessage> &messages, const Reading &reading)
    {
        return write(messages, m_use, noteOf(reading, m_channelUri), nullptr);
    }

    const WrittenMessages &written() const { return m_written; }

    static const KnownMessage *knownMessage(const StorableMessage &message, const LinkUse &use,
                                            const KnownItems &items)
    {
        const KnownMessage *known = items.message(message.key());
        return known ? known : use.message(message.link().toString());
    }

private:
    Result<void> writeAtOnce(const QList<StorableMessage> &messages)
    {
        Result<LinkUse> use = m_use;
        while (use) {
            bool isOutOfDate = false;
            const Result<void> written = write(messages, *use, QString(), &isOutOfDate);
            if (!isOutOfDate)
                return written;
            QList<Link> links;
            for (const StorableMessage &message : messages)
                links.append(message.link());
            use = LinkUse::of(m_store, links, m_channelUri);
        }
        return Failure(use.error());
    }

    /// Writes \a messages and \a note with one update. Sets \a isOutOfDate if the store has got some of them
    /// since \a use was asked for.
    Result<void> write(const QList<StorableMessage> &messages, const LinkUse &use, const QString &note,
                       bool *isOutOfDate)
    {
        MessageUpdate update(StorePrivate::of(m_store), m_channelUri, note);
        QSet<QString> seen;
        for (const StorableMessage &message : messages) {
            if (message.link().isNull())
                return failure(Error::StoreRefused, "a message has no link");
            add(&update, message, use, seen);
            seen.insert(message.link().toString());
        }
        const Result<void> written = update.run();
        if (!written && written.error().kind() == Error::StoreRefused && isOutOfDate)
            *isOutOfDate = update.isOutOfDate().value_or(false);
        return written.map([&] {
            m_links.unite(seen);
            m_written.added += update.addedLinks();
            m_written.changed += update.changedLinks();
        });
    }

    /// Adds \a message to \a update, which has messages with the links \a seen.
    void add(MessageUpdate *update, const StorableMessage &message, const LinkUse &use,
             const QSet<QString> &seen) const
    {
        const QString link = message.link().toString();
        const KnownMessage *known = knownMessage(message, use, m_items);
        if (seen.contains(link) || m_links.contains(link))
            update->addEnclosures(message);
        else if (known)
            update->change(message, *known);
        else if (use.isOfMessage(message.link()))
            update->join(message);
        else
            update->insert(message);
    }

    const Store m_store;
    const QString m_channelUri;
    const LinkUse &m_use;
    const KnownItems &m_items;
    QSet<QString> m_links; // which the store has got since it was asked
    WrittenMessages m_written;
};

MessageWriter::MessageWriter(const Store &store) : m_store(store) { }

int MessageWriter::groupSize(const QList<StorableMessage> &messages, int from)
{
    const int most = std::min(chunkSize, int(messages.size()) - from);
    int size = 1;
    int weight = messages.at(from).weight();
    while (size < most && (weight += messages.at(from + size).weight()) <= maximumWeight)
        ++size;
    return size;
}

bool MessageWriter::isStored(const StorableMessage &message, const QString &channelUri, const LinkUse &use,
                             const KnownItems &items, bool *isOwn)
{
    const KnownMessage *known = Groups::knownMessage(message, use, items);
    if (!known || (!known->hasKey && !message.key().isEmpty()))
        return false;
    const QString said = digest(message.message(), channelUri);
    if (isOwn)
        *isOwn = known->digest == said;
    return MessageChanges::saysSame(*known, said);
}

Result<void> MessageWriter::write(const QList<StorableMessage> &messages, const QString &channelUri,
                                  const LinkUse &use, const KnownItems &items, WrittenMessages *written)
{
    if (!mayBeChannel(channelUri))
        return failure(Error::NotFound, "no such channel");
    Groups groups(m_store, channelUri, use, items);
    Result<void> result;
    for (int from = 0, size = 0; from < messages.size(); from += size) {
        size = groupSize(messages, from);
        const Result<void> done = groups.write(messages.mid(from, size));
        if (!done && result)
            result = done;
        // Each further try could wait as long for the store as this one.
        if (!done && done.error().kind() == Error::StoreFailed)
            break;
    }
    if (written)
        *written = groups.written();
    return result;
}

Result<void> MessageWriter::writeLast(const QList<StorableMessage> &messages, const QString &channelUri,
                                      const Reading &reading, const LinkUse &use, const KnownItems &items,
                                      WrittenMessages *written)
{
    if (!mayBeChannel(channelUri))
        return failure(Error::NotFound, "no such channel");
    Groups groups(m_store, channelUri, use, items);
    return groups.write(messages, reading).map([&] { *written = groups.written(); });
}

} // namespace Tidel
