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
 * One structured message for Qt's message handler.
 *
 * The message is five fields, each ended by a line feed - category, source file, source line, signature of
 * the function, its bare name - then one blank and the message itself, each item followed by a blank. It goes
 * to the handler when the trace is destroyed, on the thread that wrote it. Use the macros: \code
 * QST_DEBUG("MyReader") << "refreshing" << channel.link();
 * QST_CRITICAL("MyReader") << "no channel of that name";
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
