// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef READERTEST_H
#define READERTEST_H

#include <TidelReader/error.h>
#include <TidelReader/removal.h>
#include <TidelReader/store.h>

#include <storetest.h>

#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <optional>

/// Returns \a list in alphabetical order.
QStringList sorted(QStringList list);

/// \name Names of test data
/// The URI of the message "a" is `urn:message:a`, and its link is `https://example.org/a`.
/// @{
QString channelUri(const QString &name);
QString messageUri(const QString &name);
QString enclosureUri(const QString &name);
QString linkOf(const QString &name);
QStringList messageUris(const QStringList &names);
QStringList linksOf(const QStringList &names);
/// Returns "PREFIX1", "PREFIX2" and so on.
QStringList numberedNames(const QString &prefix, int count);
/// @}

/// Calls \a work while another thread has the turn to write. Returns true if it waits for the turn and ends
/// its own; otherwise returns false.
bool takesTurn(const std::function<void()> &work);

/// Returns the error of \a result; an empty text if it has a value.
template <typename T> QString errorText(const Tidel::Result<T> &result)
{
    return result ? QString() : result.error().text();
}

#define VERIFY_OK(result) QCOMPARE(errorText(result), QString())

#define VERIFY_ERROR(result, expectedKind, expectedText)                                                     \
    do {                                                                                                     \
        const auto &failed = (result);                                                                       \
        QVERIFY(!failed);                                                                                    \
        QCOMPARE(failed.error().kind(), expectedKind);                                                       \
        QCOMPARE(failed.error().text(), QString(expectedText));                                              \
    } while (false)

/// Collects the steps of a removal.
class StepLog
{
public:
    Tidel::RemovalStep listener();
    /// Returns a line for each step: the number of messages and the sorted URIs of the enclosures.
    QStringList lines() const { return m_lines; }
    /// Returns the enclosures of all steps.
    QList<FeedEnclosure> enclosures() const { return m_enclosures; }

private:
    QStringList m_lines;
    QList<FeedEnclosure> m_enclosures;
};

/// The base of the tests of libTidelReader that need a store. Each test has a new store.
class ReaderTestCase : public StoreTestCase
{
    Q_OBJECT

protected:
    const Tidel::Store &reader() const { return *m_reader; }

    void addChannel(const QString &name) const;
    /// Stores messages of a channel, each with texts that contain its name. The first one is of \a firstDay
    /// of November 2026, the next one of the day after. The messages have no date if \a firstDay is 0.
    void addMessages(const QStringList &names, const QString &channel, int firstDay = 0) const;
    /// Makes a message a part of a second channel.
    void share(const QString &message, const QString &channel) const;
    void addEnclosure(const QString &name, const QString &ownerUri) const;
    /// Stores the messages "a" and "b", and three enclosures of "a". The message "b" has "shared.ogg" too,
    /// and the channel "radio" has "icon.png". Nothing else has "own.ogg".
    void addOwnAndSharedEnclosures() const;
    void addFavorite(const QString &message) const;
    /// Stores that messages with the links of \a names were dropped from the channel.
    void addDropped(const QStringList &names, const QString &channel) const;

    /// Returns the sorted names of the stored messages of a channel.
    QStringList messagesIn(const QString &channel) const;
    /// Returns the sorted links that were dropped from a channel.
    QStringList droppedFrom(const QString &channel) const;
    /// Returns everything in the store, without the URIs that the library has made and without times of now.
    QStringList contents() const
    {
        const QStringList lines =
            everythingIn(store()).filter(QRegularExpression("^(?!.*#(favorite|queued)Time )"));
        return patterned(lines.join('\n')).split('\n');
    }

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    std::optional<Tidel::Store> m_reader;
};

#endif
