// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSTTRACE_H
#define QSTTRACE_H

#include "tidelglobal.h"

#include <QDebug>
#include <QString>

/// Where a trace message comes from; made by QST_HERE. The texts must outlive it.
struct QstTraceOrigin
{
    const char *category;
    const char *file;
    int line;
    const char *signature;
    const char *function;
};

/**
 * One structured message for Qt's message handler, in the form that QstLogger files.
 *
 * Hosts and plug-ins write with the macros, each in a category of its own; that of the store is "Tracker":
 * \code
 * QST_DEBUG("MyReader") << "refreshing" << channel.link();
 * QST_CRITICAL("MyReader") << "no channel of that name";
 * \endcode
 * A settings file switches the levels of a category on and off in the group of its name, `[MyReader]`.
 * Without a logger the messages go to whatever handler there is. A plug-in needs nothing else: the logger is
 * its host's.
 *
 * The message is five fields, each ended by a line feed - category, source file, source line, signature of
 * the function, its bare name - then one blank and the message itself, each item followed by a blank. A
 * category is not empty and has neither line feeds nor slashes. Texts of `char` are UTF-8 and written as they
 * are; a QString is quoted, and its line breaks and control characters are escaped.
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
    QstTrace(QtMsgType type, const QstTraceOrigin &origin);
    ~QstTrace();

    /// Takes the items of the message.
    QDebug &stream();

private:
    Q_DISABLE_COPY(QstTrace)

    const QtMsgType m_type;
    const QstTraceOrigin m_origin;
    QString m_text;
    QDebug m_stream;
};

/// This place in the code, under \a category.
#define QST_HERE(category)                                                                                   \
    QstTraceOrigin { category, __FILE__, __LINE__, Q_FUNC_INFO, __func__ }

/// Streams that write one message at the level of their name.
#define QST_DEBUG(category) QstTrace(QtDebugMsg, QST_HERE(category)).stream()
#define QST_WARNING(category) QstTrace(QtWarningMsg, QST_HERE(category)).stream()
#define QST_CRITICAL(category) QstTrace(QtCriticalMsg, QST_HERE(category)).stream()

#endif
