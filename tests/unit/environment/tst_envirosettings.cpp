// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings whose missing keys the environment supplies: precedence, keys, prefix and log line.
#include "environment/envirosettings.h"
#include "support/eventlog.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// An environment variable that ends with the test.
class Variable
{
public:
    Variable(const char *variable, const QByteArray &value) :
        name(variable)
    {
        qputenv(name, value);
    }
    ~Variable() { qunsetenv(name); }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

private:
    const char *name;
};

/// A folder with an INI file.
struct Fixture
{
    explicit Fixture(const QByteArray &ini = QByteArray())
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(ini) != ini.size())
            qFatal("cannot write %s", qPrintable(path()));
    }

    QString path() const { return folder.filePath(QStringLiteral("plugin.ini")); }

    EventLog log;
    QTemporaryDir folder;
};

QVariant valueOf(const char *text)
{
    return QVariant(QString::fromUtf8(text));
}

} // namespace

class tst_EnviroSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void metaObject();
    void constructor_parentOnly();
    void constructor_scope();
    void constructor_file();
    void constructor_organization();
    void value_precedence_data();
    void value_precedence();
    void value_defaultTravelsAsText_data();
    void value_defaultTravelsAsText();
    void value_withoutDefaultIsEmptyText();
    void value_inAGroup();
    void value_keyThatHoldsItsGroup();
    void value_inGroupsWithinGroups();
    void value_logsEveryKey();
    void value_withPrefix();
    void value_variablesOfLaterAreNotSeen();
    void value_variableOfAnyLetters();
    void setPrefix_emitsOnChangeOnly();
    void setPrefix_throughTheProperty();
    void envKey_data();
    void envKey();

private:
    QTemporaryDir folder;
};

void tst_EnviroSettings::initTestCase()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       folder.filePath(QStringLiteral("user")));
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope,
                       folder.filePath(QStringLiteral("system")));
    QCoreApplication::setOrganizationName(QStringLiteral("Maker"));
    QCoreApplication::setApplicationName(QStringLiteral("Program"));
}

void tst_EnviroSettings::metaObject()
{
    const QMetaObject &meta = EnviroSettings::staticMetaObject;
    QCOMPARE(meta.className(), "EnviroSettings");
    QCOMPARE(meta.superClass(), &QSettings::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    QCOMPARE(method.methodType(), QMetaMethod::Signal);
    QCOMPARE(method.methodSignature(), QByteArray("prefixChanged()"));
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty property = meta.property(meta.propertyOffset());
    QCOMPARE(property.name(), "prefix");
    QCOMPARE(property.userType(), int(QMetaType::QString));
    QVERIFY(property.isReadable());
    QVERIFY(property.isWritable());
    QVERIFY(property.isStored());
    QVERIFY(property.isDesignable());
    QVERIFY(property.isScriptable());
    QCOMPARE(property.notifySignalIndex(), meta.methodOffset());
}

void tst_EnviroSettings::constructor_parentOnly()
{
    EventLog log;
    const Variable variable("TIMERINTERVAL", "5");
    QObject parent;
    const EnviroSettings settings(&parent);
    QCOMPARE(settings.parent(), &parent);
    QCOMPARE(settings.organizationName(), QStringLiteral("Maker"));
    QCOMPARE(settings.applicationName(), QStringLiteral("Program"));
    QCOMPARE(settings.scope(), QSettings::UserScope);
    QCOMPARE(settings.prefix(), QString());
    QCOMPARE(settings.value(QStringLiteral("timerInterval"), 60), valueOf("5"));
    log.clear();
}

void tst_EnviroSettings::constructor_scope()
{
    EventLog log;
    const Variable variable("TIMERINTERVAL", "5");
    QObject parent;
    const EnviroSettings settings(QSettings::SystemScope, QStringLiteral("Another"),
                                  QStringLiteral("Tool"), &parent);
    QCOMPARE(settings.parent(), &parent);
    QCOMPARE(settings.organizationName(), QStringLiteral("Another"));
    QCOMPARE(settings.applicationName(), QStringLiteral("Tool"));
    QCOMPARE(settings.scope(), QSettings::SystemScope);
    QCOMPARE(settings.prefix(), QString());
    QCOMPARE(settings.value(QStringLiteral("timerInterval"), 60), valueOf("5"));
    log.clear();
}

void tst_EnviroSettings::constructor_file()
{
    Fixture f;
    const Variable variable("TIMERINTERVAL", "5");
    QObject parent;
    const EnviroSettings settings(f.path(), QSettings::IniFormat, &parent);
    QCOMPARE(settings.parent(), &parent);
    QCOMPARE(settings.fileName(), f.path());
    QCOMPARE(settings.format(), QSettings::IniFormat);
    QCOMPARE(settings.prefix(), QString());
    QCOMPARE(settings.value(QStringLiteral("timerInterval"), 60), valueOf("5"));
    f.log.clear();
}

void tst_EnviroSettings::constructor_organization()
{
    EventLog log;
    const Variable variable("TIMERINTERVAL", "5");
    QObject parent;
    const EnviroSettings settings(QStringLiteral("Another"), QStringLiteral("Tool"), &parent);
    QCOMPARE(settings.parent(), &parent);
    QCOMPARE(settings.organizationName(), QStringLiteral("Another"));
    QCOMPARE(settings.applicationName(), QStringLiteral("Tool"));
    QCOMPARE(settings.scope(), QSettings::UserScope);
    QCOMPARE(settings.prefix(), QString());
    QCOMPARE(settings.value(QStringLiteral("timerInterval"), 60), valueOf("5"));
    log.clear();
}

void tst_EnviroSettings::value_precedence_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<bool>("set");
    QTest::addColumn<QString>("value");
    const QByteArray file("timerInterval=30\n");
    const QByteArray emptyInFile("timerInterval=\n");
    const QByteArray otherKey("timerinterval=30\n[MES]\ntimerInterval=31\n");
    QTest::newRow("file and variable") << file << QByteArray("5") << true << QStringLiteral("30");
    QTest::newRow("file only") << file << QByteArray() << false << QStringLiteral("30");
    QTest::newRow("variable only")
        << QByteArray() << QByteArray("5") << true << QStringLiteral("5");
    QTest::newRow("neither") << QByteArray() << QByteArray() << false << QStringLiteral("60");
    QTest::newRow("empty variable") << QByteArray() << QByteArray("") << true << QString();
    QTest::newRow("empty in the file") << emptyInFile << QByteArray("5") << true << QString();
    QTest::newRow("another key in the file")
        << otherKey << QByteArray("5") << true << QStringLiteral("5");
    QTest::newRow("variable that is no number")
        << QByteArray() << QByteArray("soon") << true << QStringLiteral("soon");
    QTest::newRow("variable with a comma")
        << QByteArray() << QByteArray("a, \"b\"") << true << QStringLiteral("a, \"b\"");
    QTest::newRow("variable beyond ASCII")
        << QByteArray() << QByteArray("žltý") << true << QStringLiteral("žltý");
}

void tst_EnviroSettings::value_precedence()
{
    QFETCH(QByteArray, ini);
    QFETCH(QByteArray, variable);
    QFETCH(bool, set);
    QFETCH(QString, value);
    Fixture f(ini);
    qunsetenv("TIMERINTERVAL");
    if (set)
        qputenv("TIMERINTERVAL", variable);
    const EnviroSettings settings(f.path(), QSettings::IniFormat);
    qunsetenv("TIMERINTERVAL");
    const QVariant read = settings.value(QStringLiteral("timerInterval"), 60);
    QCOMPARE(read.userType(), int(QMetaType::QString));
    QCOMPARE(read.toString(), value);
    f.log.clear();
}

void tst_EnviroSettings::value_defaultTravelsAsText_data()
{
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<QString>("text");
    QTest::newRow("true") << QVariant(true) << QStringLiteral("true");
    QTest::newRow("false") << QVariant(false) << QStringLiteral("false");
    QTest::newRow("number") << QVariant(60) << QStringLiteral("60");
    QTest::newRow("number below 0") << QVariant(-1) << QStringLiteral("-1");
    QTest::newRow("fraction") << QVariant(1.5) << QStringLiteral("1.5");
    QTest::newRow("text") << QVariant(QStringLiteral("ron.data")) << QStringLiteral("ron.data");
    QTest::newRow("date") << QVariant(QDate(2024, 3, 31)) << QStringLiteral("2024-03-31");
    QTest::newRow("invalid") << QVariant() << QString();
    QTest::newRow("list of two is lost")
        << QVariant(QStringList {QStringLiteral("a"), QStringLiteral("b")}) << QString();
    QTest::newRow("map is lost") << QVariant(QVariantMap {{QStringLiteral("a"), 1}}) << QString();
}

void tst_EnviroSettings::value_defaultTravelsAsText()
{
    QFETCH(QVariant, defaultValue);
    QFETCH(QString, text);
    Fixture f;
    const EnviroSettings settings(f.path(), QSettings::IniFormat);
    const QVariant read = settings.value(QStringLiteral("key"), defaultValue);
    QVERIFY(read.isValid());
    QCOMPARE(read.userType(), int(QMetaType::QString));
    QCOMPARE(read.toString(), text);
    // It reads as the caller meant it.
    if (defaultValue.type() == QVariant::Bool)
        QCOMPARE(read.toBool(), defaultValue.toBool());
    if (defaultValue.type() == QVariant::Int)
        QCOMPARE(read.toInt(), defaultValue.toInt());
    f.log.clear();
}

void tst_EnviroSettings::value_withoutDefaultIsEmptyText()
{
    Fixture f;
    const EnviroSettings settings(f.path(), QSettings::IniFormat);
    const QVariant read = settings.value(QStringLiteral("importFile"), QVariant());
    QVERIFY(read.isValid());
    QCOMPARE(read, valueOf(""));
    QCOMPARE(read.toBool(), false);
    QCOMPARE(read.toUInt(), 0u);
    f.log.clear();
}

void tst_EnviroSettings::value_inAGroup()
{
    Fixture f("21=general\n22=general\n23=general\n[MES]\n21=MD\n");
    const Variable mes21("MES_21", "from the environment");
    const Variable mes22("MES_22", "RD");
    const Variable only23("23", "not this one");
    EnviroSettings settings(f.path(), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("MES"));
    QCOMPARE(settings.value(QStringLiteral("21"), QVariant()), valueOf("MD"));
    QCOMPARE(settings.value(QStringLiteral("22"), QVariant()), valueOf("RD"));
    QCOMPARE(settings.value(QStringLiteral("23"), QVariant()), valueOf(""));
    settings.endGroup();
    QCOMPARE(settings.value(QStringLiteral("22"), QVariant()), valueOf("general"));
    QCOMPARE(f.log.take(),
             lines({"debug EnviroSettings::value() - key: 'MES/21', environment key: MES_21",
                    "debug EnviroSettings::value() - key: 'MES/22', environment key: MES_22",
                    "debug EnviroSettings::value() - key: 'MES/23', environment key: MES_23",
                    "debug EnviroSettings::value() - key: '22', environment key: 22"}));
}

void tst_EnviroSettings::value_keyThatHoldsItsGroup()
{
    Fixture f("[MES]\n21=MD\n");
    const Variable mes22("MES_22", "RD");
    const EnviroSettings settings(f.path(), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("MES/21"), QVariant()), valueOf("MD"));
    QCOMPARE(settings.value(QStringLiteral("MES/22"), QVariant()), valueOf("RD"));
    QCOMPARE(f.log.take(),
             lines({"debug EnviroSettings::value() - key: 'MES/21', environment key: MES_21",
                    "debug EnviroSettings::value() - key: 'MES/22', environment key: MES_22"}));
}

void tst_EnviroSettings::value_inGroupsWithinGroups()
{
    Fixture f("[a]\nb\\c=file\n");
    const Variable variable("A_B_D", "environment");
    EnviroSettings settings(f.path(), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("a"));
    settings.beginGroup(QStringLiteral("b"));
    QCOMPARE(settings.value(QStringLiteral("c"), 1), valueOf("file"));
    QCOMPARE(settings.value(QStringLiteral("d"), 1), valueOf("environment"));
    QCOMPARE(f.log.take(),
             lines({"debug EnviroSettings::value() - key: 'a/b/c', environment key: A_B_C",
                    "debug EnviroSettings::value() - key: 'a/b/d', environment key: A_B_D"}));
}

void tst_EnviroSettings::value_logsEveryKey()
{
    Fixture f("enabled=true\n");
    const EnviroSettings settings(f.path(), QSettings::IniFormat);
    settings.value(QStringLiteral("enabled"), false);
    settings.value(QStringLiteral("enabled"), false);
    settings.value(QStringLiteral("absent %s"), QVariant());
    settings.value(QStringLiteral("kľúč"), QVariant());
    QCOMPARE(f.log.take(),
             lines({"debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "debug EnviroSettings::value() - key: 'absent %s', environment key: ABSENT %S",
                    "debug EnviroSettings::value() - key: 'kľúč', environment key: KĽÚČ"}));
}

void tst_EnviroSettings::value_withPrefix()
{
    Fixture f("syncCommand=file\n[MES]\n21=MD\n[plug]\nenabled=not this one\n");
    const Variable plain("ENABLED", "no");
    const Variable prefixed("PLUG_ENABLED", "yes");
    const Variable command("PLUG_SYNCCOMMAND", "environment");
    const Variable mes("PLUG_MES_22", "RD");
    EnviroSettings settings(f.path(), QSettings::IniFormat);
    settings.setPrefix(QStringLiteral("plug"));
    // The prefix is the environment's alone: neither the key in the file nor the logged one has it.
    QCOMPARE(settings.value(QStringLiteral("enabled"), QVariant()), valueOf("yes"));
    QCOMPARE(settings.value(QStringLiteral("syncCommand"), QVariant()), valueOf("file"));
    settings.beginGroup(QStringLiteral("MES"));
    QCOMPARE(settings.value(QStringLiteral("22"), QVariant()), valueOf("RD"));
    QCOMPARE(
        f.log.take(),
        lines({"debug EnviroSettings::value() - key: 'enabled', environment key: PLUG_ENABLED",
               "debug EnviroSettings::value() - key: 'syncCommand', environment key: "
               "PLUG_SYNCCOMMAND",
               "debug EnviroSettings::value() - key: 'MES/22', environment key: PLUG_MES_22"}));
}

void tst_EnviroSettings::value_variablesOfLaterAreNotSeen()
{
    Fixture f;
    qputenv("TIMERINTERVAL", "5");
    qunsetenv("SYNCINTERVAL");
    const EnviroSettings settings(f.path(), QSettings::IniFormat);
    qputenv("TIMERINTERVAL", "7");
    qputenv("SYNCINTERVAL", "7");
    QCOMPARE(settings.value(QStringLiteral("timerInterval"), 60), valueOf("5"));
    QCOMPARE(settings.value(QStringLiteral("syncInterval"), 60), valueOf("60"));
    qunsetenv("TIMERINTERVAL");
    qunsetenv("SYNCINTERVAL");
    QCOMPARE(settings.value(QStringLiteral("timerInterval"), 60), valueOf("5"));
    f.log.clear();
}

void tst_EnviroSettings::value_variableOfAnyLetters()
{
    Fixture f;
    const Variable lower("timerInterval", "5");
    const EnviroSettings settings(f.path(), QSettings::IniFormat);
    // Only the name in upper case counts.
    QCOMPARE(settings.value(QStringLiteral("timerInterval"), 60), valueOf("60"));
    f.log.clear();
}

void tst_EnviroSettings::setPrefix_emitsOnChangeOnly()
{
    Fixture f;
    EnviroSettings settings(f.path(), QSettings::IniFormat);
    QSignalSpy changed(&settings, &EnviroSettings::prefixChanged);
    settings.setPrefix(QString());
    settings.setPrefix(QStringLiteral(""));
    QCOMPARE(changed.count(), 0);
    settings.setPrefix(QStringLiteral("plug"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(settings.prefix(), QStringLiteral("plug"));
    settings.setPrefix(QStringLiteral("plug"));
    QCOMPARE(changed.count(), 1);
    settings.setPrefix(QStringLiteral("PLUG"));
    QCOMPARE(changed.count(), 2);
    settings.setPrefix(QString());
    QCOMPARE(changed.count(), 3);
    QCOMPARE(settings.prefix(), QString());
    QCOMPARE(f.log.take(), QStringList());
}

void tst_EnviroSettings::setPrefix_throughTheProperty()
{
    Fixture f;
    EnviroSettings settings(f.path(), QSettings::IniFormat);
    // The new value is there when the signal comes.
    QString seen;
    connect(&settings, &EnviroSettings::prefixChanged, &settings,
            [&] { seen = settings.property("prefix").toString(); });
    QVERIFY(settings.setProperty("prefix", QStringLiteral("plug")));
    QCOMPARE(seen, QStringLiteral("plug"));
    QCOMPARE(settings.envKey(QStringLiteral("enabled")), QStringLiteral("PLUG_ENABLED"));
}

void tst_EnviroSettings::envKey_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("environmentKey");
    const QString none;
    const QString plug = QStringLiteral("plug");
    QTest::newRow("plain") << none << QStringLiteral("enabled") << QStringLiteral("ENABLED");
    QTest::newRow("camel case") << none << QStringLiteral("timerInterval")
                                << QStringLiteral("TIMERINTERVAL");
    QTest::newRow("group") << none << QStringLiteral("MES/21") << QStringLiteral("MES_21");
    QTest::newRow("groups") << none << QStringLiteral("a/b/c") << QStringLiteral("A_B_C");
    QTest::newRow("nothing else is touched")
        << none << QStringLiteral("a-b.c d\\e_f") << QStringLiteral("A-B.C D\\E_F");
    QTest::newRow("letters beyond ASCII")
        << none << QStringLiteral("kľúč") << QStringLiteral("KĽÚČ");
    QTest::newRow("one letter becomes two")
        << none << QStringLiteral("größe") << QStringLiteral("GRÖSSE");
    QTest::newRow("empty") << none << none << QString();
    QTest::newRow("prefix") << plug << QStringLiteral("enabled") << QStringLiteral("PLUG_ENABLED");
    QTest::newRow("prefix and group")
        << plug << QStringLiteral("MES/21") << QStringLiteral("PLUG_MES_21");
    QTest::newRow("prefix in upper case")
        << QStringLiteral("PLUG") << QStringLiteral("enabled") << QStringLiteral("PLUG_ENABLED");
    QTest::newRow("prefix with a slash") << QStringLiteral("oqs/plug") << QStringLiteral("enabled")
                                         << QStringLiteral("OQS_PLUG_ENABLED");
    QTest::newRow("prefix that ends in a slash")
        << QStringLiteral("plug/") << QStringLiteral("enabled") << QStringLiteral("PLUG__ENABLED");
    QTest::newRow("prefix and empty key") << plug << none << QStringLiteral("PLUG_");
}

void tst_EnviroSettings::envKey()
{
    QFETCH(QString, prefix);
    QFETCH(QString, key);
    QFETCH(QString, environmentKey);
    Fixture f;
    EnviroSettings settings(f.path(), QSettings::IniFormat);
    settings.setPrefix(prefix);
    // The key holds its group already.
    settings.beginGroup(QStringLiteral("ignored"));
    QCOMPARE(settings.envKey(key), environmentKey);
    QCOMPARE(f.log.take(), QStringList());
}

QTEST_GUILESS_MAIN(tst_EnviroSettings)
#include "tst_envirosettings.moc"
