// SPDX-License-Identifier: LGPL-2.1-or-later
#include <nameditem.h>

#include <QtTest>

using namespace Tidel;

namespace {

ItemRecord record()
{
    ItemRecord record;
    record.link.text = "https://example.org/1";
    record.title = "Title";
    record.text = "Text";
    record.summary = "Summary";
    record.published = QDateTime(QDate(2026, 11, 3), QTime(10, 0), Qt::UTC);
    FileRecord file;
    file.address.text = "https://example.org/1.mp3";
    record.files.append(file);
    return record;
}

} // namespace

Q_DECLARE_METATYPE(ItemRecord)

class TestNamedItem : public QObject
{
    Q_OBJECT

private slots:
    void givenName();
    void hashes_data();
    void hashes();
    void sameItem();
};

void TestNamedItem::givenName()
{
    ItemRecord given = record();
    given.id = "tag:example.org,2026:1";
    QCOMPARE(NamedItem(std::move(given)).id, QString("tag:example.org,2026:1"));
}

void TestNamedItem::hashes_data()
{
    QTest::addColumn<ItemRecord>("changed");
    const auto addRow = [](const char *name, void (*change)(ItemRecord &)) {
        ItemRecord changed = record();
        change(changed);
        QTest::newRow(name) << changed;
    };
    addRow("link", [](ItemRecord &item) { item.link.text += '2'; });
    addRow("title", [](ItemRecord &item) { item.title += '2'; });
    addRow("text", [](ItemRecord &item) { item.text += '2'; });
    addRow("summary", [](ItemRecord &item) { item.summary += '2'; });
    addRow("date", [](ItemRecord &item) { item.published = item.published.addDays(1); });
    addRow("date of update",
           [](ItemRecord &item) { qSwap(item.published, item.updated = item.published.addDays(1)); });
    addRow("file", [](ItemRecord &item) { item.files.first().address.text += '2'; });
}

void TestNamedItem::hashes()
{
    QFETCH(ItemRecord, changed);
    const NamedItem item(record());
    QVERIFY2(item.id.startsWith("hash:"), qPrintable(item.id));
    QCOMPARE(NamedItem(record()).id, item.id);
    QVERIFY(NamedItem(std::move(changed)).id != item.id);
}

void TestNamedItem::sameItem()
{
    const auto named = [](const QString &id, const QString &title, const QString &file) {
        ItemRecord given = record();
        given.id = id;
        given.title = title;
        given.files.first().address.text = file;
        return NamedItem(std::move(given));
    };
    const NamedItem item = named("1", "Title", "a.mp3");
    QVERIFY(item.isSameAs(named("1", "Title", "a.mp3")));
    for (const NamedItem &other :
         {named("2", "Title", "a.mp3"), named("1", "Other", "a.mp3"), named("1", "Title", "b.mp3")})
        QVERIFY(!item.isSameAs(other));
    QCOMPARE(item.variant(), QString("Title\na.mp3"));

    ItemRecord fewer = record();
    fewer.id = "1";
    fewer.files.clear();
    QVERIFY(!item.isSameAs(NamedItem(std::move(fewer))));
}

QTEST_APPLESS_MAIN(TestNamedItem)
#include "tst_nameditem.moc"
