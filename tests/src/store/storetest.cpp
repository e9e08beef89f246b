// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storetest.h"

#include <QSparqlConnection>
#include <QSparqlResult>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <ctime>

namespace {

/// The local times in traces have whole seconds.
const QDateTime startOfProgram = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC);

/// Returns the signatures of the functions by their names. The name of an overloaded function includes its
/// arguments.
const QHash<QString, QString> &signatures()
{
    static const QHash<QString, QString> texts = {
        {"instance", "static FeedTrackerSparql* FeedTrackerSparql::instance()"},
        {"releaseInstance", "static void FeedTrackerSparql::releaseInstance()"},
        {"FeedTrackerSparql", "FeedTrackerSparql::FeedTrackerSparql()"},
        {"~FeedTrackerSparql", "virtual FeedTrackerSparql::~FeedTrackerSparql()"},
        {"extractChannel", "FeedChannel extractChannel(const QSparqlResultRow&)"},
        {"extractMessage", "FeedMessage extractMessage(const QSparqlResultRow&)"},
        {"extractEnclosure", "FeedEnclosure extractEnclosure(const QSparqlResultRow&)"},
        {"allChannels", "QList<FeedChannel> FeedTrackerSparql::allChannels() const"},
        {"allChannelUrls", "QStringList FeedTrackerSparql::allChannelUrls() const"},
        {"channelForUri", "FeedChannel FeedTrackerSparql::channelForUri(const QString&) const"},
        {"channelType", "QString FeedTrackerSparql::channelType(const QString&) const"},
        {"messagesForChannel",
         "QList<FeedMessage> FeedTrackerSparql::messagesForChannel(const QString&) const"},
        {"enclosuresForMessage",
         "QList<FeedEnclosure> FeedTrackerSparql::enclosuresForMessage(const QString&) const"},
        {"enclosureForUri", "FeedEnclosure FeedTrackerSparql::enclosureForUri(const QString&) const"},
        {"allMessageUrls", "QStringList FeedTrackerSparql::allMessageUrls(const QString&) const"},
        {"messageLinksOfChannel",
         "QStringList FeedTrackerSparql::messageLinksOfChannel(const QString&) const"},
        {"latestPostPublishedTime", "QDateTime FeedTrackerSparql::latestPostPublishedTime(const QString&)"},
        {"addChannel", "QString FeedTrackerSparql::addChannel(const FeedChannel&) const"},
        {"addMessages",
         "bool FeedTrackerSparql::addMessages(const QList<FeedMessage>&, const QString&) const"},
        {"addMessageQuery",
         "QString FeedTrackerSparql::addMessageQuery(const FeedMessage&, const QString&) const"},
        {"addEnclosures",
         "bool FeedTrackerSparql::addEnclosures(const QList<FeedEnclosure>&, const QString&) const"},
        {"updateEnclosure", "bool FeedTrackerSparql::updateEnclosure(const FeedEnclosure&) const"},
        {"deletableMessageCount", "int FeedTrackerSparql::deletableMessageCount(const QString&) const"},
        {"deletableMessages", "QStringList FeedTrackerSparql::deletableMessages(const QString&, int)"},
        {"updateChannel", "bool FeedTrackerSparql::updateChannel(const FeedChannel&) const"},
        {"editChannel", "bool FeedTrackerSparql::editChannel(const QString&, const QVariantMap&) const"},
        {"deleteChannel", "void FeedTrackerSparql::deleteChannel(const QString&)"},
        {"deleteMessage", "void FeedTrackerSparql::deleteMessage(const QString&, const QString&)"},
        {"deleteMessages(const QString&)", "bool FeedTrackerSparql::deleteMessages(const QString&)"},
        {"deleteMessages(QList<QUrl>)", "void FeedTrackerSparql::deleteMessages(QList<QUrl>)"},
        {"deleteEnclosures(const QString&)", "void FeedTrackerSparql::deleteEnclosures(const QString&)"},
        {"deleteEnclosures(QList<QUrl>)", "void FeedTrackerSparql::deleteEnclosures(QList<QUrl>)"},
        {"deleteChannelImage", "void FeedTrackerSparql::deleteChannelImage(const QString&) const"},
        {"deleteChannelImageIfNotInUse",
         "void FeedTrackerSparql::deleteChannelImageIfNotInUse(const QString&, const QString&) const"},
        {"deleteOrphanMessages", "void FeedTrackerSparql::deleteOrphanMessages()"},
        {"deleteOrphanEnclosures", "void FeedTrackerSparql::deleteOrphanEnclosures()"},
    };
    return texts;
}

QString nameOfWriter(const LoggedMessage &trace) { return signatures().key(trace.signature()); }

bool isWellFormed(const LoggedMessage &trace)
{
    static const QRegularExpression decimal("^[1-9][0-9]*$");
    const QStringList parts = trace.parts();
    return parts.size() >= 6 && parts.at(0) == "Tracker" && parts.at(1) == "src/feedtrackersparql.cpp"
        && decimal.match(parts.at(2)).hasMatch() && !parts.at(4).isEmpty()
        && parts.at(4) == nameOfWriter(trace).section('(', 0, 0) && parts.at(5).startsWith(' ')
        && trace.text.endsWith(' ');
}

QString traceStart(const QString &level, const QString &function) { return level + ' ' + function + ": "; }

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg: return "debug";
    case QtCriticalMsg: return "critical";
    default: return QString("level %1").arg(int(type));
    }
}

/// Adds a line to the journal. It is a message, so that all lines are in order; the library writes no
/// informational messages.
void writeLine(const QString &line) { qt_message_output(QtInfoMsg, QMessageLogContext(), line); }

QString lineOf(const LoggedMessage &message)
{
    // This line was written by writeLine().
    if (message.type == QtInfoMsg)
        return message.text;
    // Warnings come from Qt, because the library writes none.
    if (message.type == QtWarningMsg)
        return warningLine(message.text);
    const QString level = levelName(message.type);
    return isWellFormed(message) ? traceStart(level, nameOfWriter(message)) + message.message()
                                 : "malformed " + level + ": " + message.text;
}

QString statementLine(QSparqlQuery::StatementType type, const QString &statement)
{
    switch (type) {
    case QSparqlQuery::SelectStatement: return selectLine(statement);
    case QSparqlQuery::InsertStatement: return insertLine(statement);
    case QSparqlQuery::DeleteStatement: return deleteLine(statement);
    default: return QString("statement of type %1: ").arg(int(type)) + statement;
    }
}

QString traceLine(const QString &level, const QString &function, const QStringList &items)
{
    return traceStart(level, function) + items.join(' ') + ' ';
}

int indexOfStatement(const QStringList &journal, int number)
{
    const auto isStatement = [](const QString &line) {
        return line.startsWith("select: ") || line.startsWith("insert: ") || line.startsWith("delete: ");
    };
    int index = -1;
    for (int i = 0; i <= number; ++i) {
        const auto next = std::find_if(journal.cbegin() + index + 1, journal.cend(), isStatement);
        if (next == journal.cend())
            qFatal("The journal has no statement %d", number);
        index = int(next - journal.cbegin());
    }
    return index;
}

/// Reports results that were deleted before control returned to the event loop, that kept their memory until
/// then, or that were not deleted then.
void checkResults(QStringList *lines)
{
    const QList<QPointer<QSparqlResult>> results = StatementGate::results();
    const auto living = [&results] {
        return std::count_if(results.cbegin(), results.cend(),
                             [](const QPointer<QSparqlResult> &result) { return !result.isNull(); });
    };
    if (living() != results.size())
        lines->append("a result is deleted at once");
    for (const QPointer<QSparqlResult> &result : results) {
        if (result && !result->query().isEmpty())
            lines->append("a result keeps its memory: " + result->query());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (living() != 0)
        lines->append("a result is never deleted");
}

/// Returns the folder of an empty store. Copying it is much faster than creating a new one.
QString pristineStore()
{
    static const QTemporaryDir folder;
    static const bool isMade = [] {
        QSparqlConnectionOptions options;
        options.setDatabaseName(folder.path());
        return QSparqlConnection("QTRACKER_DIRECT", options).isValid();
    }();
    return isMade ? folder.path() : QString();
}

bool copyFiles(const QDir &from, const QDir &to)
{
    const QStringList names = from.entryList(QDir::Files | QDir::Hidden);
    return to.mkpath(".") && std::all_of(names.cbegin(), names.cend(), [&from, &to](const QString &name) {
               return QFile::copy(from.filePath(name), to.filePath(name));
           });
}

QString withPrefixes(QString text)
{
    static const QString tracker = "http://tracker.api.gnome.org/ontology/v3/";
    for (const char *prefix : {"mfo", "nao", "nfo", "nie", "nrl"})
        text.replace(tracker + prefix + '#', QLatin1String(prefix) + QLatin1Char(':'));
    text.replace("http://www.w3.org/2000/01/rdf-schema#", "rdfs:");
    return text.replace("http://www.w3.org/1999/02/22-rdf-syntax-ns#type", "a");
}

bool isOfTheStoresOwn(const QString &line)
{
    static const QRegularExpression pattern(
        " nrl:(added|modified) | a (rdfs:Resource|nie:InformationElement|mfo:FeedElement)$");
    return pattern.match(line).hasMatch();
}

} // namespace

QString quoted(const QString &text) { return debugText(text); }

QString patterned(const QString &text)
{
    static const QRegularExpression pattern("urn:uuid:[0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12}"
                                            "|\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d");
    QString result;
    QStringList urns;
    int copied = 0;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString found = match.captured();
        QString name = found;
        if (found.startsWith("urn:")) {
            if (!urns.contains(found))
                urns.append(found);
            name = QString("URN%1").arg(urns.indexOf(found) + 1);
        } else {
            const QDateTime time = QDateTime::fromString(found, Qt::ISODate);
            if (time >= startOfProgram && time <= QDateTime::currentDateTime())
                name = "NOW";
        }
        result += text.mid(copied, int(match.capturedStart()) - copied) + name;
        copied = int(match.capturedEnd());
    }
    return result + text.mid(copied);
}

QString debugLine(const QString &function, const QStringList &items)
{
    return traceLine("debug", function, items);
}

QString criticalLine(const QString &function, const QStringList &items)
{
    return traceLine("critical", function, items);
}

QString selectLine(const QString &statement) { return "select: " + statement; }

QString insertLine(const QString &statement) { return "insert: " + statement; }

QString deleteLine(const QString &statement) { return "delete: " + statement; }

QString warningLine(const QString &text) { return "warning: " + text; }

QString signalLine(const QList<FeedEnclosure> &enclosures) { return "signal: " + debugText(enclosures); }

QStringList journalOf(const std::function<void()> &operation, const Interventions &interventions)
{
    StatementGate::reset();
    StatementGate::setJudge([&interventions](const QString &statement) {
        const QList<QSparqlQuery::StatementType> types = StatementGate::types();
        writeLine(statementLine(types.last(), statement));
        const auto found =
            std::find_if(interventions.begin(), interventions.end(), [&types](const Intervention &item) {
                return item.statement == int(types.size()) - 1;
            });
        return found == interventions.end() ? StatementGate::Pass : found->verdict;
    });
    MessageLog log;
    operation();
    QStringList lines;
    for (const LoggedMessage &message : log.take())
        lines.append(lineOf(message));
    checkResults(&lines);
    StatementGate::reset();
    // All lines are replaced together, so that a URN has the same name in all of them.
    const QChar separator(0xfdd0);
    return patterned(lines.join(separator)).split(separator, Qt::SkipEmptyParts);
}

QStringList throughStatement(const QStringList &journal, int number)
{
    return journal.mid(0, indexOfStatement(journal, number) + 1);
}

QStringList fromStatement(const QStringList &journal, int number)
{
    return journal.mid(indexOfStatement(journal, number));
}

void addFailureColumns()
{
    QTest::addColumn<Operation>("returnsItsEmptyValue");
    QTest::addColumn<Interventions>("interventions");
    QTest::addColumn<QStringList>("journal");
}

void addFailureRow(const QString &name, const Operation &returnsItsEmptyValue,
                   const Interventions &interventions, const QStringList &journal)
{
    QTest::newRow(qPrintable(name)) << returnsItsEmptyValue << interventions << journal;
}

void addFailureRows(const std::vector<SingleRead> &reads)
{
    addFailureColumns();
    for (const SingleRead &read : reads) {
        const QString name = read.function;
        const QStringList start = read.tracesBefore + QStringList(selectLine(read.statement));
        addFailureRow(name + ", no result", read.returnsItsEmptyValue, {{0, StatementGate::NoResult}},
                      start + QStringList(criticalLine(read.function, {read.noResult})));
        addFailureRow(name + ", refused", read.returnsItsEmptyValue, {{0, StatementGate::Refuse}},
                      start + QStringList(criticalLine(read.function, {read.error, quoted(read.statement)})));
    }
}

void checkFailingOperation()
{
    QFETCH(Operation, returnsItsEmptyValue);
    QFETCH(Interventions, interventions);
    QFETCH(QStringList, journal);
    bool returnedIt = false;
    QCOMPARE(journalOf([&] { returnedIt = returnsItsEmptyValue(); }, interventions), journal);
    QVERIFY(returnedIt);
}

QString storeErrorOf(const QString &statement)
{
    QSparqlConnection connection("QTRACKER_DIRECT");
    const std::unique_ptr<QSparqlResult> result(
        connection.exec(QSparqlQuery(statement, QSparqlQuery::InsertStatement)));
    return debugText(result->lastError());
}

QString refusalError() { return storeErrorOf(StatementGate::refusedStatement()); }

QStringList everythingIn(const TestStore &store)
{
    QStringList lines;
    // The resources of the ontology are omitted.
    for (const QString &line : store.texts(
             "SELECT ?s ?p ?o { ?s ?p ?o . FILTER(!STRSTARTS(STR(?s), 'http://tracker.api.') && "
             "!STRSTARTS(STR(?s), 'http://www.w3.org/') && !STRSTARTS(STR(?s), 'http://purl.org/dc/') && "
             "!STRSTARTS(STR(?s), 'http://tidel.org/ontology/')) }"))
        lines.append(withPrefixes(line));
    lines.erase(std::remove_if(lines.begin(), lines.end(), isOfTheStoresOwn), lines.end());
    lines.sort();
    return lines;
}

QStringList subjectsIn(const TestStore &store)
{
    QStringList subjects;
    for (const QString &line : everythingIn(store))
        subjects.append(line.section(' ', 0, 0));
    subjects.removeDuplicates();
    return subjects;
}

QStringList propertiesOf(const TestStore &store, const QString &subject)
{
    QStringList lines;
    for (const QString &line : everythingIn(store)) {
        if (line.startsWith(subject + ' '))
            lines.append(line.mid(subject.size() + 1));
    }
    return lines;
}

StoreTestCase::StoreTestCase()
{
    // The local time differs from UTC by a half hour. The rule needs no time zone database.
    qputenv("TZ", "XST-5:30");
    tzset();
}

void StoreTestCase::init()
{
    m_silence = std::make_unique<MessageLog>();
    const QString pristine = pristineStore();
    m_store = std::make_unique<TestStore>();
    QVERIFY(copyFiles(pristine, m_store->dataFolder() + "/tidel/store"));
    StatementGate::reset();
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this,
            [](const QList<FeedEnclosure> &enclosures) { writeLine(signalLine(enclosures)); });
}

void StoreTestCase::cleanup()
{
    StatementGate::reset();
    m_store.reset();
    m_silence.reset();
}
