// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings variables: statements, bound values, results and error records.
#include "repository/orvdbsettings.h"
#include "support/eventlog.h"
#include "support/scripteddatabase.h"

#include <QSqlDatabase>
#include <QtTest>

#include <type_traits>

namespace {

const char prepareSet[] = "sql prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                          "ON DUPLICATE KEY UPDATE value=VALUES(value);";

/// Settings over an open scripted connection; the log is empty.
struct Fixture
{
    Fixture() :
        db(script.handle()),
        settings(db)
    {
        db.open();
        log.clear();
    }

    EventLog log;
    ScriptedDatabase script;
    QSqlDatabase db;
    OrvDbSettings settings;
};

QString code()
{
    return QStringLiteral("1064");
}

QString text()
{
    return QStringLiteral("syntax");
}

QVariant valueOf(const QString &text)
{
    return QVariant(text);
}

QMap<QString, QVariant> threeValues()
{
    // Written down in another order than that of the keys.
    return {{QStringLiteral("c"), 3},
            {QStringLiteral("a"), valueOf(QStringLiteral("one"))},
            {QStringLiteral("b"), QVariant()}};
}

QMap<QString, QVariant> values(int count)
{
    QMap<QString, QVariant> result;
    for (int i = 0; i < count; ++i)
        result.insert(QString::number(i), i);
    return result;
}

} // namespace

class tst_OrvDbSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAPlainClass();
    void errorRecords();
    void errorRecords_textAsItIs();
    void variableGet_rowFound_data();
    void variableGet_rowFound();
    void variableGet_noRow();
    void variableGet_sqlError();
    void variableGet_errorBesideARowIsNotLookedAt();
    void variableGet_errorBesideNoRow();
    void variableGet_nameStandsAsGiven();
    void variableGet_asksEveryTime();
    void variableSet_bindsNameAndValue_data();
    void variableSet_bindsNameAndValue();
    void variableSet_prepareFails();
    void variableSet_execFails();
    void variableSet_errorBesideSuccessIsNotLookedAt();
    void variableSet_errorNotValid();
    void variableSet_mapInKeyOrder();
    void variableSet_mapEmpty();
    void variableSet_mapEmptyButPrepareFails();
    void variableSet_mapPrepareFails();
    void variableSet_mapSecondEntryFails();
    void variableSet_mapEveryEntryFails();
    void variableSet_mapErrorBesideSuccessIsReported();
    void variableSet_mapErrorNotValid();
    void variableSet_mapOf65536IsNeverASuccess_data();
    void variableSet_mapOf65536IsNeverASuccess();
    void variableDel_statements_data();
    void variableDel_statements();
    void variableDel_result_data();
    void variableDel_result();
    void variableDel_sqlError();
    void variableDel_errorBesideSuccessIsReported();
    void variableGetMultiple_namesInTheirOrder_data();
    void variableGetMultiple_namesInTheirOrder();
    void variableGetMultiple_noNamesRunNothing();
    void variableGetMultiple_prefix_data();
    void variableGetMultiple_prefix();
    void variableGetMultiple_rows();
    void variableGetMultiple_sqlError();
    void variableGetMultiple_errorEndsTheRows();
    void dbOpen_success();
    void dbOpen_failure();
    void dbOpen_errorBesideSuccessIsReported();
    void dbClose_closes();
    void setDb_leavesThePreviousConnectionOpen();
    void destruction_leavesTheConnectionOpen();
    void defaultConstructed_hasNoConnection();
    void closedConnection_reportsNothingOfItsOwn();
};

void tst_OrvDbSettings::isAPlainClass()
{
    QVERIFY(!std::is_polymorphic<OrvDbSettings>::value);
    QCOMPARE(sizeof(OrvDbSettings), sizeof(QSqlDatabase));
}

void tst_OrvDbSettings::errorRecords()
{
    Fixture f;
    f.script.on(QStringLiteral("vars"))
        .withError(code(), QStringLiteral("no \"such\" table, väzba"));
    const QStringList names {QStringLiteral("x")};

    // Two records, the error unquoted.
    f.settings.variableGet(QStringLiteral("x"), QVariant());
    QCOMPARE(f.log.takeMessages(),
             lines({"critical OrvDbSettings::variableGet - SQL ERROR:",
                    "critical no \"such\" table, väzba (scripted)"}));
    f.settings.variableDel(QStringLiteral("x"), false);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical OrvDbSettings::variableDel - SQL ERROR:",
                    "critical no \"such\" table, väzba (scripted)"}));
    f.settings.variableDel(QStringLiteral("x"), true);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical OrvDbSettings::variableDel - SQL ERROR:",
                    "critical no \"such\" table, väzba (scripted)"}));
    f.settings.variableGetMultiple(names);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical OrvDbSettings::variableGetMultiple - SQL ERROR:",
                    "critical no \"such\" table, väzba (scripted)"}));
    f.settings.variableGetMultiple(QStringLiteral("x"));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical OrvDbSettings::variableGetMultiple - SQL ERROR:",
                    "critical no \"such\" table, väzba (scripted)"}));

    // One record, the error in quotes.
    f.settings.variableSet(QStringLiteral("x"), 1);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical variableSet ERROR: \"no \\\"such\\\" table, väzba (scripted)\""}));
    f.settings.variableSet(threeValues());
    QCOMPARE(f.log.takeMessages(),
             lines({"critical variableSet ERROR: \"no \\\"such\\\" table, väzba (scripted)\""}));
    f.settings.dbClose();
    f.script.on(QStringLiteral("open")).withError(code(), QStringLiteral("no \"such\" server"));
    f.settings.dbOpen();
    QCOMPARE(f.log.takeMessages(),
             lines({"critical OrvDbSettings Database Error: "
                    "\"no \\\"such\\\" server (scripted)\""}));
}

void tst_OrvDbSettings::errorRecords_textAsItIs()
{
    Fixture f;
    f.script.on(QStringLiteral("vars")).withError(code(), QStringLiteral("near 'a%1%s%n'"));
    f.settings.variableGet(QStringLiteral("x"), QVariant());
    f.settings.variableSet(QStringLiteral("x"), 1);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical OrvDbSettings::variableGet - SQL ERROR:",
                    "critical near 'a%1%s%n' (scripted)",
                    "critical variableSet ERROR: \"near 'a%1%s%n' (scripted)\""}));
}

void tst_OrvDbSettings::variableGet_rowFound_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text") << QVariant(QStringLiteral("1,2,3"));
    QTest::newRow("number") << QVariant(7);
    QTest::newRow("bytes") << QVariant(QByteArray("abc"));
    QTest::newRow("empty") << QVariant(QStringLiteral(""));
    QTest::newRow("null text") << QVariant(QVariant::String);
    QTest::newRow("NULL") << QVariant();
}

void tst_OrvDbSettings::variableGet_rowFound()
{
    QFETCH(QVariant, value);
    Fixture f;
    f.script.on(QStringLiteral("SELECT")).withRows(lines({"value"}), {{value}});
    const QVariant read = f.settings.variableGet(QStringLiteral("x"),
                                                 valueOf(QStringLiteral("default")));
    QCOMPARE(f.log.take(), lines({"sql exec SELECT value FROM vars WHERE name='x' LIMIT 1"}));
    // As the driver delivers it, unconverted; the default is not consulted.
    QCOMPARE(read.userType(), value.userType());
    QCOMPARE(read.isNull(), value.isNull());
    QCOMPARE(read, value);
}

void tst_OrvDbSettings::variableGet_noRow()
{
    Fixture f;
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), valueOf(QStringLiteral("default"))),
             valueOf(QStringLiteral("default")));
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), 60), QVariant(60));
    QVERIFY(!f.settings.variableGet(QStringLiteral("x"), QVariant()).isValid());
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_OrvDbSettings::variableGet_sqlError()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT")).withError(code(), text());
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), 60), QVariant(60));
    QCOMPARE(
        f.log.take(),
        lines({"sql exec SELECT value FROM vars WHERE name='x' LIMIT 1",
               "critical OrvDbSettings::variableGet - SQL ERROR:", "critical syntax (scripted)"}));
}

void tst_OrvDbSettings::variableGet_errorBesideARowIsNotLookedAt()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT"))
        .withRows(lines({"value"}), {{7}})
        .withErrorBeside(code(), text());
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), 60), QVariant(7));
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_OrvDbSettings::variableGet_errorBesideNoRow()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT"))
        .withRows(lines({"value"}), {})
        .withErrorBeside(code(), text());
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), 60), QVariant(60));
    QCOMPARE(
        f.log.takeMessages(),
        lines({"critical OrvDbSettings::variableGet - SQL ERROR:", "critical syntax (scripted)"}));
}

void tst_OrvDbSettings::variableGet_nameStandsAsGiven()
{
    Fixture f;
    f.settings.variableGet(QStringLiteral("O'Brien"), QVariant());
    f.settings.variableGet(QStringLiteral("50%1 %2 %"), QVariant());
    f.settings.variableGet(QStringLiteral(" kľúč_\\"), QVariant());
    f.settings.variableGet(QString(), QVariant());
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT value FROM vars WHERE name='O'Brien' LIMIT 1",
                    "sql exec SELECT value FROM vars WHERE name='50%1 %2 %' LIMIT 1",
                    "sql exec SELECT value FROM vars WHERE name=' kľúč_\\' LIMIT 1",
                    "sql exec SELECT value FROM vars WHERE name='' LIMIT 1"}));
}

void tst_OrvDbSettings::variableGet_asksEveryTime()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT")).withRows(lines({"value"}), {{2}});
    f.script.on(QStringLiteral("SELECT"), 1).withRows(lines({"value"}), {{1}});
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), QVariant()), QVariant(1));
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), QVariant()), QVariant(2));
    f.log.clear();
}

void tst_OrvDbSettings::variableSet_bindsNameAndValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("run");
    const QString name = QStringLiteral("x");
    QTest::newRow("number") << name << QVariant(0) << QStringLiteral("sql run :name=x, :value=0");
    QTest::newRow("text") << name << valueOf(QStringLiteral("1,2,3"))
                          << QStringLiteral("sql run :name=x, :value=1,2,3");
    QTest::newRow("empty text") << name << valueOf(QStringLiteral(""))
                                << QStringLiteral("sql run :name=x, :value=");
    QTest::newRow("invalid") << name << QVariant()
                             << QStringLiteral("sql run :name=x, :value=NULL");
    QTest::newRow("apostrophes") << QStringLiteral("O'Brien") << valueOf(QStringLiteral("it's"))
                                 << QStringLiteral("sql run :name=O'Brien, :value=it's");
    QTest::newRow("wildcards and markers")
        << QStringLiteral("a%_%1") << valueOf(QStringLiteral(":name %1"))
        << QStringLiteral("sql run :name=a%_%1, :value=:name %1");
}

void tst_OrvDbSettings::variableSet_bindsNameAndValue()
{
    QFETCH(QString, name);
    QFETCH(QVariant, value);
    QFETCH(QString, run);
    Fixture f;
    QVERIFY(f.settings.variableSet(name, value));
    QCOMPARE(f.log.take(), lines({prepareSet}) + QStringList {run});
}

void tst_OrvDbSettings::variableSet_prepareFails()
{
    Fixture f;
    f.script.on(QStringLiteral("prepare")).withError(code(), text());
    QVERIFY(!f.settings.variableSet(QStringLiteral("x"), 1));
    QCOMPARE(f.log.take(),
             lines({prepareSet, "critical variableSet ERROR: \"syntax (scripted)\""}));
}

void tst_OrvDbSettings::variableSet_execFails()
{
    Fixture f;
    f.script.on(QStringLiteral("run")).withError(code(), text());
    QVERIFY(!f.settings.variableSet(QStringLiteral("x"), 1));
    QCOMPARE(f.log.take(),
             lines({prepareSet, "sql run :name=x, :value=1",
                    "critical variableSet ERROR: \"syntax (scripted)\""}));
}

void tst_OrvDbSettings::variableSet_errorBesideSuccessIsNotLookedAt()
{
    Fixture f;
    f.script.on(QStringLiteral("run")).withErrorBeside(code(), text());
    QVERIFY(f.settings.variableSet(QStringLiteral("x"), 1));
    QCOMPARE(f.log.take(), lines({prepareSet, "sql run :name=x, :value=1"}));
}

void tst_OrvDbSettings::variableSet_errorNotValid()
{
    Fixture f;
    f.settings.dbClose();
    QVERIFY(!f.settings.variableSet(QStringLiteral("x"), 1));
    QCOMPARE(f.log.take().filter(QStringLiteral("critical")), QStringList());
}

void tst_OrvDbSettings::variableSet_mapInKeyOrder()
{
    Fixture f;
    QVERIFY(f.settings.variableSet(threeValues()));
    QCOMPARE(f.log.take(),
             lines({prepareSet, "sql run :name=a, :value=one", "sql run :name=b, :value=NULL",
                    "sql run :name=c, :value=3"}));
}

void tst_OrvDbSettings::variableSet_mapEmpty()
{
    Fixture f;
    QVERIFY(f.settings.variableSet(QMap<QString, QVariant>()));
    QCOMPARE(f.log.take(), lines({prepareSet}));
}

void tst_OrvDbSettings::variableSet_mapEmptyButPrepareFails()
{
    Fixture f;
    f.script.on(QStringLiteral("prepare")).withError(code(), text());
    QVERIFY(!f.settings.variableSet(QMap<QString, QVariant>()));
    QCOMPARE(f.log.take(),
             lines({prepareSet, "critical variableSet ERROR: \"syntax (scripted)\""}));
}

void tst_OrvDbSettings::variableSet_mapPrepareFails()
{
    Fixture f;
    f.script.on(QStringLiteral("prepare")).withError(code(), text());
    QVERIFY(!f.settings.variableSet(threeValues()));
    QCOMPARE(f.log.take(),
             lines({prepareSet, "critical variableSet ERROR: \"syntax (scripted)\""}));
}

void tst_OrvDbSettings::variableSet_mapSecondEntryFails()
{
    Fixture f;
    f.script.on(QStringLiteral("run :name=b")).withError(code(), text());
    QVERIFY(!f.settings.variableSet(threeValues()));
    // No transaction: what was written before and after stays.
    QCOMPARE(
        f.log.take(),
        lines({prepareSet, "sql run :name=a, :value=one", "sql run :name=b, :value=NULL",
               "critical variableSet ERROR: \"syntax (scripted)\"", "sql run :name=c, :value=3"}));
}

void tst_OrvDbSettings::variableSet_mapEveryEntryFails()
{
    Fixture f;
    f.script.on(QStringLiteral("run")).withError(code(), text());
    QVERIFY(!f.settings.variableSet(threeValues()));
    QCOMPARE(
        f.log.take(),
        lines({prepareSet, "sql run :name=a, :value=one",
               "critical variableSet ERROR: \"syntax (scripted)\"", "sql run :name=b, :value=NULL",
               "critical variableSet ERROR: \"syntax (scripted)\"", "sql run :name=c, :value=3",
               "critical variableSet ERROR: \"syntax (scripted)\""}));
}

void tst_OrvDbSettings::variableSet_mapErrorBesideSuccessIsReported()
{
    Fixture f;
    f.script.on(QStringLiteral("run :name=b")).withErrorBeside(code(), text());
    QVERIFY(f.settings.variableSet(threeValues()));
    QCOMPARE(
        f.log.take(),
        lines({prepareSet, "sql run :name=a, :value=one", "sql run :name=b, :value=NULL",
               "critical variableSet ERROR: \"syntax (scripted)\"", "sql run :name=c, :value=3"}));
}

void tst_OrvDbSettings::variableSet_mapErrorNotValid()
{
    Fixture f;
    f.settings.dbClose();
    QVERIFY(!f.settings.variableSet(threeValues()));
    QVERIFY(!f.settings.variableSet(QMap<QString, QVariant>()));
    QCOMPARE(f.log.take().filter(QStringLiteral("critical")), QStringList());
}

void tst_OrvDbSettings::variableSet_mapOf65536IsNeverASuccess_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("success");
    QTest::newRow("65535") << 65535 << true;
    QTest::newRow("65536") << 65536 << false;
    QTest::newRow("65537") << 65537 << false;
}

void tst_OrvDbSettings::variableSet_mapOf65536IsNeverASuccess()
{
    QFETCH(int, count);
    QFETCH(bool, success);
    Fixture f;
    QCOMPARE(f.settings.variableSet(values(count)), success);
    // All are written and none is complained about.
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 1 + count);
    QCOMPARE(events.last(), QStringLiteral("sql run :name=9999, :value=9999"));
}

void tst_OrvDbSettings::variableDel_statements_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("like");
    QTest::addColumn<QString>("statement");
    QTest::newRow("name") << QStringLiteral("ab") << false
                          << QStringLiteral("sql exec DELETE FROM vars WHERE name='ab'");
    QTest::newRow("prefix") << QStringLiteral("ab") << true
                            << QStringLiteral("sql exec DELETE FROM vars WHERE name LIKE 'ab%'");
    QTest::newRow("wildcards in a name")
        << QStringLiteral("a%_b") << false
        << QStringLiteral("sql exec DELETE FROM vars WHERE name='a%_b'");
    QTest::newRow("wildcards in a prefix")
        << QStringLiteral("a%_b") << true
        << QStringLiteral("sql exec DELETE FROM vars WHERE name LIKE 'a%_b%'");
    QTest::newRow("apostrophe") << QStringLiteral("O'B") << false
                                << QStringLiteral("sql exec DELETE FROM vars WHERE name='O'B'");
    QTest::newRow("marker") << QStringLiteral("%1") << true
                            << QStringLiteral("sql exec DELETE FROM vars WHERE name LIKE '%1%'");
    QTest::newRow("empty name") << QString() << false
                                << QStringLiteral("sql exec DELETE FROM vars WHERE name=''");
    QTest::newRow("empty prefix") << QString() << true
                                  << QStringLiteral(
                                         "sql exec DELETE FROM vars WHERE name LIKE '%'");
}

void tst_OrvDbSettings::variableDel_statements()
{
    QFETCH(QString, name);
    QFETCH(bool, like);
    QFETCH(QString, statement);
    Fixture f;
    f.settings.variableDel(name, like);
    QCOMPARE(f.log.take(), QStringList {statement});
}

void tst_OrvDbSettings::variableDel_result_data()
{
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("deleted");
    QTest::newRow("unknown") << -1 << false;
    QTest::newRow("none") << 0 << false;
    QTest::newRow("one") << 1 << true;
    QTest::newRow("many") << 300 << true;
}

void tst_OrvDbSettings::variableDel_result()
{
    QFETCH(int, affected);
    QFETCH(bool, deleted);
    Fixture f;
    f.script.on(QStringLiteral("DELETE")).withAffected(affected);
    QCOMPARE(f.settings.variableDel(QStringLiteral("ab"), false), deleted);
    QCOMPARE(f.settings.variableDel(QStringLiteral("ab"), true), deleted);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_OrvDbSettings::variableDel_sqlError()
{
    Fixture f;
    f.script.on(QStringLiteral("DELETE")).withAffected(1).withError(code(), text());
    QVERIFY(!f.settings.variableDel(QStringLiteral("ab"), false));
    QCOMPARE(
        f.log.take(),
        lines({"sql exec DELETE FROM vars WHERE name='ab'",
               "critical OrvDbSettings::variableDel - SQL ERROR:", "critical syntax (scripted)"}));
}

void tst_OrvDbSettings::variableDel_errorBesideSuccessIsReported()
{
    Fixture f;
    f.script.on(QStringLiteral("DELETE")).withAffected(1).withErrorBeside(code(), text());
    QVERIFY(f.settings.variableDel(QStringLiteral("ab"), false));
    QCOMPARE(
        f.log.takeMessages(),
        lines({"critical OrvDbSettings::variableDel - SQL ERROR:", "critical syntax (scripted)"}));
}

void tst_OrvDbSettings::variableGetMultiple_namesInTheirOrder_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("statement");
    QTest::newRow("one") << lines(
        {"a"}) << QStringLiteral("sql exec SELECT name, value FROM vars WHERE name IN('a')");
    QTest::newRow("three, not sorted, one twice")
        << lines({"c", "a", "b", "a"})
        << QStringLiteral("sql exec SELECT name, value FROM vars WHERE name IN('c','a','b','a')");
    QTest::newRow("as they are") << lines({"O'B", "%1", "a,b", ""})
                                 << QStringLiteral(
                                        "sql exec SELECT name, value FROM vars WHERE name "
                                        "IN('O'B','%1','a,b','')");
}

void tst_OrvDbSettings::variableGetMultiple_namesInTheirOrder()
{
    QFETCH(QStringList, names);
    QFETCH(QString, statement);
    Fixture f;
    QVERIFY(f.settings.variableGetMultiple(names).isEmpty());
    QCOMPARE(f.log.take(), QStringList {statement});
}

void tst_OrvDbSettings::variableGetMultiple_noNamesRunNothing()
{
    Fixture f;
    f.settings.dbClose();
    f.log.clear();
    // Not even Qt's own complaint of the closed connection.
    QVERIFY(f.settings.variableGetMultiple(QStringList()).isEmpty());
    QCOMPARE(f.log.take(), QStringList());
}

void tst_OrvDbSettings::variableGetMultiple_prefix_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("statement");
    QTest::newRow("prefix") << QStringLiteral("ab")
                            << QStringLiteral("sql exec SELECT name, value FROM vars "
                                              "WHERE name LIKE 'ab%'");
    QTest::newRow("pattern") << QStringLiteral("exportPam.%.active")
                             << QStringLiteral("sql exec SELECT name, value FROM vars "
                                               "WHERE name LIKE 'exportPam.%.active%'");
    QTest::newRow("empty") << QStringLiteral("")
                           << QStringLiteral("sql exec SELECT name, value FROM vars "
                                             "WHERE name LIKE '%'");
    QTest::newRow("apostrophe") << QStringLiteral("O'B")
                                << QStringLiteral("sql exec SELECT name, value FROM vars "
                                                  "WHERE name LIKE 'O'B%'");
    QTest::newRow("marker") << QStringLiteral("%2%1")
                            << QStringLiteral("sql exec SELECT name, value FROM vars "
                                              "WHERE name LIKE '%2%1%'");
}

void tst_OrvDbSettings::variableGetMultiple_prefix()
{
    QFETCH(QString, prefix);
    QFETCH(QString, statement);
    Fixture f;
    QVERIFY(f.settings.variableGetMultiple(prefix).isEmpty());
    QCOMPARE(f.log.take(), QStringList {statement});
}

void tst_OrvDbSettings::variableGetMultiple_rows()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT"))
        .withRows(lines({"name", "value"}),
                  {{QStringLiteral("b"), QStringLiteral("first")},
                   {QStringLiteral("a"), 5},
                   {QStringLiteral("c"), QVariant()},
                   {7, QByteArray("bytes")},
                   {QStringLiteral("b"), QStringLiteral("second")}});
    const QMap<QString, QVariant> expected {{QStringLiteral("7"), QByteArray("bytes")},
                                            {QStringLiteral("a"), 5},
                                            {QStringLiteral("b"), QStringLiteral("second")},
                                            {QStringLiteral("c"), QVariant()}};
    const QMap<QString, QVariant> byNames = f.settings.variableGetMultiple(lines({"a", "b"}));
    QCOMPARE(byNames, expected);
    QCOMPARE(byNames.value(QStringLiteral("a")).type(), QVariant::Int);
    QVERIFY(byNames.value(QStringLiteral("c")).isNull());
    QCOMPARE(f.settings.variableGetMultiple(QStringLiteral("a")), expected);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_OrvDbSettings::variableGetMultiple_sqlError()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT"))
        .withRows(lines({"name", "value"}), {{QStringLiteral("a"), 5}})
        .withError(code(), text());
    const QStringList report = lines(
        {"critical OrvDbSettings::variableGetMultiple - SQL ERROR:", "critical syntax (scripted)"});
    QVERIFY(f.settings.variableGetMultiple(lines({"a"})).isEmpty());
    QCOMPARE(f.log.takeMessages(), report);
    QVERIFY(f.settings.variableGetMultiple(QStringLiteral("a")).isEmpty());
    QCOMPARE(f.log.takeMessages(), report);
}

void tst_OrvDbSettings::variableGetMultiple_errorEndsTheRows()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT"))
        .withRows(lines({"name", "value"}), {{QStringLiteral("a"), 5}, {QStringLiteral("b"), 6}})
        .withErrorBeside(code(), text());
    const QMap<QString, QVariant> expected {{QStringLiteral("a"), 5}, {QStringLiteral("b"), 6}};
    const QStringList report = lines(
        {"critical OrvDbSettings::variableGetMultiple - SQL ERROR:", "critical syntax (scripted)"});
    QCOMPARE(f.settings.variableGetMultiple(lines({"a", "b", "c"})), expected);
    QCOMPARE(f.log.takeMessages(), report);
    QCOMPARE(f.settings.variableGetMultiple(QString()), expected);
    QCOMPARE(f.log.takeMessages(), report);
}

void tst_OrvDbSettings::dbOpen_success()
{
    Fixture f;
    f.db.close();
    f.log.clear();
    QVERIFY(f.settings.dbOpen());
    QCOMPARE(f.log.take(), lines({"sql open"}));
    QVERIFY(f.db.isOpen());
}

void tst_OrvDbSettings::dbOpen_failure()
{
    Fixture f;
    f.db.close();
    f.log.clear();
    f.script.on(QStringLiteral("open"))
        .withError(QStringLiteral("2002"), QStringLiteral("no server"));
    QVERIFY(!f.settings.dbOpen());
    QCOMPARE(
        f.log.take(),
        lines({"sql open", "critical OrvDbSettings Database Error: \"no server (scripted)\""}));
}

void tst_OrvDbSettings::dbOpen_errorBesideSuccessIsReported()
{
    Fixture f;
    f.db.close();
    f.log.clear();
    f.script.on(QStringLiteral("open"))
        .withErrorBeside(QStringLiteral("1"), QStringLiteral("no time zones"));
    QVERIFY(f.settings.dbOpen());
    QCOMPARE(
        f.log.take(),
        lines({"sql open", "critical OrvDbSettings Database Error: \"no time zones (scripted)\""}));
    QVERIFY(f.db.isOpen());
}

void tst_OrvDbSettings::dbClose_closes()
{
    Fixture f;
    f.settings.dbClose();
    QCOMPARE(f.log.take(), lines({"sql close"}));
    QVERIFY(!f.db.isOpen());
}

void tst_OrvDbSettings::setDb_leavesThePreviousConnectionOpen()
{
    Fixture f;
    QSqlDatabase another = f.script.handle(QStringLiteral("another"));
    f.settings.setDb(another);
    QCOMPARE(f.log.take(), QStringList());
    QVERIFY(f.db.isOpen());
    QVERIFY(!another.isOpen());
    QVERIFY(f.settings.dbOpen());
    QVERIFY(another.isOpen());
    f.settings.dbClose();
    QVERIFY(!another.isOpen());
    QVERIFY(f.db.isOpen());
    f.log.clear();
}

void tst_OrvDbSettings::destruction_leavesTheConnectionOpen()
{
    Fixture f;
    {
        const OrvDbSettings settings(f.db);
    }
    QCOMPARE(f.log.take(), QStringList());
    QVERIFY(f.db.isOpen());
}

void tst_OrvDbSettings::defaultConstructed_hasNoConnection()
{
    Fixture f;
    OrvDbSettings settings;
    QCOMPARE(settings.variableGet(QStringLiteral("x"), 60), QVariant(60));
    QVERIFY(!settings.variableSet(QStringLiteral("x"), 1));
    QCOMPARE(f.log.take().filter(QStringLiteral("sql ")), QStringList());
    settings.setDb(f.db);
    QVERIFY(settings.variableSet(QStringLiteral("x"), 1));
    QCOMPARE(f.log.take(), lines({prepareSet, "sql run :name=x, :value=1"}));
}

void tst_OrvDbSettings::closedConnection_reportsNothingOfItsOwn()
{
    Fixture f;
    f.settings.dbClose();
    f.log.clear();
    QCOMPARE(f.settings.variableGet(QStringLiteral("x"), 60), QVariant(60));
    QVERIFY(!f.settings.variableDel(QStringLiteral("x"), true));
    QVERIFY(f.settings.variableGetMultiple(lines({"x"})).isEmpty());
    QVERIFY(f.settings.variableGetMultiple(QStringLiteral("x")).isEmpty());
    // Qt's own warnings apart: a query on a closed connection has no valid error.
    QCOMPARE(f.log.takeMatching({QStringLiteral("critical"), QStringLiteral("sql ")}),
             QStringList());
}

QTEST_GUILESS_MAIN(tst_OrvDbSettings)
#include "tst_orvdbsettings.moc"
