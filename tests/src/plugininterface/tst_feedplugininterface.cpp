// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedmethod.h>
#include <feedplugininterface.h>
#include <soon.h>

#include <QMetaMethod>
#include <QPluginLoader>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <type_traits>

static_assert(std::is_abstract_v<FeedPluginInterface>);
static_assert(std::is_base_of_v<QObject, FeedPluginInterface>);
static_assert(sizeof(FeedPluginInterface) == sizeof(QObject), "no data members");

static_assert(FeedDownloadNoError == 0 && FeedDownloadCanceled == 1 && FeedDownloadBusy == 2
                  && FeedDownloadBadAddress == 3 && FeedDownloadNotFound == 4
                  && FeedDownloadConnectionFailed == 5 && FeedDownloadTimedOut == 6
                  && FeedDownloadTooLarge == 7 && FeedDownloadUnsafeRedirect == 8 && FeedDownloadNotAFeed == 9
                  && FeedDownloadAlreadyStored == 10 && FeedDownloadNotWritten == 11
                  && FeedDownloadStoreFailed == 12,
              "plug-ins and hosts of different builds agree on the codes");

namespace {

template <typename T, typename = void> constexpr bool VersionIsAccessible = false;
template <typename T>
constexpr bool VersionIsAccessible<T, std::void_t<decltype(std::declval<T>().version())>> = true;
static_assert(!VersionIsAccessible<FeedPluginInterface>);

const QMetaObject &meta = FeedPluginInterface::staticMetaObject;

/// The smallest possible plug-in.
class MinimalPlugin : public FeedPluginInterface
{
public:
    explicit MinimalPlugin(QObject *parent = nullptr) : FeedPluginInterface(parent) { }
    FeedPluginInterface *createDownloader(QObject *) const override { return nullptr; }
    void subscribe(const QUrl &) override { }
    void downloadFeeds(const QStringList &) override { }
    void downloadEnclosure(const QString &, const QString &) override { }
    void cancel() override { }
    QString errorString() const override { return QString(); }

    int metacall(int methodIndex, void **arguments)
    {
        return FeedPluginInterface::qt_metacall(QMetaObject::InvokeMetaMethod, methodIndex, arguments);
    }
};

} // namespace

class tst_FeedPluginInterface : public QObject
{
    Q_OBJECT

private slots:
    void metaObjectHasMethodsOnly();
    void methodsAreInTheirOrder_data();
    void methodsAreInTheirOrder();
    void metacastKnowsTheName();
    void metacallDispatchesSignals();
    void metacallDispatchesVersion();
    void metacallCountsItsMethods();
    void versionThroughTheMetaObject();
    void signalsReachReceivers();
    void parentDestroysIt();

    void pluginIsFoundByItsInterface();
    void pluginIsCalledThroughTheInterface();
    void pluginIsCalledByName();
};

void tst_FeedPluginInterface::metaObjectHasMethodsOnly()
{
    QCOMPARE(meta.className(), "FeedPluginInterface");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 6);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.constructorCount(), 0);
}

void tst_FeedPluginInterface::methodsAreInTheirOrder_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArrayList>("parameterNames");
    QTest::addColumn<QList<int>>("parameterTypes");
    QTest::addColumn<int>("returnType");
    QTest::addColumn<bool>("isSignal");

    const QByteArrayList none;
    const QList<int> noTypes;
    QTest::newRow("downloadFeedsFinished()") << 0 << none << noTypes << int(QMetaType::Void) << true;
    QTest::newRow("downloadFeedsFailed(int)")
        << 1 << QByteArrayList{"error"} << QList<int>{QMetaType::Int} << int(QMetaType::Void) << true;
    QTest::newRow("downloadEnclosureFinished(QVariantMap)")
        << 2 << QByteArrayList{"map"} << QList<int>{QMetaType::QVariantMap} << int(QMetaType::Void) << true;
    QTest::newRow("downloadEnclosureFailed(int)")
        << 3 << QByteArrayList{"error"} << QList<int>{QMetaType::Int} << int(QMetaType::Void) << true;
    QTest::newRow("enclosureDownloadProgress(qint64,qint64)")
        << 4 << QByteArrayList{"bytesReceived", "bytesTotal"}
        << QList<int>{QMetaType::LongLong, QMetaType::LongLong} << int(QMetaType::Void) << true;
    QTest::newRow("version()") << 5 << none << noTypes << int(QMetaType::QString) << false;
}

void tst_FeedPluginInterface::methodsAreInTheirOrder()
{
    QFETCH(int, index);
    QFETCH(QByteArrayList, parameterNames);
    QFETCH(QList<int>, parameterTypes);
    QFETCH(int, returnType);
    QFETCH(bool, isSignal);
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    const QByteArray signature = QTest::currentDataTag();
    QCOMPARE(meta.indexOfMethod(signature.constData()), meta.methodOffset() + index);
    // The meta-object uses the same name for both spellings of this type.
    QCOMPARE(method.methodSignature(), QByteArray(signature).replace("qint64", "qlonglong"));
    QCOMPARE(method.parameterNames(), parameterNames);
    QList<int> types;
    for (int i = 0; i < method.parameterCount(); ++i)
        types.append(method.parameterType(i));
    QCOMPARE(types, parameterTypes);
    QCOMPARE(method.returnType(), returnType);
    QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
    QCOMPARE(method.access(), isSignal ? QMetaMethod::Public : QMetaMethod::Private);
}

void tst_FeedPluginInterface::metacastKnowsTheName()
{
    MinimalPlugin plugin;
    QCOMPARE(plugin.qt_metacast("FeedPluginInterface"), static_cast<void *>(&plugin));
    QCOMPARE(plugin.qt_metacast("QObject"), static_cast<void *>(&plugin));
    QVERIFY(!plugin.qt_metacast(nullptr));
    QVERIFY(!plugin.qt_metacast("QTimer"));
    QVERIFY(!plugin.qt_metacast(""));
    QObject *object = &plugin;
    QCOMPARE(qobject_cast<FeedPluginInterface *>(object), &plugin);
}

void tst_FeedPluginInterface::metacallDispatchesSignals()
{
    MinimalPlugin plugin;
    QSignalSpy feedsFailed(&plugin, &FeedPluginInterface::downloadFeedsFailed);
    QSignalSpy progress(&plugin, &FeedPluginInterface::enclosureDownloadProgress);
    int error = 404;
    qint64 received = 7;
    qint64 total = -1;
    void *errorArguments[] = {nullptr, &error};
    void *progressArguments[] = {nullptr, &received, &total};
    plugin.metacall(meta.methodOffset() + 1, errorArguments);
    plugin.metacall(meta.methodOffset() + 4, progressArguments);
    QCOMPARE(feedsFailed.size(), 1);
    QCOMPARE(feedsFailed.at(0), QVariantList{404});
    QCOMPARE(progress.size(), 1);
    QCOMPARE(progress.at(0), QVariantList({qint64(7), qint64(-1)}));
}

void tst_FeedPluginInterface::metacallDispatchesVersion()
{
    MinimalPlugin plugin;
    QString version;
    void *arguments[] = {&version};
    plugin.metacall(meta.methodOffset() + 5, arguments);
    QCOMPARE(version, QString("0.1"));
    void *nowhere[] = {nullptr};
    QCOMPARE(plugin.metacall(meta.methodOffset() + 5, nowhere), -1);
}

void tst_FeedPluginInterface::metacallCountsItsMethods()
{
    MinimalPlugin plugin;
    int error = 0;
    QVariantMap map;
    qint64 bytes = 0;
    void *arguments[][3] = {{nullptr, nullptr, nullptr}, {nullptr, &error, nullptr},
                            {nullptr, &map, nullptr},    {nullptr, &error, nullptr},
                            {nullptr, &bytes, &bytes},   {nullptr, nullptr, nullptr}};
    for (int id = 0; id < 6; ++id)
        QCOMPARE(plugin.metacall(meta.methodOffset() + id, arguments[id]), id - 6);
    // Larger ids are left for derived classes.
    QCOMPARE(plugin.metacall(meta.methodOffset() + 6, arguments[0]), 0);
    QCOMPARE(plugin.metacall(meta.methodOffset() + 9, arguments[0]), 3);
    // Ids of QObject's own methods are handled by QObject.
    QVERIFY(plugin.metacall(QObject::staticMetaObject.indexOfMethod("deleteLater()"), arguments[0]) < 0);
    QCoreApplication::removePostedEvents(&plugin);
}

void tst_FeedPluginInterface::versionThroughTheMetaObject()
{
    MinimalPlugin plugin;
    QString version;
    QVERIFY(QMetaObject::invokeMethod(&plugin, "version", Q_RETURN_ARG(QString, version)));
    QCOMPARE(version, QString("0.1"));
    version.append("changed");
    QVERIFY(QMetaObject::invokeMethod(&plugin, "version", Q_RETURN_ARG(QString, version)));
    QCOMPARE(version, QString("0.1"));
}

void tst_FeedPluginInterface::signalsReachReceivers()
{
    MinimalPlugin plugin;
    QSignalSpy feedsFinished(&plugin, SIGNAL(downloadFeedsFinished()));
    QSignalSpy feedsFailed(&plugin, SIGNAL(downloadFeedsFailed(int)));
    QSignalSpy enclosureFinished(&plugin, SIGNAL(downloadEnclosureFinished(QVariantMap)));
    QSignalSpy enclosureFailed(&plugin, SIGNAL(downloadEnclosureFailed(int)));
    QSignalSpy progress(&plugin, SIGNAL(enclosureDownloadProgress(qint64, qint64)));
    const QVariantMap map{{"uri", "urn:1"}, {"length", qint64(1) << 33}};
    plugin.downloadFeedsFinished();
    plugin.downloadFeedsFailed(404);
    plugin.downloadEnclosureFinished(map);
    plugin.downloadEnclosureFailed(FeedDownloadTooLarge);
    plugin.enclosureDownloadProgress(qint64(1) << 40, -1);

    QCOMPARE(QList<QVariantList>(feedsFinished), QList<QVariantList>{{}});
    QCOMPARE(QList<QVariantList>(feedsFailed), QList<QVariantList>{{404}});
    QCOMPARE(QList<QVariantList>(enclosureFinished), QList<QVariantList>{{map}});
    QCOMPARE(QList<QVariantList>(enclosureFailed), QList<QVariantList>{{7}});
    QCOMPARE(QList<QVariantList>(progress), (QList<QVariantList>{{qint64(1) << 40, qint64(-1)}}));
}

void tst_FeedPluginInterface::parentDestroysIt()
{
    auto parent = std::make_unique<QObject>();
    const QPointer<FeedPluginInterface> plugin = new MinimalPlugin(parent.get());
    QCOMPARE(plugin->parent(), parent.get());
    parent.reset();
    QVERIFY(!plugin);

    const std::unique_ptr<FeedPluginInterface> free = std::make_unique<MinimalPlugin>();
    QVERIFY(!free->parent());
}

void tst_FeedPluginInterface::pluginIsFoundByItsInterface()
{
    QPluginLoader loader(ECHO_PLUGIN);
    QCOMPARE(loader.metaData().value("IID").toString(), QString(FeedPluginInterface_iid));
    QCOMPARE(loader.metaData().value("className").toString(), QString("EchoPlugin"));
    auto *plugin = qobject_cast<FeedPluginInterface *>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    QObject parent;
    QPointer<FeedPluginInterface> further = plugin->createDownloader(&parent);
    QVERIFY(further && further != plugin);
    QCOMPARE(further->parent(), &parent);
}

void tst_FeedPluginInterface::pluginIsCalledThroughTheInterface()
{
    QPluginLoader loader(ECHO_PLUGIN);
    auto *plugin = qobject_cast<FeedPluginInterface *>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    QSignalSpy feedsFinished(plugin, &FeedPluginInterface::downloadFeedsFinished);
    QSignalSpy feedsFailed(plugin, &FeedPluginInterface::downloadFeedsFailed);
    QSignalSpy enclosureFailed(plugin, &FeedPluginInterface::downloadEnclosureFailed);

    plugin->subscribe(QUrl("https://example.org/feed.xml"));
    QVERIFY(feedsFinished.isEmpty());
    QVERIFY(feedsFinished.wait(longestWait));
    QCOMPARE(plugin->errorString(), QString("https://example.org/feed.xml"));
    plugin->downloadFeeds({"urn:1", "urn:2", "urn:3"});
    QVERIFY(feedsFailed.wait(longestWait));
    QCOMPARE(feedsFailed.at(0), QVariantList{3});
    plugin->cancel();
    QVERIFY(enclosureFailed.wait(longestWait));
    QCOMPARE(enclosureFailed.at(0), QVariantList{FeedDownloadCanceled});
}

void tst_FeedPluginInterface::pluginIsCalledByName()
{
    FeedMethod call;
    call.name = "downloadEnclosure";
    call.addArgument(FeedArgument::fromValue(QString("urn:1")));
    call.addArgument(FeedArgument::fromValue(QString("/folder")));
    QDataStream stream(FeedMethod::toByteArray(call));
    FeedMethod arrived;
    stream >> arrived;

    QPluginLoader loader(ECHO_PLUGIN);
    auto *plugin = qobject_cast<FeedPluginInterface *>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    QSignalSpy finished(plugin, &FeedPluginInterface::downloadEnclosureFinished);
    QSignalSpy progress(plugin, &FeedPluginInterface::enclosureDownloadProgress);
    const QList<QGenericArgument> arguments = arrived.genericArguments();
    QCOMPARE(arguments.size(), 2);
    QVERIFY(QMetaObject::invokeMethod(plugin, arrived.name.constData(), arguments[0], arguments[1]));
    QVERIFY(finished.wait(longestWait));
    const QVariantMap map{{"uri", "urn:1"}, {"localUrl", "/folder"}};
    QCOMPARE(finished.at(0), QVariantList{map});
    QCOMPARE(progress.at(0), QVariantList({qint64(1) << 40, qint64(-1)}));
}

QTEST_GUILESS_MAIN(tst_FeedPluginInterface)
#include "tst_feedplugininterface.moc"
