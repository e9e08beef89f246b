// SPDX-License-Identifier: LGPL-2.1-or-later
#include "countedvalue.h"

#include <feedmethod.h>
#include <memorylimit.h>
#include <streambytes.h>
#include <testdevices.h>

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QRandomGenerator>
#include <QUrl>
#include <QtTest>

#include <functional>
#include <type_traits>

using Arguments = QList<FeedArgument>;

static_assert(std::is_same_v<decltype(FeedMethod::name), QByteArray>);
static_assert(std::is_same_v<decltype(FeedMethod::extra), QByteArray>);
static_assert(std::is_same_v<decltype(FeedMethod::arguments), Arguments>);
static_assert(sizeof(FeedMethod) == 2 * sizeof(QByteArray) + sizeof(Arguments));
static_assert(std::is_constructible_v<FeedMethod, const QByteArray &, Arguments &>);
static_assert(!std::is_constructible_v<FeedMethod, const QByteArray &, const Arguments &>);
static_assert(std::is_same_v<decltype(&FeedMethod::argumentCount), int (FeedMethod::*)()>);
static_assert(std::is_same_v<decltype(&FeedMethod::argument), FeedArgument (FeedMethod::*)(int)>);
static_assert(std::is_same_v<decltype(&FeedMethod::addArgument), void (FeedMethod::*)(const FeedArgument &)>);
static_assert(
    std::is_same_v<decltype(&FeedMethod::genericArguments), QList<QGenericArgument> (FeedMethod::*)()>);
static_assert(std::is_same_v<decltype(&FeedMethod::toByteArray), QByteArray (*)(const FeedMethod &)>);

namespace {

FeedArgument counted(int number)
{
    CountedValue value;
    value.number = number;
    return FeedArgument::fromValue(value);
}

FeedArgument named(const QByteArray &typeName, const QByteArray &data = QByteArray())
{
    FeedArgument argument;
    argument.typeName = typeName;
    argument.data = data;
    return argument;
}

QList<QByteArray> fieldsOf(const FeedMethod &method)
{
    QList<QByteArray> fields{method.name, method.extra};
    for (const FeedArgument &argument : method.arguments)
        fields << argument.typeName << argument.data;
    return fields;
}

FeedMethod sample()
{
    FeedMethod method;
    method.name = "subscribe";
    method.extra = "carried";
    method.addArgument(FeedArgument::fromValue(QString("t\u00e4xt")));
    method.addArgument(FeedArgument::fromValue(-2));
    return method;
}

QByteArray written(const FeedMethod &method, QDataStream::ByteOrder byteOrder = QDataStream::BigEndian,
                   int version = QDataStream::Qt_DefaultCompiledVersion)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(byteOrder);
    stream.setVersion(version);
    QDataStream &result = stream << method;
    return &result == &stream ? bytes : "another stream";
}

int numberIn(const QGenericArgument &argument)
{
    return static_cast<CountedValue *>(argument.data())->number;
}

} // namespace

/// The object whose methods are called by name.
class Receiver : public QObject
{
    Q_OBJECT

public:
    QVariantList got;

public slots:
    void nothing() { got << "nothing"; }
    void mixed(const QUrl &address, const QStringList &names, qint64 size, const QDateTime &time)
    {
        got << address << names << size << time;
    }
    void ten(int a, int b, int c, int d, int e, int f, int g, int h, int i, const QString &j)
    {
        got << a << b << c << d << e << f << g << h << i << j;
    }
    void take(const CountedValue &value) { got << value.number; }

public:
    bool call(FeedMethod &method, Qt::ConnectionType type = Qt::DirectConnection)
    {
        const QList<QGenericArgument> a = method.genericArguments();
        return QMetaObject::invokeMethod(this, method.name.constData(), type, a.value(0), a.value(1),
                                         a.value(2), a.value(3), a.value(4), a.value(5), a.value(6),
                                         a.value(7), a.value(8), a.value(9));
    }
};

class tst_FeedMethod : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { registerCountedValue(); }
    void init() { log = new MessageLog; }
    void cleanup();

    void membersAreInTheirOrder();
    void defaultIsEmpty();
    void constructorChecksNothing();
    void addArgumentIgnoresInvalidOnes();
    void addArgumentIgnoresTheEleventh();
    void argumentGivesACopy();
    void argumentMakesTheListPrivate();
    void genericArgumentsAreInTheirOrder();
    void genericArgumentsAreMadeInPlace();
    void genericArgumentsOfACopyAreItsOwn();
    void copiesDestroyTheirOwnValues();

    void defaultIsTwoArraysAndAZero();
    void toByteArrayWritesTheStream();
    void bytesAreFixed_data();
    void bytesAreFixed();
    void referenceIsWrittenFieldByField();
    void readingReplacesAll();
    void readingTakesMoreThanTenAndInvalidOnes();
    void countWithNothingBehind_data();
    void countWithNothingBehind();
    void truncatedAnywhere();
    void countLargerThanTheArguments();
    void statusOfAnEarlierFailureDoesNotEndTheList();
    void nothingIsReadInATransactionAfterAFailure();
    void failingDeviceEndsTheList_data();
    void failingDeviceEndsTheList();
    void hostileBytes_data();
    void hostileBytes();

    void invokedByName();
    void invokedWithMixedTypes_data();
    void invokedWithMixedTypes();
    void invokedWithTenArguments();
    void invokedLater();
    void notInvokedWithWrongArguments();

private:
    MessageLog *log = nullptr;
};

void tst_FeedMethod::cleanup()
{
    delete log;
    QCOMPARE(CountedValue::living.size(), size_t(0));
    QCOMPARE(CountedValue::wronglyDestroyed, 0);
}

void tst_FeedMethod::membersAreInTheirOrder()
{
    const FeedMethod method;
    const void *const members[] = {&method, &method.name, &method.extra, &method.arguments};
    QCOMPARE(members[0], members[1]);
    QVERIFY(std::less<>()(members[1], members[2]));
    QVERIFY(std::less<>()(members[2], members[3]));
}

void tst_FeedMethod::defaultIsEmpty()
{
    FeedMethod method;
    QCOMPARE(method.name, QByteArray());
    QCOMPARE(method.extra, QByteArray());
    QVERIFY(method.arguments.isEmpty());
    QCOMPARE(method.argumentCount(), 0);
    QVERIFY(method.genericArguments().isEmpty());
}

void tst_FeedMethod::constructorChecksNothing()
{
    Arguments arguments;
    for (int i = 0; i < 12; ++i)
        arguments.append(i == 3 ? FeedArgument() : counted(i));
    FeedMethod method("name", arguments);
    QCOMPARE(method.name, QByteArray("name"));
    QCOMPARE(method.extra, QByteArray());
    QCOMPARE(method.argumentCount(), 12);
    QVERIFY(!method.argument(3).isValid());
    QCOMPARE(method.argument(11).data, counted(11).data);

    arguments.clear();
    QCOMPARE(method.argumentCount(), 12);
}

void tst_FeedMethod::addArgumentIgnoresInvalidOnes()
{
    FeedMethod method;
    method.addArgument(FeedArgument());
    method.addArgument(named(QByteArray(), "bytes"));
    QCOMPARE(method.argumentCount(), 0);
    method.addArgument(named("NobodyKnowsThis"));
    QCOMPARE(method.argumentCount(), 1);
    method.addArgument(FeedArgument());
    QCOMPARE(method.argumentCount(), 1);
}

void tst_FeedMethod::addArgumentIgnoresTheEleventh()
{
    FeedMethod method;
    for (int i = 0; i < 10; ++i) {
        method.addArgument(counted(i));
        QCOMPARE(method.argumentCount(), i + 1);
    }
    method.addArgument(counted(10));
    QCOMPARE(method.argumentCount(), 10);
    QCOMPARE(method.argument(9).data, counted(9).data);
}

void tst_FeedMethod::argumentGivesACopy()
{
    FeedMethod method;
    method.addArgument(counted(1));
    method.addArgument(counted(2));
    method.genericArguments();
    FeedArgument copy = method.argument(1);
    QCOMPARE(copy.typeName, QByteArray("CountedValue"));
    QCOMPARE(copy.data, counted(2).data);
    QVERIFY(!copy.value);
    copy.typeName = "int";
    QCOMPARE(method.arguments.at(1).typeName, QByteArray("CountedValue"));
}

void tst_FeedMethod::argumentMakesTheListPrivate()
{
    Arguments arguments{counted(1)};
    FeedMethod method("name", arguments);
    const FeedArgument *shared = &arguments.constFirst();
    QCOMPARE(&method.arguments.constFirst(), shared);
    method.argument(0);
    QVERIFY(&method.arguments.constFirst() != shared);
    QCOMPARE(&arguments.constFirst(), shared);
}

void tst_FeedMethod::genericArgumentsAreInTheirOrder()
{
    FeedMethod method;
    method.addArgument(counted(1));
    method.addArgument(FeedArgument::fromValue(QString("two")));
    method.arguments.append(FeedArgument());
    method.addArgument(named("NobodyKnowsThis"));
    const QList<QGenericArgument> generic = method.genericArguments();
    QCOMPARE(generic.size(), 4);
    QCOMPARE(generic.at(0).name(), "CountedValue");
    QCOMPARE(numberIn(generic.at(0)), 1);
    QCOMPARE(generic.at(1).name(), "QString");
    QCOMPARE(*static_cast<QString *>(generic.at(1).data()), QString("two"));
    QVERIFY(!generic.at(2).name());
    QVERIFY(!generic.at(2).data());
    QCOMPARE(generic.at(3).name(), "NobodyKnowsThis");
    QVERIFY(!generic.at(3).data());
    QCOMPARE(takeTexts(*log), QStringList({Creating, Creating, Creating}));
}

void tst_FeedMethod::genericArgumentsAreMadeInPlace()
{
    {
        FeedMethod method;
        method.addArgument(counted(1));
        method.addArgument(counted(2));
        const QList<QGenericArgument> generic = method.genericArguments();
        QCOMPARE(method.arguments.at(0).value, generic.at(0).data());
        QCOMPARE(method.arguments.at(1).value, generic.at(1).data());
        QCOMPARE(takeTexts(*log), QStringList({Creating, Creating}));

        const QList<QGenericArgument> again = method.genericArguments();
        QCOMPARE(again.at(0).data(), generic.at(0).data());
        QCOMPARE(again.at(1).data(), generic.at(1).data());
        QCOMPARE(takeTexts(*log), QStringList());
        QCOMPARE(CountedValue::living.size(), size_t(2));
    }
    QCOMPARE(takeTexts(*log), QStringList({Destroying, Destroying}));
}

void tst_FeedMethod::genericArgumentsOfACopyAreItsOwn()
{
    FeedMethod method;
    method.addArgument(counted(1));
    FeedMethod copy = method;
    const QList<QGenericArgument> ofCopy = copy.genericArguments();
    QVERIFY(!method.arguments.constFirst().value);
    const QList<QGenericArgument> ofMethod = method.genericArguments();
    QVERIFY(ofMethod.at(0).data() != ofCopy.at(0).data());
    QCOMPARE(numberIn(ofMethod.at(0)), 1);
    QCOMPARE(numberIn(ofCopy.at(0)), 1);
}

void tst_FeedMethod::copiesDestroyTheirOwnValues()
{
    {
        FeedMethod copy;
        {
            FeedMethod method;
            method.addArgument(counted(1));
            method.genericArguments();
            copy = method;
            QVERIFY(copy.arguments.constFirst().value);
            method.genericArguments();
            copy.genericArguments();
            QCOMPARE(CountedValue::living.size(), size_t(2));
        }
        QCOMPARE(CountedValue::living.size(), size_t(1));
        FeedMethod second(copy);
        second.arguments.append(counted(2));
        second.genericArguments();
        QCOMPARE(CountedValue::living.size(), size_t(3));
    }
    QCOMPARE(CountedValue::living.size(), size_t(0));
    const QStringList texts = takeTexts(*log);
    QCOMPARE(texts.count(Creating), 4);
    QCOMPARE(texts.count(Destroying), 4);
}

void tst_FeedMethod::defaultIsTwoArraysAndAZero()
{
    QCOMPARE(FeedMethod::toByteArray(FeedMethod()), streamed(QByteArray(), QByteArray(), quint32(0)));
}

void tst_FeedMethod::toByteArrayWritesTheStream()
{
    QCOMPARE(FeedMethod::toByteArray(sample()), written(sample()));
    FeedMethod readBack;
    QDataStream stream(FeedMethod::toByteArray(sample()));
    stream >> readBack;
    QCOMPARE(fieldsOf(readBack), fieldsOf(sample()));
}

void tst_FeedMethod::bytesAreFixed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("byteOrder");
    QTest::addColumn<int>("version");
    // The call contains only values that all versions write in the same way, so two files are enough.
    for (const int version :
         {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), int(QDataStream::Qt_DefaultCompiledVersion)}) {
        QTest::addRow("big endian, %d", version)
            << "method-BigEndian.bin" << int(QDataStream::BigEndian) << version;
        QTest::addRow("little endian, %d", version)
            << "method-LittleEndian.bin" << int(QDataStream::LittleEndian) << version;
    }
}

void tst_FeedMethod::bytesAreFixed()
{
    QFETCH(QString, file);
    QFETCH(int, byteOrder);
    QFETCH(int, version);
    QFile sampleFile(TIDEL_TEST_DATA "/streams/" + file);
    QVERIFY2(sampleFile.open(QIODevice::ReadOnly), qPrintable(sampleFile.fileName()));
    const QByteArray bytes = sampleFile.readAll();
    QCOMPARE(written(sample(), QDataStream::ByteOrder(byteOrder), version).toHex(' '), bytes.toHex(' '));

    FeedMethod method;
    QDataStream stream(bytes + "!");
    stream.setByteOrder(QDataStream::ByteOrder(byteOrder));
    stream.setVersion(version);
    QDataStream &result = stream >> method;
    QCOMPARE(&result, &stream);
    QCOMPARE(stream.status(), QDataStream::Ok);
    QCOMPARE(stream.device()->pos(), bytes.size());
    QCOMPARE(fieldsOf(method), fieldsOf(sample()));
    const QList<QGenericArgument> generic = method.genericArguments();
    QCOMPARE(*static_cast<QString *>(generic.at(0).data()), QString("t\u00e4xt"));
    QCOMPARE(*static_cast<int *>(generic.at(1).data()), -2);
}

void tst_FeedMethod::referenceIsWrittenFieldByField()
{
    Arguments arguments;
    QByteArray reference;
    QDataStream stream(&reference, QIODevice::WriteOnly);
    stream << QByteArray("many") << QByteArray("") << quint32(300);
    for (int i = 0; i < 300; ++i) {
        arguments.append(named(QByteArray(i, 't'), QByteArray(i % 7, 'd')));
        stream << arguments.constLast().typeName << arguments.constLast().data;
    }
    FeedMethod method("many", arguments);
    method.extra = "";
    QCOMPARE(FeedMethod::toByteArray(method), reference);
}

void tst_FeedMethod::readingReplacesAll()
{
    FeedMethod method;
    for (int i = 0; i < 5; ++i)
        method.addArgument(counted(i));
    method.genericArguments();
    FeedMethod copy = method;
    QDataStream stream(written(sample()));
    stream >> method;
    QCOMPARE(fieldsOf(method), fieldsOf(sample()));
    QCOMPARE(copy.argumentCount(), 5);
}

void tst_FeedMethod::readingTakesMoreThanTenAndInvalidOnes()
{
    Arguments arguments;
    for (int i = 0; i < 25; ++i)
        arguments.append(i % 2 ? FeedArgument() : counted(i));
    FeedMethod method("many", arguments);
    FeedMethod readBack;
    QDataStream stream(FeedMethod::toByteArray(method));
    stream >> readBack;
    QCOMPARE(fieldsOf(readBack), fieldsOf(method));
    const QList<QGenericArgument> generic = readBack.genericArguments();
    QCOMPARE(generic.size(), 25);
    QCOMPARE(numberIn(generic.at(24)), 24);
    QVERIFY(!generic.at(23).name());

    readBack.addArgument(counted(25));
    QCOMPARE(readBack.argumentCount(), 25);
}

void tst_FeedMethod::countWithNothingBehind_data()
{
    QTest::addColumn<quint32>("count");
    QTest::newRow("1") << 1u;
    QTest::newRow("2^31 - 1") << 0x7fffffffu;
    QTest::newRow("2^31") << 0x80000000u;
    QTest::newRow("2^32 - 1") << 0xffffffffu;
}

void tst_FeedMethod::countWithNothingBehind()
{
    QFETCH(quint32, count);
    FeedMethod method = sample();
    QDataStream stream(streamed(QByteArray("name"), QByteArray("extra"), count));
    stream >> method;
    QCOMPARE(method.name, QByteArray("name"));
    QCOMPARE(method.extra, QByteArray("extra"));
    QCOMPARE(method.argumentCount(), 0);
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
}

void tst_FeedMethod::truncatedAnywhere()
{
    const QByteArray whole = written(sample());
    const QList<QByteArray> fields = fieldsOf(sample());
    FeedMethod first = sample();
    first.arguments.removeLast();
    const int endOfFirstArgument = int(written(first).size());
    for (int size = 0; size < whole.size(); ++size) {
        FeedMethod method;
        QDataStream stream(whole.left(size));
        stream >> method;
        const bool endsBehindAnArgument = size == endOfFirstArgument;
        QVERIFY2(stream.status() == (endsBehindAnArgument ? QDataStream::Ok : QDataStream::ReadPastEnd),
                 qPrintable(QString::number(size)));
        QVERIFY(method.argumentCount() <= 2);
        const QList<QByteArray> read = fieldsOf(method);
        for (int i = 0; i < read.size(); ++i)
            QVERIFY(read.at(i) == fields.at(i) || read.at(i).isEmpty());
    }
}

void tst_FeedMethod::countLargerThanTheArguments()
{
    for (const quint32 count : {3u, 0xffffffffu}) {
        FeedMethod method;
        QDataStream stream(streamed(QByteArray(), QByteArray(), count, counted(1), counted(2)));
        stream >> method;
        QCOMPARE(method.argumentCount(), 2);
        QCOMPARE(method.argument(0).data, counted(1).data);
        QCOMPARE(method.argument(1).data, counted(2).data);
        QCOMPARE(stream.status(), QDataStream::Ok);
    }
}

void tst_FeedMethod::statusOfAnEarlierFailureDoesNotEndTheList()
{
    FeedMethod method;
    QDataStream stream(written(sample()));
    stream.setStatus(QDataStream::ReadCorruptData);
    stream >> method;
    QCOMPARE(fieldsOf(method), fieldsOf(sample()));
    QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
}

void tst_FeedMethod::nothingIsReadInATransactionAfterAFailure()
{
    QByteArray bytes = streamed(QByteArray(), QByteArray(), 0xffffffffu, counted(1));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    SequentialDevice sequential(bytes);
    for (QIODevice *device : std::initializer_list<QIODevice *>{&buffer, &sequential}) {
        QDataStream stream(device);
        stream.startTransaction();
        stream.setStatus(QDataStream::ReadCorruptData);
        FeedMethod method = sample();
        stream >> method;
        QCOMPARE(method.argumentCount(), 0);
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
    }
}

void tst_FeedMethod::failingDeviceEndsTheList_data()
{
    QTest::addColumn<bool>("inTransaction");
    QTest::newRow("no transaction") << false;
    QTest::newRow("transaction") << true;
}

void tst_FeedMethod::failingDeviceEndsTheList()
{
    QFETCH(bool, inTransaction);
    const MemoryLimit limit(96 << 20);
    QVERIFY(limit.holds());
    FailingDevice device(streamed(QByteArray(), QByteArray(), 0xffffffffu, counted(1)));
    QDataStream stream(&device);
    if (inTransaction)
        stream.startTransaction();
    FeedMethod method;
    stream >> method;
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    QCOMPARE(method.argumentCount(), 2);
    QCOMPARE(method.argument(0).data, counted(1).data);
    QVERIFY(!method.argument(1).isValid());
}

void tst_FeedMethod::hostileBytes_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_FeedMethod::hostileBytes()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QByteArray whole = written(sample());
    for (int round = 0; round < 200; ++round) {
        QByteArray bytes = whole;
        for (int i = 0; i < 1 + round % 4; ++i) {
            char &changed = bytes.data()[random.bounded(int(bytes.size()))];
            changed = char(changed ^ (1 << random.bounded(8)));
        }
        FeedMethod method;
        QDataStream stream(bytes);
        stream >> method;
        QVERIFY(method.argumentCount() * 8 <= bytes.size());
        const QByteArray again = FeedMethod::toByteArray(method);
        if (stream.status() == QDataStream::Ok) {
            // The count may be larger than the number of arguments. Everything else is the same.
            const int count = int(8 + method.name.size() + method.extra.size());
            QCOMPARE(again.left(count), bytes.left(count));
            QCOMPARE(again.mid(count + 4), bytes.mid(count + 4, again.size() - count - 4));
        }
        if (method.argumentCount() == 2 && method.argument(0).typeName == "QString")
            method.genericArguments();
    }
}

void tst_FeedMethod::invokedByName()
{
    FeedMethod method;
    method.name = "nothing";
    Receiver receiver;
    QVERIFY(receiver.call(method));
    QCOMPARE(receiver.got, QVariantList{"nothing"});
}

void tst_FeedMethod::invokedWithMixedTypes_data()
{
    QTest::addColumn<QByteArray>("sizeType");
    QTest::newRow("qint64") << QByteArray("qint64");
    QTest::newRow("qlonglong") << QByteArray("qlonglong");
}

void tst_FeedMethod::invokedWithMixedTypes()
{
    QFETCH(QByteArray, sizeType);
    const QDateTime time(QDate(2026, 11, 21), QTime(10, 30), Qt::UTC);
    FeedMethod method;
    method.name = "mixed";
    method.addArgument(FeedArgument::fromValue(QUrl("https://example.org/")));
    method.addArgument(FeedArgument::fromValue(QStringList{"one", "two"}));
    FeedArgument size = FeedArgument::fromValue(qint64(1) << 40);
    size.typeName = sizeType;
    method.addArgument(size);
    method.addArgument(FeedArgument::fromValue(time));

    FeedMethod arrived;
    QDataStream stream(FeedMethod::toByteArray(method));
    stream >> arrived;
    Receiver receiver;
    QVERIFY(receiver.call(arrived));
    QCOMPARE(receiver.got,
             QVariantList({QUrl("https://example.org/"), QStringList{"one", "two"}, qint64(1) << 40, time}));
}

void tst_FeedMethod::invokedWithTenArguments()
{
    FeedMethod method;
    method.name = "ten";
    for (int i = 1; i <= 9; ++i)
        method.addArgument(FeedArgument::fromValue(i));
    method.addArgument(FeedArgument::fromValue(QString("last")));
    Receiver receiver;
    QVERIFY(receiver.call(method));
    QCOMPARE(receiver.got, QVariantList({1, 2, 3, 4, 5, 6, 7, 8, 9, "last"}));
}

void tst_FeedMethod::invokedLater()
{
    Receiver receiver;
    {
        FeedMethod method;
        method.name = "take";
        method.addArgument(counted(7));
        QVERIFY(receiver.call(method, Qt::QueuedConnection));
    }
    QVERIFY(receiver.got.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(receiver.got, QVariantList{7});
}

void tst_FeedMethod::notInvokedWithWrongArguments()
{
    Receiver receiver;
    for (const char *name : {"", "nobody", "nothing", "ten", "take"}) {
        FeedMethod method;
        method.name = name;
        method.addArgument(FeedArgument::fromValue(7));
        method.addArgument(named("NobodyKnowsThis"));
        QVERIFY2(!receiver.call(method), name);
    }
    QCOMPARE(receiver.got, QVariantList());
}

QTEST_GUILESS_MAIN(tst_FeedMethod)
#include "tst_feedmethod.moc"
