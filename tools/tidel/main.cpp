// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandline.h"
#include "notices.h"

#include <QCoreApplication>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

#include <clocale>
#include <cstdlib>

namespace {

/// Uses UTF-8 for file names and output, even if the environment has no character set, as in a cron job.
void useUtf8()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    if (MB_CUR_MAX == 1)
        setlocale(LC_CTYPE, "C.UTF-8");
}

/// Sets the time zone if the environment does not. Otherwise the C library and GLib would look up the file of
/// the local time zone for each date.
void nameTimeZone()
{
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}

} // namespace

int main(int argc, char **argv)
{
    // Traces are written only if the user asks for a log.
    qInstallMessageHandler(Tidel::showNotice);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tidel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TIDEL_VERSION));
    useUtf8();
    nameTimeZone();
    return Tidel::runCommandLine(QCoreApplication::arguments());
}
