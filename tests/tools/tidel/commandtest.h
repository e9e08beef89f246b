// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef COMMANDTEST_H
#define COMMANDTEST_H

#include <command.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <storetest.h>

#include <QTemporaryDir>

Q_DECLARE_METATYPE(const Tidel::Command *)
using Options = QHash<QString, QString>;

/// The result of a command.
struct CommandResult
{
    QString out; ///< The results.
    QString err; ///< The notes and errors.
    bool isFine = false; ///< True if the command succeeded.
};

/// Runs \a command on the store of the environment.
CommandResult runCommand(const Tidel::Command &command, const QStringList &names,
                         const Options &options = {});

/// Returns a message with the title \a name. Its link and those of its enclosures are linkOf() their names.
FeedMessage message(const QString &name, const QDateTime &published = {}, const QStringList &enclosures = {});
/// Returns the link `https://example.org/NAME`.
QString linkOf(const QString &name);
/// Returns noon UTC of \a day in November 2026.
QDateTime day(int day);

/// The base of tests that call the functions of commands. Each test function has a new store and home folder.
class CommandTestCase : public StoreTestCase
{
    Q_OBJECT

protected:
    /// Stores a channel with the link `https://example.org/TITLE`, and returns its URI.
    QString addChannel(const QString &title, const QList<FeedMessage> &messages = {}) const;
    /// The titles of the channel's messages, sorted.
    QStringList titles(const QString &channelUri) const;
    /// The dropped links of the channel, sorted.
    QStringList dropped(const QString &channelUri) const;
    /// Marks the message \a name as a favorite.
    void addFavorite(const QString &name) const;

    /// Marks the message \a name as read.
    void markRead(const QString &name) const;

    /// Stores \a localUrl as the file of an enclosure.
    void setLocalUrl(const QString &enclosure, const QString &localUrl) const;
    /// The home folder.
    QString home() const { return m_home->path(); }

    /// The queries since StatementGate::reset() that contain nie:isLogicalPartOf twice. Tracker reads all its
    /// values for them.
    static QStringList costlyQueries();

    /**
     * Lets each statement of \a command fail, once because the store refuses it and once because the store
     * does not answer. Each time \a fill fills a new store, the command must report the failure, and \a check
     * is called.
     */
    void failEverywhere(const Tidel::Command &command, const QStringList &names, const Options &options,
                        const std::function<void()> &fill, const std::function<void()> &check);

protected Q_SLOTS:
    void init();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

#endif
