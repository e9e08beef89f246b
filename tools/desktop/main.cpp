// SPDX-License-Identifier: LGPL-2.1-or-later
#include "installtranslations.h"
#include "mainwindow.h"

#include <TidelReader/archive.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace {

/// Writes what is for a person. Traces of the libraries are not.
void showNotice(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const bool isForUser =
        qstrncmp(context.category, "tidel.", 6) == 0 || qstrncmp(context.category, "qt.", 3) == 0;
    if (isForUser && type != QtDebugMsg)
        std::fprintf(stderr, "tidel-desktop: %s\n", qPrintable(text));
}

/// Answers --help and --version, and ends the program if it does not know an argument.
void readArguments()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QApplication::translate("main", "A feed reader. It shows the archive that \"tidel\" works on."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(QApplication::arguments());
    if (parser.positionalArguments().isEmpty())
        return;
    std::fprintf(stderr, "%s\n",
                 qPrintable(QApplication::translate("main", "tidel-desktop takes no arguments; see --help")));
    std::exit(2);
}

constexpr int delayOfRefresh = 2000; // In milliseconds.

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(showNotice);
    // Qt 5 does not scale by itself. As an attribute, this would be deprecated in Qt 6.
    if (!qEnvironmentVariableIsSet("QT_ENABLE_HIGHDPI_SCALING"))
        qputenv("QT_ENABLE_HIGHDPI_SCALING", "1");
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tidel-desktop"));
    QApplication::setOrganizationName(QStringLiteral("tidel"));
    QApplication::setApplicationDisplayName(QStringLiteral("Tidel Desktop"));
    QApplication::setApplicationVersion(QStringLiteral(TIDEL_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("tidel-desktop"));
    QApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral("tidel-desktop"), QIcon(QStringLiteral(":/tidel-desktop.png"))));
    Tidel::installTranslations(application);
    readArguments();
    Tidel::Archive archive;
    Tidel::MainWindow window(&archive);
    window.show();
    // The first picture of the window comes before any work for the network.
    QTimer::singleShot(delayOfRefresh, &window, &Tidel::MainWindow::startRefreshing);
    return QApplication::exec();
}
