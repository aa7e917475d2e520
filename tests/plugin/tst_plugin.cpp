// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library as a server sees it: file, symbols, metadata, casts, calls, version report.
#include "plugin/buildstamp.h"
#include "support/eventlog.h"
#include "support/patience.h"
#include "support/plugin/pluginenvironment.h"
#include "support/plugin/pluginlibrary.h"
#include "support/scripteddatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QMap>
#include <QMetaMethod>
#include <QPluginLoader>
#include <QPointer>
#include <QSqlDatabase>
#include <QtPlugin>
#include <QtTest>

// A server is compiled with declarations of its own, so these are not those of the plugin's
// sources: the order of the virtual operations is what the two sides have agreed upon.
class ServerInterface
{
public:
    virtual ~ServerInterface() = default;
    virtual QString getVersion() const = 0;
    virtual bool start() = 0;
    virtual void stop() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void setLogLevel(quint8 level) = 0;
    virtual void setDatabase(const QSqlDatabase &database) = 0;
};

class VerInfoInterface
{
public:
    virtual ~VerInfoInterface() = default;
    virtual QMap<QString, QString> getVerInfo() const = 0;
};

Q_DECLARE_INTERFACE(ServerInterface, "com.kestra-lk.oqs.ServerInterface")
Q_DECLARE_INTERFACE(VerInfoInterface, "com.kestra-lk.VerInfoInterface")

namespace {

bool isMapped()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libTalvenHR.so");
}

/// The library in memory, with settings that it finds.
class LoadedLibrary
{
public:
    LoadedLibrary()
    {
        environment.writeIni({QStringLiteral("enabled=true")});
        file.load();
    }

    QObject *object() { return file.object(); }
    ServerInterface *server() { return qobject_cast<ServerInterface *>(object()); }
    VerInfoInterface *verInfo() { return qobject_cast<VerInfoInterface *>(object()); }

    // In this order: the log outlives the script, the script the plugin's connection.
    EventLog log;
    ScriptedDatabase script;
    PluginEnvironment environment;
    PluginLibrary file;
};

} // namespace

class tst_Plugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void file_name();
    void file_exports_data();
    void file_exports();
    void metadata_keys();
    void metadata_isReadWithoutAnObject();
    void instance_sameObjectAsLongAsItLives();
    void instance_entryPointAndLoaderAgree();
    void instance_freshObjectAfterDeletion();
    void metacast_data();
    void metacast();
    void metacast_addresses();
    void interfaces_callsInOrderOfTheVirtualTable();
    void interfaces_deleteThroughEither_data();
    void interfaces_deleteThroughEither();
    void metaObject_classAndMethods();
    void logLevel_isZeroAtFirst();
    void getVersion_value();
    void getVerInfo_entries();
    void getVerInfo_keysInOrder();
    void getVerInfo_inEveryState_data();
    void getVerInfo_inEveryState();
    void getVerInfo_logsNothing();
    void buildStamp_data();
    void buildStamp();
    void buildStamp_inAnySystemLocale();
    void unload_endsTheRunningPlugin();
    void unload_severalRounds_data();
    void unload_severalRounds();
};

void tst_Plugin::file_name()
{
    const QFileInfo file(PluginLibrary::file());
    QCOMPARE(file.fileName(), QStringLiteral("libTalvenHR.so"));
    QVERIFY(file.isFile() && !file.isSymLink());
    // No further names with a version.
    QCOMPARE(file.dir().entryList({QStringLiteral("*TalvenHR*")}),
             QStringList {QStringLiteral("libTalvenHR.so")});
}

void tst_Plugin::file_exports_data()
{
    QTest::addColumn<QByteArray>("symbol");
    QTest::newRow("entry point") << QByteArray("qt_plugin_instance");
    QTest::newRow("metadata") << QByteArray("qt_plugin_query_metadata");
    QTest::newRow("static meta-object") << QByteArray("_ZN8TalvenHR16staticMetaObjectE");
    QTest::newRow("virtual table") << QByteArray("_ZTV8TalvenHR");
    QTest::newRow("type information") << QByteArray("_ZTI8TalvenHR");
    QTest::newRow("type name") << QByteArray("_ZTS8TalvenHR");
    QTest::newRow("constructor") << QByteArray("_ZN8TalvenHRC1EP7QObject");
    QTest::newRow("destructor") << QByteArray("_ZN8TalvenHRD1Ev");
    QTest::newRow("start") << QByteArray("_ZN8TalvenHR5startEv");
}

void tst_Plugin::file_exports()
{
    QFETCH(QByteArray, symbol);
    LoadedLibrary library;
    QLibrary symbols(PluginLibrary::file());
    QVERIFY(symbols.resolve(symbol.constData()));
    symbols.unload();
    QCOMPARE(library.log.take(), QStringList());
}

void tst_Plugin::metadata_keys()
{
    const QJsonObject metadata = QPluginLoader(PluginLibrary::file()).metaData();
    QCOMPARE(metadata.value(QStringLiteral("IID")).toString(),
             QStringLiteral("com.kestra-lk.oqs.ServerInterface"));
    QCOMPARE(metadata.value(QStringLiteral("className")).toString(), QStringLiteral("TalvenHR"));
    // From 5.13 on Qt drops the third number.
    const int version = QT_VERSION >= 0x050d00 ? QT_VERSION & 0xffff00 : QT_VERSION;
    QCOMPARE(metadata.value(QStringLiteral("version")).toInt(), version);
#ifdef QT_NO_DEBUG
    QCOMPARE(metadata.value(QStringLiteral("debug")), QJsonValue(false));
#endif
    QVERIFY(metadata.value(QStringLiteral("MetaData")).toObject().isEmpty());

    // Newer releases of Qt leave out what is empty, and add the architecture.
    QStringList keys = metadata.keys();
    keys.removeAll(QStringLiteral("MetaData"));
    keys.removeAll(QStringLiteral("archreq"));
    QCOMPARE(keys, lines({"IID", "className", "debug", "version"}));
}

void tst_Plugin::metadata_isReadWithoutAnObject()
{
    EventLog log;
    PluginEnvironment environment; // whose missing INI file a plugin would tell of
    QPluginLoader loader(PluginLibrary::file());
    loader.setLoadHints({});
    QVERIFY(!loader.metaData().isEmpty());
    QVERIFY(loader.load());
    QLibrary symbols(PluginLibrary::file());
    using Query = const char *(*)();
    const auto query = reinterpret_cast<Query>(symbols.resolve("qt_plugin_query_metadata"));
    QVERIFY(query);
    QVERIFY(query());
    QCOMPARE(query(), query());
    QCOMPARE(log.take(), QStringList());
    symbols.unload();
    QVERIFY(loader.unload());
}

void tst_Plugin::instance_sameObjectAsLongAsItLives()
{
    LoadedLibrary library;
    const QPointer<QObject> object = library.object();
    QVERIFY(object);
    QVERIFY(!object->parent());
    QCOMPARE(library.object(), object.data());
    QPluginLoader another(PluginLibrary::file());
    QCOMPARE(another.instance(), object.data());
    another.unload();
    QVERIFY(object);
    QCOMPARE(library.log.take(), QStringList());
}

void tst_Plugin::instance_entryPointAndLoaderAgree()
{
    LoadedLibrary library;
    using Instance = QObject *(*)();
    QLibrary symbols(PluginLibrary::file());
    const auto instance = reinterpret_cast<Instance>(symbols.resolve("qt_plugin_instance"));
    QVERIFY(instance);
    QObject *const object = instance();
    QVERIFY(object);
    QCOMPARE(instance(), object);
    QCOMPARE(library.object(), object);
    symbols.unload();
}

void tst_Plugin::instance_freshObjectAfterDeletion()
{
    LoadedLibrary library;
    library.server()->setLogLevel(1);
    library.server()->setDatabase(library.script.handle());
    QVERIFY(library.server()->start());
    QTRY_VERIFY_WITH_TIMEOUT(library.log.contains(QStringLiteral("debug THRWorker::init()")),
                             longestWait);
    const QPointer<QObject> first = library.object();
    library.log.clear();
    delete first.data();
    QCOMPARE(library.log.take(), QStringList());

    // With fresh state: the log level is 0 again, and the settings are read anew.
    library.environment.writeIni({QStringLiteral("enabled=false")});
    QVERIFY(library.object());
    QVERIFY(!first);
    QVERIFY(library.server()->start());
    QCOMPARE(library.log.take(),
             lines({"debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "warning TalvenHR is DISABLED"}));
}

void tst_Plugin::metacast_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("result");
    const auto row = [](const char *name, const char *result) {
        QTest::newRow(name && *name ? name : "nothing") << QByteArray(name) << QByteArray(result);
    };
    row("TalvenHR", "object");
    row("ServerInterface", "server");
    row("VerInfoInterface", "version");
    row("com.kestra-lk.oqs.ServerInterface", "server");
    row("com.kestra-lk.VerInfoInterface", "version");
    row("QObject", "object");
    row("", "null");
    row("talvenhr", "null");
    row("com.kestra-lk.oqs.serverinterface", "null");
    row("com.kestra-lk.oqs.VerInfoInterface", "null");
    row("com.kestra-lk.ServerInterface", "null");
    row("QThread", "null");
    QTest::newRow("null") << QByteArray() << QByteArray("null");
}

void tst_Plugin::metacast()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, result);
    LoadedLibrary library;
    QObject *const object = library.object();
    const void *expected = nullptr;
    if (result == "object")
        expected = object;
    else if (result == "server")
        expected = library.server();
    else if (result == "version")
        expected = library.verInfo();
    QCOMPARE(static_cast<const void *>(object->qt_metacast(name.isNull() ? nullptr : name.data())),
             expected);
    QCOMPARE(expected == nullptr, result == "null");
}

void tst_Plugin::metacast_addresses()
{
    LoadedLibrary library;
    const void *const object = library.object();
    const void *const server = library.object()->qt_metacast("ServerInterface");
    const void *const version = library.object()->qt_metacast("VerInfoInterface");
    QVERIFY(server && server != object);
    QVERIFY(version && version != object && version != server);
    // The base objects lie in the order of the bases.
    QVERIFY(object < server && server < version);
    QCOMPARE(static_cast<const void *>(library.server()), server);
    QCOMPARE(static_cast<const void *>(library.verInfo()), version);
}

void tst_Plugin::interfaces_callsInOrderOfTheVirtualTable()
{
    LoadedLibrary library;
    ServerInterface *const server = library.server();
    QCOMPARE(server->getVersion(), QStringLiteral("1.6.0"));
    QCOMPARE(library.verInfo()->getVerInfo().value(QStringLiteral("VER")), QStringLiteral("1.6.0"));
    QCOMPARE(library.log.take(), QStringList());

    server->setLogLevel(1);
    server->stop();
    QCOMPARE(library.log.take(), lines({"debug Stop TalvenHR.."}));
    server->pause();
    QCOMPARE(library.log.take(), lines({"debug Pause TalvenHR.."}));
    server->resume();
    QCOMPARE(library.log.take(), lines({"debug Resume TalvenHR.."}));

    server->setDatabase(library.script.handle(QStringLiteral("dochadzka")));
    QVERIFY(server->start());
    QTRY_VERIFY_WITH_TIMEOUT(library.log.contains(QStringLiteral("debug THRWorker::init()")),
                             longestWait);
    QCOMPARE(
        library.log.takeMatching({QStringLiteral("Start"), QStringLiteral("setOrvDb")}),
        lines({"debug Start TalvenHR..", "debug THRWorker::setOrvDb(OQS.dochadzka.TalvenHR)"}));
    // The handle of the server stays closed.
    QVERIFY(!QSqlDatabase::database(QStringLiteral("scripted-1"), false).isOpen());
}

void tst_Plugin::interfaces_deleteThroughEither_data()
{
    QTest::addColumn<bool>("throughVersion");
    QTest::newRow("ServerInterface") << false;
    QTest::newRow("VerInfoInterface") << true;
}

void tst_Plugin::interfaces_deleteThroughEither()
{
    QFETCH(bool, throughVersion);
    LoadedLibrary library;
    const QPointer<QObject> object = library.object();
    if (throughVersion)
        delete library.verInfo();
    else
        delete library.server();
    QVERIFY(!object);
    QCOMPARE(library.log.take(), QStringList());
}

void tst_Plugin::metaObject_classAndMethods()
{
    LoadedLibrary library;
    const QMetaObject *const meta = library.object()->metaObject();
    QCOMPARE(meta->className(), "TalvenHR");
    QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta->classInfoCount() - meta->classInfoOffset(), 0);
    QCOMPARE(meta->propertyCount() - meta->propertyOffset(), 0);
    QCOMPARE(meta->enumeratorCount() - meta->enumeratorOffset(), 0);
    QCOMPARE(meta->constructorCount(), 0);
    QCOMPARE(meta->methodCount() - meta->methodOffset(), 1);
    const QMetaMethod method = meta->method(meta->methodOffset());
    QCOMPARE(method.methodSignature(), QByteArray("init()"));
    QCOMPARE(method.typeName(), "bool");
    QCOMPARE(method.methodType(), QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Private);
}

void tst_Plugin::logLevel_isZeroAtFirst()
{
    LoadedLibrary library;
    library.environment.writeIni({QStringLiteral("enabled=false")});
    ServerInterface *const server = library.server();
    server->stop();
    QVERIFY(server->start());
    QCOMPARE(library.log.take(),
             lines({"debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "warning TalvenHR is DISABLED"}));
}

void tst_Plugin::getVersion_value()
{
    LoadedLibrary library;
    QCOMPARE(library.server()->getVersion(), QStringLiteral("1.6.0"));
}

void tst_Plugin::getVerInfo_entries()
{
    LoadedLibrary library;
    const QMap<QString, QString> report = library.verInfo()->getVerInfo();
    QCOMPARE(report.value(QStringLiteral("VER")), QStringLiteral("1.6.0"));
    QCOMPARE(report.value(QStringLiteral("phoryType")), QStringLiteral("PLG.TH"));
    QCOMPARE(report.value(QStringLiteral("ORVDB")), QStringLiteral("20.11.26"));
    const QString build = report.value(QStringLiteral("BUILD"));
    QVERIFY2(QRegularExpression(QStringLiteral("^\\d{10}$")).match(build).hasMatch(),
             qPrintable(build));
    QVERIFY(QDateTime::fromString(QStringLiteral("20") + build, QStringLiteral("yyyyMMddhhmm"))
                .isValid());
}

void tst_Plugin::getVerInfo_keysInOrder()
{
    LoadedLibrary library;
    QCOMPARE(QStringList(library.verInfo()->getVerInfo().keys()),
             lines({"BUILD", "ORVDB", "VER", "phoryType"}));
}

void tst_Plugin::getVerInfo_inEveryState_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::newRow("enabled") << true;
    QTest::newRow("disabled") << false;
}

void tst_Plugin::getVerInfo_inEveryState()
{
    QFETCH(bool, enabled);
    LoadedLibrary library;
    library.environment.writeIni(
        {enabled ? QStringLiteral("enabled=true") : QStringLiteral("enabled=false")});
    ServerInterface *const server = library.server();
    const VerInfoInterface *const verInfo = library.verInfo();
    const QMap<QString, QString> report = verInfo->getVerInfo();
    QCOMPARE(report.size(), 4);

    server->setDatabase(library.script.handle());
    QVERIFY(server->start());
    QCOMPARE(library.log.contains(QStringLiteral("TalvenHR is DISABLED")), !enabled);
    QCOMPARE(verInfo->getVerInfo(), report);
    QCOMPARE(server->getVersion(), QStringLiteral("1.6.0"));
    server->stop();
    QCOMPARE(verInfo->getVerInfo(), report);
    QCOMPARE(server->getVersion(), QStringLiteral("1.6.0"));
    delete library.object();
    library.log.clear();
}

void tst_Plugin::getVerInfo_logsNothing()
{
    LoadedLibrary library;
    library.server()->setLogLevel(3);
    library.server()->getVersion();
    library.verInfo()->getVerInfo();
    QCOMPARE(library.log.take(), QStringList());
}

void tst_Plugin::buildStamp_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("stamp");
    const auto row = [](const char *date, const char *time, const char *stamp) {
        QTest::newRow(date) << QString::fromLatin1(date) << QString::fromLatin1(time)
                            << QString::fromLatin1(stamp);
    };
    row("Oct  2 2023", "14:12:58", "2310021412");
    row("Oct 12 2023", "00:00:00", "2310120000");
    row("Dec 31 2029", "23:59:59", "2912312359");
    row("Feb 29 2024", "09:05:59", "2402290905");
    row("Jan  1 2030", "01:02:03", "3001010102");
    row("Mar  9 2026", "12:00:00", "2603091200");
    row("May  9 2026", "12:00:00", "2605091200");
    row("??? ?? ????", "??:??:??", "");
    row("Feb 30 2024", "09:05:59", "");
    row("", "09:05:59", "");
}

void tst_Plugin::buildStamp()
{
    QFETCH(QString, date);
    QFETCH(QString, time);
    QFETCH(QString, stamp);
    QCOMPARE(::buildStamp(date, time), stamp);
}

void tst_Plugin::buildStamp_inAnySystemLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Slovak, QLocale::Slovakia));
    const QString stamp = ::buildStamp(QStringLiteral("May  2 2023"), QStringLiteral("14:12:58"));
    QLocale::setDefault(before);
    QCOMPARE(stamp, QStringLiteral("2305021412"));
}

void tst_Plugin::unload_endsTheRunningPlugin()
{
    LoadedLibrary library;
    library.server()->setLogLevel(1);
    library.server()->setDatabase(library.script.handle());
    QVERIFY(library.server()->start());
    QTRY_VERIFY_WITH_TIMEOUT(library.log.contains(QStringLiteral("debug THRWorker::init()")),
                             longestWait);
    const QPointer<QObject> object = library.object();
    library.log.clear();
    QVERIFY(library.file.unload());
    QVERIFY(!object);
    QVERIFY(!isMapped());
    QCOMPARE(library.log.take(), QStringList());
}

void tst_Plugin::unload_severalRounds_data()
{
    QTest::addColumn<bool>("deleteFirst");
    QTest::newRow("the server deletes the object") << true;
    QTest::newRow("the loader deletes the object") << false;
}

void tst_Plugin::unload_severalRounds()
{
    QFETCH(bool, deleteFirst);
    EventLog log;
    ScriptedDatabase script;
    PluginEnvironment environment;
    environment.writeIni({QStringLiteral("enabled=true")});
    const QSqlDatabase handle = script.handle();
    for (int round = 1; round <= 3; ++round) {
        PluginLibrary library;
        QVERIFY(!isMapped());
        library.load();
        QVERIFY(isMapped());
        const QPointer<QObject> object = library.object();
        auto *const server = qobject_cast<ServerInterface *>(object.data());
        QVERIFY(server);
        server->setLogLevel(1);
        server->setDatabase(handle);
        QVERIFY(server->start());
        QTRY_VERIFY_WITH_TIMEOUT(log.contains(QStringLiteral("debug THRWorker::init()")),
                                 longestWait);
        // From the second round on the connection of the first one is there.
        QCOMPARE(log.count(QStringLiteral("sql open")), round == 1 ? 0 : 1);
        log.clear();
        if (deleteFirst)
            delete object.data();
        QVERIFY(library.unload());
        QVERIFY(!object);
        QVERIFY(!isMapped());
        // Closed by hand, as the end of a tick would.
        QSqlDatabase::database(QStringLiteral("OQS.scripted.TalvenHR"), false).close();
        log.clear();
    }
}

QTEST_GUILESS_MAIN(tst_Plugin)
#include "tst_plugin.moc"
