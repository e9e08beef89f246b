// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandline.h"

#include <QCoreApplication>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

#include <clocale>
#include <cstdlib>

namespace {

// Traces are for those who ask a logger for them; a reader's terminal is for feeds.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

/// File names and output are UTF-8 even where the environment names no character set, as in a cron job.
void useUtf8()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    if (MB_CUR_MAX == 1)
        setlocale(LC_CTYPE, "C.UTF-8");
}

/// Names the machine's time zone where nobody else does: without a name the C library and GLib look for its
/// file again with every date they read.
void nameTimeZone()
{
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(dropMessage);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tidel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TIDEL_VERSION));
    useUtf8();
    nameTimeZone();
    return Tidel::runCommandLine(QCoreApplication::arguments());
}
