// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef COMMANDTEST_H
#define COMMANDTEST_H

#include <arguments.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <storetest.h>

#include <QTemporaryDir>

namespace Tidel {
class Output;
class Store;
} // namespace Tidel

using Command = void (*)(const Tidel::Store &, const Tidel::Arguments &, Tidel::Output &);
using Options = QHash<QString, QString>;

/// What a command wrote, and whether it succeeded.
struct CommandResult
{
    QString out;
    QString err;
    bool isFine = false;
};

/// Runs \a command on the store that the environment names.
CommandResult runCommand(Command command, const QStringList &names, const Options &options = {});

/// A message called \a name, with the link `https://example.org/NAME` and enclosures of such links.
FeedMessage message(const QString &name, const QDateTime &published = {}, const QStringList &enclosures = {});
QString linkOf(const QString &name);
/// Noon UTC of that day of November 2026.
QDateTime day(int day);

/// The base of tests of commands in their own process: a store and a home of their own for each function.
class CommandTestCase : public StoreTestCase
{
    Q_OBJECT

protected:
    /// Stores a channel with the link `https://example.org/TITLE`, and returns its URI.
    QString addChannel(const QString &title, const QList<FeedMessage> &messages = {}) const;
    /// The titles of the channel's messages, sorted.
    QStringList titles(const QString &channelUri) const;
    /// The links that the channel remembers as dropped, sorted.
    QStringList dropped(const QString &channelUri) const;
    void addFavorite(const QString &name) const;

    /// An enclosure stands for the file \a localUrl from now on.
    void setLocalUrl(const QString &enclosure, const QString &localUrl) const;
    QString home() const { return m_home->path(); }

    /// The queries since StatementGate::reset() that name nie:isLogicalPartOf twice: Tracker then reads all
    /// its values.
    static QStringList costlyQuestions();

    /**
     * Lets each statement of \a command fail, once by a refusal and once without an answer, each time in a
     * new store that \a fill fills. The command must report it. Then \a check is called.
     */
    void failEverywhere(Command command, const QStringList &names, const Options &options,
                        const std::function<void()> &fill, const std::function<void()> &check);

protected Q_SLOTS:
    void init();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

#endif
