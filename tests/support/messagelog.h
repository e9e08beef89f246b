// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGELOG_H
#define MESSAGELOG_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <utility>
#include <vector>

/// A message as it reached Qt's message handler.
struct LoggedMessage
{
    QtMsgType type;
    QString text;

    /// The parts of a structured message: five fields and the message with its leading blank.
    QStringList parts() const { return text.split(QLatin1Char('\n')); }
    /// What follows the prefix, the filler blank left out; a message may have line breaks of its own.
    QString message() const { return text.section(QLatin1Char('\n'), 5).mid(1); }
    QString signature() const { return parts().value(3); }
    QString function() const { return parts().value(4); }
};

/// Collects every message of the process while it lives; nothing is printed.
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();

    /// The messages since the last call.
    std::vector<LoggedMessage> take();
    /// The message texts of that type since the last call of take(), with their prefixes left out.
    QStringList texts(QtMsgType type) const;

private:
    static void collect(QtMsgType type, const QMessageLogContext &context, const QString &text);

    QtMessageHandler m_previous;
};

#endif
