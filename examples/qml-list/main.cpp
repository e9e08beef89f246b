// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: qml-list [ADDRESS...]
// Shows the archive in a window of QML, and subscribes to the feeds at ADDRESS.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QTextStream>

namespace {

/// Prints what QML complains about. Without a logger, the traces of the libraries would be printed too.
void printWarning(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtWarningMsg || type == QtFatalMsg)
        QTextStream(stderr) << text << '\n';
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(printWarning);
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral(TIDEL_QML_DIR));
    engine.load(QUrl(QStringLiteral("qrc:/main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
