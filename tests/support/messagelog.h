// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGELOG_H
#define MESSAGELOG_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <utility>
#include <vector>

/// A message that has reached Qt's message handler.
struct LoggedMessage
{
    QtMsgType type;
    QString text;

    /// Returns the parts of a structured message: five fields, and the message with its leading blank.
    QStringList parts() const { return text.split(QLatin1Char('\n')); }
    /// Returns the message without its fields and the filler blank. It may contain line breaks.
    QString message() const { return text.section(QLatin1Char('\n'), 5).mid(1); }
    QString signature() const { return parts().value(3); }
    QString function() const { return parts().value(4); }
};

/// Collects all messages of the process while it exists. Nothing is printed.
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();

    /// Returns the messages since the last call.
    std::vector<LoggedMessage> take();
    /// Returns the texts of the messages of \a type since the last call of take(), without their fields.
    QStringList texts(QtMsgType type) const;

private:
    static void collect(QtMsgType type, const QMessageLogContext &context, const QString &text);

    QtMessageHandler m_previous;
};

#endif
