// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagelog.h"

#include <mutex>

namespace {

std::mutex mutex;
std::vector<LoggedMessage> collected;

} // namespace

MessageLog::MessageLog() : m_previous(qInstallMessageHandler(collect)) { collected.clear(); }

MessageLog::~MessageLog() { qInstallMessageHandler(m_previous); }

std::vector<LoggedMessage> MessageLog::take()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return std::exchange(collected, {});
}

QStringList MessageLog::texts(QtMsgType type) const
{
    QStringList result;
    for (const LoggedMessage &message : collected) {
        if (message.type == type)
            result.append(message.message());
    }
    return result;
}

void MessageLog::collect(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    const std::lock_guard<std::mutex> lock(mutex);
    collected.push_back({type, text});
}
