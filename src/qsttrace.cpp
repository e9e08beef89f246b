// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsttrace.h"

namespace {

// contract: five fields with a line feed each. The blank that the stream writes behind them is the filler
// that readers skip.
QByteArray prefix(const QstTraceOrigin &origin)
{
    QByteArray text;
    for (const QByteArray &field :
         {QByteArray(origin.category), QByteArray(origin.file), QByteArray::number(origin.line),
          QByteArray(origin.signature), QByteArray(origin.function)}) {
        text += field;
        text += '\n';
    }
    return text;
}

/// The category that Qt sees. Qt applies its logging rules to messages without a category and in "default",
/// which would let QT_LOGGING_RULES suppress traces.
const char *qtCategory(const char *category)
{
    return category && qstrcmp(category, "default") != 0 ? category : "";
}

} // namespace

QstTrace::QstTrace(QtMsgType type, const QstTraceOrigin &origin)
    : m_type(type), m_origin(origin), m_stream(&m_text)
{
    m_stream << prefix(origin).constData();
}

QstTrace::~QstTrace()
{
    // contract: the blank at the end. Qt's own debug streams drop it, log readers compare it.
    qt_message_output(
        m_type,
        QMessageLogContext(m_origin.file, m_origin.line, m_origin.signature, qtCategory(m_origin.category)),
        m_text);
}

QDebug &QstTrace::stream() { return m_stream; }
