// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QFile>
#include <QTest>

#include <sqlite3.h>

/// Tests which resources Tracker removes when the store is closed: those that nothing refers to any more.
class TestClosing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deletedResources();
    void replacedResource();
    void nothingDeleted();

private:
    void changeAndClose(const QString &update) const;
    bool holds(const char *uri) const;
    void leaveResource() const;
    QVector<int> ask(const char *sql) const;

    const QTemporaryDir m_folder;
};

namespace {

const char *const leftResource = "urn:left";

} // namespace

void TestClosing::changeAndClose(const QString &update) const
{
    const ScratchStore::Connection connection = ScratchStore::connect(m_folder.path());
    VERIFY_DONE(ScratchStore::run(*connection, update, QSparqlQuery::InsertStatement));
}

/// Runs \a sql on the closed database. Returns the numbers of its rows.
QVector<int> TestClosing::ask(const char *sql) const
{
    QVector<int> numbers;
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(m_folder.filePath(QStringLiteral("meta.db"))).constData(), &database);
    const auto append = [](void *list, int, char **values, char **) {
        static_cast<QVector<int> *>(list)->append(QByteArray(values[0]).toInt());
        return 0;
    };
    const int state = sqlite3_exec(database, sql, append, &numbers, nullptr);
    sqlite3_close(database);
    return state == SQLITE_OK ? numbers : QVector<int>{-1};
}

bool TestClosing::holds(const char *uri) const
{
    const QByteArray sql = QByteArrayLiteral("SELECT 1 FROM Resource WHERE Uri = '") + uri + "'";
    return ask(sql.constData()) == QVector<int>{1};
}

/// Adds a resource that nothing refers to, as a killed program leaves it.
void TestClosing::leaveResource() const
{
    QVERIFY(ask("INSERT INTO Resource (Uri, BlankNode) VALUES ('urn:left', 0)").isEmpty());
    QVERIFY(holds(leftResource));
}

void TestClosing::deletedResources()
{
    changeAndClose(QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage ; nie:links <urn:l>, <urn:k> }"));
    QVERIFY(holds("urn:a") && holds("urn:l"));
    leaveResource();
    changeAndClose(QStringLiteral("DELETE { <urn:a> nie:links <urn:l> }"));
    QVERIFY(!holds("urn:l") && !holds(leftResource));
    QVERIFY(holds("urn:a") && holds("urn:k"));
    changeAndClose(QStringLiteral("DELETE { <urn:a> a rdfs:Resource }"));
    QVERIFY(!holds("urn:a") && !holds("urn:k"));
}

void TestClosing::replacedResource()
{
    changeAndClose(QStringLiteral("INSERT { <urn:b> a mfo:FeedMessage ; nie:links <urn:l> }"));
    changeAndClose(
        QStringLiteral("DELETE { <urn:b> nie:links <urn:l> } INSERT { <urn:b> nie:links <urn:n> }"));
    QVERIFY(!holds("urn:l") && holds("urn:n"));
}

// Nothing is sought, which takes longer the larger the store is.
void TestClosing::nothingDeleted()
{
    leaveResource();
    changeAndClose(QStringLiteral("INSERT { <urn:e> a mfo:FeedMessage ; nie:title 'one' }"));
    changeAndClose(QStringLiteral("DELETE { <urn:e> nie:title 'one' } INSERT { <urn:e> nie:title 'two' }"));
    QVERIFY(holds("urn:e") && holds(leftResource));
}

QTEST_GUILESS_MAIN(TestClosing)
#include "tst_closing.moc"
