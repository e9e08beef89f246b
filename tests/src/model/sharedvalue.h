// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SHAREDVALUE_H
#define SHAREDVALUE_H

#include <QString>
#include <QVariant>
#include <QtTest>

#include <cstring>
#include <thread>
#include <utility>
#include <vector>

/// A field of an implicitly shared value, as the tests read and write it.
template <typename Value> struct SharedValueField
{
    const char *name;
    QVariant (*get)(const Value &);
    void (*set)(Value &, const QVariant &);
    QVariant defaultValue; ///< the value in a default-constructed object
    QVariant constructed; ///< the value in the filled object
    QVariant given; ///< the value that the test sets
    QVariant stored = given; ///< the value that the getter returns then
};

/// Returns the record, which a node holds behind the pointer to its virtual table.
template <typename Value> const void *recordOf(const Value &value)
{
    static_assert(sizeof(Value) == 2 * sizeof(void *));
    const void *record = nullptr;
    std::memcpy(&record, reinterpret_cast<const char *>(&value) + sizeof(void *), sizeof record);
    return record;
}

template <typename Value> bool ownsItsRecordAlone(Value &value)
{
    const void *before = recordOf(value);
    value.detach();
    return recordOf(value) == before;
}

/**
 * Tests of an implicitly shared value, given its fields and a function that returns a filled object. A failed
 * check leaves only the function of this class, so a test calls it last.
 */
template <typename Value> class SharedValueTests
{
public:
    using Field = SharedValueField<Value>;

    SharedValueTests(const std::vector<Field> &fields, Value (*filled)()) : m_fields(fields), m_filled(filled)
    {
    }

    QVariantList valuesOf(const Value &value) const
    {
        QVariantList values;
        for (const Field &field : m_fields)
            values.append(field.get(value));
        return values;
    }

    /// Adds a row for each field.
    void addFieldRows() const
    {
        QTest::addColumn<int>("index");
        for (size_t i = 0; i < m_fields.size(); ++i)
            QTest::newRow(m_fields[i].name) << int(i);
    }

    void defaultHasTheDefaultValues() const
    {
        const Value value;
        for (const Field &field : m_fields)
            QVERIFY2(field.get(value) == field.defaultValue, field.name);
    }

    void constructorPutsEachArgumentInItsField() const
    {
        const Value value = m_filled();
        for (const Field &field : m_fields)
            QVERIFY2(field.get(value) == field.constructed, field.name);
    }

    void setterChangesItsFieldOnly() const
    {
        QFETCH(int, index);
        const Field &field = m_fields[size_t(index)];
        Value value = m_filled();
        QVariantList expected = valuesOf(value);
        QVERIFY(expected.at(index) != field.stored);
        expected[index] = field.stored;

        field.set(value, field.given);
        QCOMPARE(valuesOf(value), expected);
    }

    void setterOnACopyLeavesTheOriginal() const
    {
        QFETCH(int, index);
        const Field &field = m_fields[size_t(index)];
        const Value original = m_filled();
        const QVariantList before = valuesOf(original);
        Value copy = original;

        field.set(copy, field.given);
        QCOMPARE(valuesOf(original), before);
        QCOMPARE(field.get(copy), field.stored);
    }

    void setterOnTheOriginalLeavesTheCopy() const
    {
        QFETCH(int, index);
        const Field &field = m_fields[size_t(index)];
        Value original = m_filled();
        const QVariantList before = valuesOf(original);
        const Value copy = original;

        field.set(original, field.given);
        QCOMPARE(valuesOf(copy), before);
        QCOMPARE(field.get(original), field.stored);
    }

    void copySharesTheRecord() const
    {
        const Value original = m_filled();
        const Value copy = original;
        QCOMPARE(recordOf(copy), recordOf(original));
        QCOMPARE(valuesOf(copy), valuesOf(m_filled()));
    }

    void assignmentSharesTheRecord() const
    {
        const Value original = m_filled();
        Value copy;
        Value &result = (copy = original);
        QCOMPARE(&result, &copy);
        QCOMPARE(recordOf(copy), recordOf(original));
        QCOMPARE(valuesOf(copy), valuesOf(m_filled()));
    }

    void assignmentWithinOneRecordChangesNothing() const
    {
        Value original = m_filled();
        const void *record = recordOf(original);
        {
            Value copy = original;
            copy = original;
            original = copy;
            QCOMPARE(recordOf(copy), record);
            QCOMPARE(recordOf(original), record);
        }
        QVERIFY(ownsItsRecordAlone(original));
        QCOMPARE(valuesOf(original), valuesOf(m_filled()));
    }

    void selfAssignmentChangesNothing() const
    {
        Value value = m_filled();
        const void *record = recordOf(value);
        const Value &alias = value;
        value = alias;
        QCOMPARE(recordOf(value), record);
        QVERIFY(ownsItsRecordAlone(value));
        QCOMPARE(valuesOf(value), valuesOf(m_filled()));
    }

    void moveLeavesAUsableObject() const
    {
        Value original = m_filled();
        Value moved = std::move(original);
        QVERIFY(recordOf(original));
        QVERIFY(recordOf(moved));
        QCOMPARE(valuesOf(moved), valuesOf(m_filled()));

        Value assigned;
        assigned = std::move(moved);
        QVERIFY(recordOf(moved));
        QCOMPARE(valuesOf(assigned), valuesOf(m_filled()));
    }

    /// \a original must not share its record.
    void detachMakesACopyOfAllFields(Value &original) const
    {
        const void *record = recordOf(original);
        Value copy = original;

        copy.detach();
        QCOMPARE(recordOf(original), record);
        QVERIFY(recordOf(copy) != record);
        QCOMPARE(valuesOf(copy), valuesOf(original));
        QVERIFY(ownsItsRecordAlone(copy));
        QVERIFY(ownsItsRecordAlone(original));
    }

    /// \a change changes a field of the given object.
    template <typename Change> void detachKeepsARecordThatIsNotShared(Change change) const
    {
        Value value = m_filled();
        const void *record = recordOf(value);
        value.detach();
        QCOMPARE(recordOf(value), record);
        change(value);
        QCOMPARE(recordOf(value), record);
    }

    /// \a fill stores each of \a count texts in an empty object, the first text in the first field.
    template <typename Fill> void lastOwnerDeletesTheRecord(int count, Fill fill) const
    {
        std::vector<QString> texts;
        for (int i = 1; i <= count; ++i)
            texts.push_back(QString("text ") + QString::number(i));
        {
            Value copy;
            {
                Value original;
                fill(original, texts);
                copy = original;
            }
            for (const QString &text : texts)
                QVERIFY2(!text.isDetached(), qPrintable(text));
            QCOMPARE(m_fields.front().get(copy).toString(), texts.front());
        }
        for (const QString &text : texts)
            QVERIFY2(text.isDetached(), qPrintable(text));
    }

    /// \a change changes the given object. Its other arguments are an object that shares the record and the
    /// number of the thread.
    template <typename Change> void copiesMayBeUsedInSeveralThreads(Change change) const
    {
        constexpr int Threads = 4;
        constexpr int Rounds = 20000;
        Value original = m_filled();
        std::vector<std::thread> threads;
        for (int i = 0; i < Threads; ++i) {
            threads.emplace_back([copy = original, change, i]() mutable {
                for (int round = 0; round < Rounds; ++round) {
                    const Value second = copy;
                    Value third = second;
                    change(third, second, i);
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        threads.clear();
        QVERIFY(ownsItsRecordAlone(original));
        QCOMPARE(valuesOf(original), valuesOf(m_filled()));
    }

private:
    const std::vector<Field> &m_fields;
    Value (*const m_filled)();
};

#endif
