// SPDX-License-Identifier: LGPL-2.1-or-later
#include <commandtable.h>
#include <manual.h>

#include <QtTest>

namespace {

QByteArray feed(const QString &title)
{
    return "<rss version='2.0'><channel><title>" + title.toHtmlEscaped().toUtf8()
        + "</title></channel></rss>";
}

} // namespace

/// Tests the completion of commands in shells, and the manual page.
class TestCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void words_data();
    void words();
    void withoutStore();
    void bash_data();
    void bash();
    void manual();

private:
    QString run(const QString &program, const QStringList &arguments, const QString &data = "data") const;
    QStringList completed(const QStringList &words, const QString &data = "data") const;

    QTemporaryDir m_folder;
};

QString TestCompletion::run(const QString &program, const QStringList &arguments, const QString &data) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_folder.filePath(data));
    environment.insert("PATH", QFileInfo(TIDEL_PROGRAM).path() + ':' + environment.value("PATH"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qWarning() << arguments << process.readAllStandardError();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// What the program offers, without its meaning.
QStringList TestCompletion::completed(const QStringList &words, const QString &data) const
{
    QStringList candidates;
    const QStringList lines = run(TIDEL_PROGRAM, QStringList("--complete") + words, data).split('\n');
    for (const QString &line : lines.mid(0, lines.size() - 1)) {
        if (line.count('\t') != 1 || line.endsWith('\t'))
            qWarning() << "no meaning" << line;
        candidates.append(line.section('\t', 0, 0));
    }
    return candidates;
}

void TestCompletion::initTestCase()
{
    QStringList files;
    for (const char *title : {"Garden Notes", "Garden's \"End\"", "Town News", "Zo\u00eb"}) {
        files.append(m_folder.filePath(QString::number(files.size()) + ".xml"));
        QFile file(files.last());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(feed(title));
    }
    run(TIDEL_PROGRAM, QStringList("subscribe") + files);
    run(TIDEL_PROGRAM, {"folder", "Town News", "News/Local"});
}

void TestCompletion::words_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("candidates");

    QTest::newRow("commands") << QStringList{""} << Tidel::commandNames();
    QTest::newRow("command") << QStringList{"unsub"} << QStringList{"unsubscribe"};
    QTest::newRow("no such command") << QStringList{"frob"} << QStringList();
    QTest::newRow("of an unknown command") << QStringList{"frob", ""} << QStringList();
    QTest::newRow("channels") << QStringList{"refresh", ""}
                              << QStringList{"Garden Notes", "Garden's \"End\"", "Town News", "Zo\u00eb"};
    QTest::newRow("second channel") << QStringList{"refresh", "Zo\u00eb", "town"} << QStringList{"Town News"};
    QTest::newRow("no such channel") << QStringList{"refresh", "x"} << QStringList();
    QTest::newRow("options") << QStringList{"export", "--"} << QStringList{"--opml", "--json", "--quiet"};
    QTest::newRow("option") << QStringList{"edit", "Zo\u00eb", "--ti"} << QStringList{"--title"};
    QTest::newRow("value") << QStringList{"search", "bean", "--channel", "Z"} << QStringList{"Zo\u00eb"};
    QTest::newRow("value without candidates")
        << QStringList{"edit", "Zo\u00eb", "--title", ""} << QStringList();
    QTest::newRow("folders") << QStringList{"folder", "Zo\u00eb", "News"} << QStringList{"News/Local"};
    QTest::newRow("files") << QStringList{"import", ""} << QStringList();
    QTest::newRow("no arguments") << QStringList{"stats", ""} << QStringList();
}

void TestCompletion::words()
{
    QFETCH(QStringList, words);
    QTEST(completed(words), "candidates");
}

// Completion must not create a store.
void TestCompletion::withoutStore()
{
    QCOMPARE(completed({"refresh", ""}, "nothing"), QStringList());
    QVERIFY(!QFile::exists(m_folder.filePath("nothing")));
}

void TestCompletion::bash_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("replies");

    QTest::newRow("command") << "tidel unsub"
                             << "unsubscribe\n";
    QTest::newRow("title") << "tidel refresh Tow"
                           << "Town\\ News\n";
    QTest::newRow("begun with a backslash") << "tidel refresh Town\\\\\\ N"
                                            << "Town\\ News\n";
    QTest::newRow("begun with a quote") << "tidel refresh \\\"Town\\ N"
                                        << "Town News\n";
    QTest::newRow("nothing typed") << "tidel folder Zo\u00eb ''"
                                   << "Garden\\ Notes\nGarden\\'s\\ \\\"End\\\"\n"
                                      "Town\\ News\nZo\u00eb\nNews/Local\n";
}

void TestCompletion::bash()
{
    QFETCH(QString, words);
    const QString script =
        QString("source %1/tidel.bash; COMP_WORDS=(%2); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
                "_tidel; printf '%s\\n' \"${COMPREPLY[@]}\"")
            .arg(TIDEL_COMPLETION, words);
    QTEST(run("bash", {"--norc", "-c", script}), "replies");
}

void TestCompletion::manual()
{
    const QString page = Tidel::manualPage("1.2.3");
    QVERIFY(page.contains("\"tidel 1.2.3\""));
    const auto commands = Tidel::allCommands();
    for (const Tidel::Command *command : commands) {
        QVERIFY2(page.contains(QString(".SS \"tidel %1 ").arg(command->name)), command->name);
        for (const Tidel::Option &option : command->options)
            QVERIFY2(page.contains("\\fB\\-\\-" + QString(option.name).replace("-", "\\-") + "\\fR"),
                     option.name);
    }
    // A line that begins with a dot or a quote is a request.
    const QRegularExpression request("^(\\.(TH|SH|SS|PP|TP|B|BR|RI|I|nf|fi)\\b|\\.\\\\\" SPDX|[^.'])");
    const QStringList lines = page.split('\n', Qt::SkipEmptyParts);
    for (const QString &line : lines)
        QVERIFY2(request.match(line).hasMatch(), qPrintable(line));
}

QTEST_GUILESS_MAIN(TestCompletion)
#include "tst_completion.moc"
