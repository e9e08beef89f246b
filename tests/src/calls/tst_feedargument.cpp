// SPDX-License-Identifier: LGPL-2.1-or-later
#include "countedvalue.h"

#include <feedargument.h>
#include <streambytes.h>

#include <QDateTime>
#include <QUrl>
#include <QVariant>
#include <QtTest>

#include <functional>
#include <type_traits>

static_assert(std::is_same_v<decltype(FeedArgument::typeName), QByteArray>);
static_assert(std::is_same_v<decltype(FeedArgument::data), QByteArray>);
static_assert(std::is_same_v<decltype(FeedArgument::value), void *>);
static_assert(std::is_same_v<decltype(&FeedArgument::isValid), bool (FeedArgument::*)() const>);
static_assert(
    std::is_same_v<decltype(&FeedArgument::toGenericArgument), QGenericArgument (FeedArgument::*)()>);
static_assert(std::is_default_constructible_v<FeedArgument>);
static_assert(std::is_copy_constructible_v<FeedArgument>);
static_assert(std::is_copy_assignable_v<FeedArgument>);
static_assert(!std::is_polymorphic_v<FeedArgument>);

struct WithoutOperators
{
    int number = 0;
};
Q_DECLARE_METATYPE(WithoutOperators)

namespace {

FeedArgument counted(int number)
{
    CountedValue value;
    value.number = number;
    return FeedArgument::fromValue(value);
}

int numberIn(const QGenericArgument &argument)
{
    return static_cast<CountedValue *>(argument.data())->number;
}

void readInto(FeedArgument &argument, const QByteArray &typeName, const QByteArray &data)
{
    QDataStream stream(streamed(typeName, data));
    stream >> argument;
    QCOMPARE(stream.status(), QDataStream::Ok);
}

template <typename T> void addType(const char *name, const T &value)
{
    QTest::newRow(name) << FeedArgument::fromValue(value) << qMetaTypeId<T>() << streamed(value);
}

} // namespace

Q_DECLARE_METATYPE(FeedArgument)

class tst_FeedArgument : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { registerCountedValue(); }
    void init();
    void cleanup();

    void membersAreInTheirOrder();
    void defaultIsInvalid();
    void validWithATypeName();
    void carriesAnyType_data();
    void carriesAnyType();
    void takesTheValueOfAVariant();
    void invalidWithoutStreamOperators();

    void invalidGivesAnEmptyGenericArgument();
    void genericArgumentPointsIntoTheArgument();
    void secondCallLoadsAgain();
    void unknownTypeGivesNoValue_data();
    void unknownTypeGivesNoValue();
    void typeNamesMayBeAliases();
    void missingBytesGiveTheDefaultValue();

    void destructorDestroysTheValue();
    void destructorWithoutAValueIsSilent();
    void copyHasNoValue();
    void copyOutlivesTheOriginal();
    void originalOutlivesTheCopy();
    void assignmentKeepsTheValue();
    void assignmentBetweenArgumentsWithValues();
    void selfAssignmentKeepsTheValue();

    void streamsTypeNameAndBytes_data();
    void streamsTypeNameAndBytes();
    void readingLeavesTheValue();
    void readingAnotherTypeReplacesTheValueLater();
    void readingAnUnknownTypeDropsTheValueLater();
    void readingAnInvalidOneKeepsTheValue();
    void changedTypeNameDestroysTheRightType();

private:
    /// Collects all messages, so that each test can check them.
    MessageLog *log = nullptr;
};

void tst_FeedArgument::init()
{
    CountedValue::loads = 0;
    log = new MessageLog;
}

void tst_FeedArgument::cleanup()
{
    const QStringList unchecked = takeTexts(*log);
    delete log;
    QCOMPARE(unchecked, QStringList());
    QCOMPARE(CountedValue::living.size(), size_t(0));
    QCOMPARE(CountedValue::wronglyDestroyed, 0);
}

void tst_FeedArgument::membersAreInTheirOrder()
{
    const FeedArgument argument;
    const void *const members[] = {&argument, &argument.typeName, &argument.data, &argument.value};
    QCOMPARE(members[0], members[1]);
    QVERIFY(std::less<>()(members[1], members[2]));
    QVERIFY(std::less<>()(members[2], members[3]));
}

void tst_FeedArgument::defaultIsInvalid()
{
    const FeedArgument argument;
    QCOMPARE(argument.typeName, QByteArray());
    QCOMPARE(argument.data, QByteArray());
    QVERIFY(!argument.value);
    QVERIFY(!argument.isValid());
}

void tst_FeedArgument::validWithATypeName()
{
    FeedArgument argument;
    argument.data = "bytes";
    QVERIFY(!argument.isValid());
    argument.typeName = "nobody knows this";
    QVERIFY(argument.isValid());
    argument.data.clear();
    QVERIFY(argument.isValid());
}

void tst_FeedArgument::carriesAnyType_data()
{
    QTest::addColumn<FeedArgument>("argument");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("data");

    addType("bool", true);
    addType("int", -7);
    addType("uint", 4294967295u);
    addType("qlonglong", -(qint64(1) << 40));
    addType("double", 0.1);
    addType("QString", QString("t\u00e4xt"));
    addType("QByteArray", QByteArray("by\0tes", 6));
    addType("QStringList", QStringList{"one", "", "two"});
    addType("QUrl", QUrl("https://example.org/a b?c=d#e"));
    addType("QDateTime", QDateTime(QDate(2026, 11, 21), QTime(10, 30), Qt::UTC));
    addType("QVariant", QVariant(12));
    addType("QVariantMap", QVariantMap{{"uri", "urn:1"}, {"length", 12}});
    addType("QVariantList", QVariantList{1, "two"});
}

void tst_FeedArgument::carriesAnyType()
{
    QFETCH(FeedArgument, argument);
    QFETCH(int, type);
    QFETCH(QByteArray, data);
    QVERIFY(argument.isValid());
    QCOMPARE(argument.typeName, QByteArray(QTest::currentDataTag()));
    QCOMPARE(argument.data, data);
    QVERIFY(!argument.value);
    {
        FeedArgument copy(argument);
        const FeedArgument again(type, copy.toGenericArgument().data());
        QCOMPARE(again.typeName, argument.typeName);
        QCOMPARE(again.data, data);
    }
    QCOMPARE(takeTexts(*log), QStringList({Creating, Destroying}));
}

void tst_FeedArgument::takesTheValueOfAVariant()
{
    const QVariant variant(QUrl("https://example.org/"));
    const FeedArgument argument(variant.userType(), variant.constData());
    QCOMPARE(argument.typeName, QByteArray("QUrl"));
    QCOMPARE(argument.data, streamed(variant.toUrl()));
}

void tst_FeedArgument::invalidWithoutStreamOperators()
{
    qRegisterMetaType<WithoutOperators>();
    const int number = 7;
    const FeedArgument arguments[] = {
        FeedArgument::fromValue(WithoutOperators()),
        FeedArgument::fromValue<QObject *>(this),
        FeedArgument(QMetaType::UnknownType, &number),
        FeedArgument(QMetaType::Void, &number),
        FeedArgument(QMetaType::Int, nullptr),
        FeedArgument(123456, &number),
        FeedArgument(-1, &number),
    };
    for (const FeedArgument &argument : arguments) {
        QVERIFY(!argument.isValid());
        QCOMPARE(argument.data, QByteArray());
    }
    log->take(); // Qt 6 warns about unknown ids
}

void tst_FeedArgument::invalidGivesAnEmptyGenericArgument()
{
    FeedArgument argument;
    argument.data = streamed(7);
    const QGenericArgument generic = argument.toGenericArgument();
    QVERIFY(!generic.name());
    QVERIFY(!generic.data());
    QVERIFY(!argument.value);
}

void tst_FeedArgument::genericArgumentPointsIntoTheArgument()
{
    {
        FeedArgument argument = counted(7);
        const QGenericArgument generic = argument.toGenericArgument();
        QCOMPARE(static_cast<const void *>(generic.name()),
                 static_cast<const void *>(argument.typeName.constData()));
        QCOMPARE(generic.name(), "CountedValue");
        QVERIFY(generic.data());
        QCOMPARE(generic.data(), argument.value);
        QCOMPARE(numberIn(generic), 7);
        QCOMPARE(takeTexts(*log), QStringList{Creating});
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::secondCallLoadsAgain()
{
    {
        FeedArgument argument = counted(7);
        const void *value = argument.toGenericArgument().data();
        QCOMPARE(CountedValue::loads, 1);

        argument.data = streamed(8);
        const QGenericArgument generic = argument.toGenericArgument();
        QCOMPARE(CountedValue::loads, 2);
        QCOMPARE(static_cast<const void *>(generic.data()), value);
        QCOMPARE(numberIn(generic), 8);
        QCOMPARE(CountedValue::living.size(), size_t(1));
        QCOMPARE(takeTexts(*log), QStringList{Creating});
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::unknownTypeGivesNoValue_data()
{
    QTest::addColumn<QByteArray>("typeName");
    QTest::newRow("unknown") << QByteArray("NobodyKnowsThis");
    QTest::newRow("no values") << QByteArray("void");
    QTest::newRow("not without QtGui") << QByteArray("QPixmap");
    QTest::newRow("not a name") << QByteArray("<\0\n>", 4);
    QTest::newRow("long") << QByteArray(100000, 'x');
}

void tst_FeedArgument::unknownTypeGivesNoValue()
{
    QFETCH(QByteArray, typeName);
    {
        FeedArgument argument;
        readInto(argument, typeName, streamed(7));
        for (int i = 0; i < 2; ++i) {
            const QGenericArgument generic = argument.toGenericArgument();
            QCOMPARE(static_cast<const void *>(generic.name()),
                     static_cast<const void *>(argument.typeName.constData()));
            QVERIFY(!generic.data());
            QVERIFY(!argument.value);
            QCOMPARE(takeTexts(*log).count(Creating), 1);
        }
    }
    QCOMPARE(takeTexts(*log), QStringList());
}

void tst_FeedArgument::typeNamesMayBeAliases()
{
    {
        FeedArgument argument = FeedArgument::fromValue(qint64(-7));
        argument.typeName = "qint64";
        const QGenericArgument generic = argument.toGenericArgument();
        QCOMPARE(generic.name(), "qint64");
        QCOMPARE(*static_cast<qint64 *>(generic.data()), qint64(-7));
    }
    QCOMPARE(takeTexts(*log), QStringList({Creating, Destroying}));
}

void tst_FeedArgument::missingBytesGiveTheDefaultValue()
{
    {
        FeedArgument argument = FeedArgument::fromValue(QString("text"));
        argument.data.chop(1);
        const auto *text = static_cast<const QString *>(argument.toGenericArgument().data());
        QCOMPARE(*text, QString());
        argument.data.clear();
        QCOMPARE(static_cast<const QString *>(argument.toGenericArgument().data()), text);
        QCOMPARE(*text, QString());
    }
    QCOMPARE(takeTexts(*log), QStringList({Creating, Destroying}));
}

void tst_FeedArgument::destructorDestroysTheValue()
{
    {
        FeedArgument argument = counted(7);
        argument.toGenericArgument();
        QVERIFY(CountedValue::living.count(argument.value) == 1);
        takeTexts(*log);
    }
    QCOMPARE(CountedValue::living.size(), size_t(0));
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::destructorWithoutAValueIsSilent()
{
    {
        FeedArgument argument;
        FeedArgument withBytes = counted(7);
    }
    QCOMPARE(takeTexts(*log), QStringList());
}

void tst_FeedArgument::copyHasNoValue()
{
    {
        FeedArgument original = counted(7);
        const QGenericArgument generic = original.toGenericArgument();
        FeedArgument copy(original);
        QCOMPARE(copy.typeName, original.typeName);
        QCOMPARE(copy.data, original.data);
        QVERIFY(!copy.value);
        QCOMPARE(original.value, generic.data());

        const QGenericArgument genericCopy = copy.toGenericArgument();
        QVERIFY(genericCopy.data() != generic.data());
        QCOMPARE(numberIn(genericCopy), 7);
        QCOMPARE(CountedValue::living.size(), size_t(2));
        QCOMPARE(takeTexts(*log), QStringList({Creating, Creating}));
    }
    QCOMPARE(takeTexts(*log), QStringList({Destroying, Destroying}));
}

void tst_FeedArgument::copyOutlivesTheOriginal()
{
    {
        FeedArgument copy;
        {
            FeedArgument original = counted(7);
            original.toGenericArgument();
            copy = FeedArgument(original);
        }
        QCOMPARE(takeTexts(*log), QStringList({Creating, Destroying}));
        QCOMPARE(numberIn(copy.toGenericArgument()), 7);
        QCOMPARE(takeTexts(*log), QStringList{Creating});
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::originalOutlivesTheCopy()
{
    {
        FeedArgument original = counted(7);
        const QGenericArgument generic = original.toGenericArgument();
        {
            FeedArgument copy(original);
            copy.toGenericArgument();
            takeTexts(*log);
        }
        QCOMPARE(takeTexts(*log), QStringList{Destroying});
        QCOMPARE(numberIn(generic), 7);
        QCOMPARE(original.toGenericArgument().data(), generic.data());
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::assignmentKeepsTheValue()
{
    {
        FeedArgument target = counted(7);
        const void *value = target.toGenericArgument().data();
        FeedArgument &result = (target = counted(8));
        QCOMPARE(&result, &target);
        QCOMPARE(static_cast<const void *>(target.value), value);
        QCOMPARE(numberIn(target.toGenericArgument()), 8);
        QCOMPARE(static_cast<const void *>(target.value), value);
        QCOMPARE(takeTexts(*log), QStringList{Creating});
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::assignmentBetweenArgumentsWithValues()
{
    {
        FeedArgument source = counted(7);
        FeedArgument target = FeedArgument::fromValue(QString("text"));
        const void *sourceValue = source.toGenericArgument().data();
        const void *targetValue = target.toGenericArgument().data();
        takeTexts(*log);
        target = source;
        QCOMPARE(static_cast<const void *>(source.value), sourceValue);
        QCOMPARE(static_cast<const void *>(target.value), targetValue);
        QCOMPARE(takeTexts(*log), QStringList());

        QCOMPARE(numberIn(target.toGenericArgument()), 7);
        QVERIFY(target.value != sourceValue);
        QCOMPARE(takeTexts(*log), QStringList({Destroying, Creating}));
    }
    QCOMPARE(takeTexts(*log), QStringList({Destroying, Destroying}));
}

void tst_FeedArgument::selfAssignmentKeepsTheValue()
{
    {
        FeedArgument argument = counted(7);
        const void *value = argument.toGenericArgument().data();
        const FeedArgument &alias = argument;
        argument = alias;
        QCOMPARE(static_cast<const void *>(argument.value), value);
        QCOMPARE(argument.typeName, QByteArray("CountedValue"));
        QCOMPARE(argument.data, streamed(7));
        takeTexts(*log);
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::streamsTypeNameAndBytes_data()
{
    QTest::addColumn<QByteArray>("typeName");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("byteOrder");

    const QByteArray nothing;
    const QByteArray empty("");
    QTest::newRow("default") << nothing << nothing << QByteArray::fromHex("ffffffff ffffffff")
                             << int(QDataStream::BigEndian);
    QTest::newRow("empty") << empty << empty << QByteArray::fromHex("00000000 00000000")
                           << int(QDataStream::BigEndian);
    QTest::newRow("int") << QByteArray("int") << streamed(258)
                         << QByteArray::fromHex("00000003 696e74 00000004 00000102")
                         << int(QDataStream::BigEndian);
    QTest::newRow("int, little endian")
        << QByteArray("int") << streamed(258) << QByteArray::fromHex("03000000 696e74 04000000 00000102")
        << int(QDataStream::LittleEndian);
    QTest::newRow("unknown") << QByteArray("x") << nothing << QByteArray::fromHex("00000001 78 ffffffff")
                             << int(QDataStream::BigEndian);
}

void tst_FeedArgument::streamsTypeNameAndBytes()
{
    QFETCH(QByteArray, typeName);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, bytes);
    QFETCH(int, byteOrder);
    FeedArgument argument;
    argument.typeName = typeName;
    argument.data = data;

    QByteArray written;
    QDataStream out(&written, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::ByteOrder(byteOrder));
    QDataStream &result = out << argument;
    QCOMPARE(&result, &out);
    QCOMPARE(written, bytes);

    FeedArgument readBack;
    QDataStream in(bytes + "!");
    in.setByteOrder(QDataStream::ByteOrder(byteOrder));
    QDataStream &inResult = in >> readBack;
    QCOMPARE(&inResult, &in);
    QCOMPARE(readBack.typeName, typeName);
    QCOMPARE(readBack.data, data);
    QVERIFY(!readBack.value);
    QCOMPARE(in.device()->pos(), bytes.size());
}

void tst_FeedArgument::readingLeavesTheValue()
{
    {
        FeedArgument argument = counted(7);
        const QGenericArgument generic = argument.toGenericArgument();
        QDataStream stream(streamed(counted(8)));
        stream >> argument;
        QCOMPARE(argument.value, generic.data());
        QCOMPARE(numberIn(generic), 7);

        QCOMPARE(argument.toGenericArgument().data(), generic.data());
        QCOMPARE(numberIn(generic), 8);
        QCOMPARE(takeTexts(*log), QStringList{Creating});
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::readingAnotherTypeReplacesTheValueLater()
{
    {
        FeedArgument argument = counted(7);
        const QGenericArgument generic = argument.toGenericArgument();
        takeTexts(*log);
        readInto(argument, "QString", streamed(QString("text")));
        QCOMPARE(argument.value, generic.data());
        QCOMPARE(takeTexts(*log), QStringList());

        const QGenericArgument text = argument.toGenericArgument();
        QCOMPARE(*static_cast<QString *>(text.data()), QString("text"));
        QCOMPARE(CountedValue::living.size(), size_t(0));
        QCOMPARE(takeTexts(*log), QStringList({Destroying, Creating}));
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::readingAnUnknownTypeDropsTheValueLater()
{
    {
        FeedArgument argument = counted(7);
        argument.toGenericArgument();
        readInto(argument, "NobodyKnowsThis", streamed(8));
        QVERIFY(argument.value);
        QVERIFY(!argument.toGenericArgument().data());
        QVERIFY(!argument.value);
        QCOMPARE(takeTexts(*log), QStringList({Creating, Destroying, Creating}));

        readInto(argument, "CountedValue", streamed(9));
        QCOMPARE(numberIn(argument.toGenericArgument()), 9);
        QCOMPARE(takeTexts(*log), QStringList{Creating});
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::readingAnInvalidOneKeepsTheValue()
{
    {
        FeedArgument argument = counted(7);
        const void *value = argument.toGenericArgument().data();
        readInto(argument, QByteArray(), QByteArray());
        QVERIFY(!argument.isValid());
        const QGenericArgument generic = argument.toGenericArgument();
        QVERIFY(!generic.name());
        QVERIFY(!generic.data());
        QCOMPARE(static_cast<const void *>(argument.value), value);
        QCOMPARE(takeTexts(*log), QStringList{Creating});
    }
    QCOMPARE(takeTexts(*log), QStringList{Destroying});
}

void tst_FeedArgument::changedTypeNameDestroysTheRightType()
{
    for (const char *typeName : {"QString", "int", "NobodyKnowsThis", ""}) {
        {
            FeedArgument argument = counted(7);
            argument.toGenericArgument();
            argument.typeName = typeName;
        }
        QCOMPARE(takeTexts(*log), QStringList({Creating, Destroying}));
        QCOMPARE(CountedValue::living.size(), size_t(0));
    }
}

QTEST_APPLESS_MAIN(tst_FeedArgument)
#include "tst_feedargument.moc"
