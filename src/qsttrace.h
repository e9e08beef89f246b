// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSTTRACE_H
#define QSTTRACE_H

#include "tidelglobal.h"

#include <QDebug>
#include <QString>

/// The place in the source code that writes a trace; QST_HERE creates it. The texts must outlive the object.
struct QstTraceOrigin
{
    const char *category; ///< the category of the message
    const char *file; ///< the path of the source file
    int line; ///< the line in the source file
    const char *signature; ///< the signature of the function
    const char *function; ///< the name of the function
};

/**
 * One structured message for Qt's message handler, in the form that QstLogger writes to its file.
 *
 * Hosts and plug-ins write traces with the macros, each in a category of its own. The store uses "Tracker".
 * \code
 * QST_DEBUG("MyReader") << "refreshing" << channel.link();
 * QST_CRITICAL("MyReader") << "no channel of that name";
 * \endcode
 * The settings file switches the levels of a category in a group of its name, here `[MyReader]`. Without a
 * logger, the messages go to the message handler of the process. A plug-in does not create a logger, because
 * its host has one.
 *
 * The message begins with five fields: category, source file, source line, signature and name of the
 * function. Each field ends with a line feed. One blank follows, and then the items, each followed by a
 * blank. A category must not be empty and must not contain line feeds or slashes. Texts of `char` are UTF-8
 * and are written as they are. A QString is quoted, and its line breaks and control characters are escaped.
 *
 * The message goes to the handler when the trace is destroyed, on the thread that wrote it. Any thread may
 * write traces. Qt's logging rules, such as QT_LOGGING_RULES, do not suppress them: only the settings file
 * does. The items are evaluated and formatted even if no handler uses them. A fatal message ends the process:
 * \code
 * QstTrace(QtFatalMsg, QST_HERE("MyReader")).stream() << "no store to work on";
 * \endcode
 */
class TIDEL_EXPORT QstTrace
{
public:
    /// Begins a message of the level \a type.
    QstTrace(QtMsgType type, const QstTraceOrigin &origin);
    /// Passes the message to the message handler.
    ~QstTrace();

    /// Returns the stream that the items of the message are written to.
    QDebug &stream();

private:
    Q_DISABLE_COPY(QstTrace)

    const QtMsgType m_type;
    const QstTraceOrigin m_origin;
    QString m_text;
    QDebug m_stream;
};

/// The QstTraceOrigin of this line, with the category \a category.
#define QST_HERE(category)                                                                                   \
    QstTraceOrigin { category, __FILE__, __LINE__, Q_FUNC_INFO, __func__ }

/// A stream that writes one debug message.
#define QST_DEBUG(category) QstTrace(QtDebugMsg, QST_HERE(category)).stream()
/// A stream that writes one warning.
#define QST_WARNING(category) QstTrace(QtWarningMsg, QST_HERE(category)).stream()
/// A stream that writes one critical message.
#define QST_CRITICAL(category) QstTrace(QtCriticalMsg, QST_HERE(category)).stream()

#endif
