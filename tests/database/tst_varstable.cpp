// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The table `vars` on a real server: what is read, which rows result, how the errors are told.
#include "repository/orvdbsettings.h"
#include "support/databasefixture.h"

#include <QtTest>

#include <memory>

namespace {

QString key(const char *text)
{
    return QString::fromUtf8(text);
}

QVariant valueOf(const char *text)
{
    return QVariant(QString::fromUtf8(text));
}

/// One character more than a name can have.
QString tooLong()
{
    return QStringLiteral("b") + QString(190, QLatin1Char('x'));
}

} // namespace

class tst_VarsTable : public ConnectionFixture
{
    Q_OBJECT

private Q_SLOTS:
    void variableGet_text();
    void variableGet_nullValueIsNotTheDefault();
    void variableGet_emptyValueIsNotTheDefault();
    void variableGet_missingIsTheDefault();
    void variableGet_apostropheFails();
    void variableGet_hiddenTable();
    void variableSet_insertsAndReplaces();
    void variableSet_values_data();
    void variableSet_values();
    void variableSet_touchesNoOtherRow();
    void variableSet_apostrophesAndWildcardsAreOnlyText();
    void variableSet_longValue();
    void variableSet_nameTooLong();
    void variableSet_hiddenTable();
    void variableSet_map();
    void variableSet_mapSecondEntryFails();
    void variableSet_mapEmpty();
    void variableSet_mapHiddenTable();
    void variableDel_nameOnceOnly();
    void variableDel_prefix();
    void variableDel_wildcardsOfAPrefix();
    void variableDel_wildcardsOfANameAreText();
    void variableDel_emptyPrefixDeletesAll();
    void variableDel_apostropheFails();
    void variableDel_hiddenTable();
    void variableGetMultiple_names();
    void variableGetMultiple_noNames();
    void variableGetMultiple_prefix();
    void variableGetMultiple_patternOfThePlugin();
    void variableGetMultiple_emptyPrefixIsTheWholeTable();
    void variableGetMultiple_apostropheFails();
    void variableGetMultiple_hiddenTable();
    void dbOpen_openAndClose();
    void dbOpen_noServer();

private:
    void begin() override { settings = std::make_unique<OrvDbSettings>(handle); }
    void end() override { settings.reset(); }
    QStringList rows()
    {
        return database->rows(QStringLiteral("SELECT name, value FROM vars ORDER BY name"));
    }
    void insert(const char *values)
    {
        database->execute(QStringLiteral("INSERT INTO vars (name, value) VALUES ")
                          + QString::fromUtf8(values));
    }
    void syntaxErrorIs(const char *caption);

    std::unique_ptr<OrvDbSettings> settings;
};

/// The log holds the two records of a statement that the server cannot read.
void tst_VarsTable::syntaxErrorIs(const char *caption)
{
    const QStringList events = log->take();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(0), QString::fromUtf8(caption));
    QVERIFY2(
        events.at(1).startsWith(QStringLiteral("critical You have an error in your SQL syntax; ")),
        qPrintable(events.at(1)));
    QVERIFY(events.at(1).endsWith(QStringLiteral(" QMYSQL: Unable to execute query")));
}

void tst_VarsTable::variableGet_text()
{
    insert("('x', '1,2,3'), ('xy', 'another')");
    QCOMPARE(settings->variableGet(key("x"), QVariant()), valueOf("1,2,3"));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGet_nullValueIsNotTheDefault()
{
    insert("('x', NULL)");
    const QVariant value = settings->variableGet(key("x"), valueOf("default"));
    QVERIFY(value.isNull());
    QCOMPARE(value.toString(), QString());
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGet_emptyValueIsNotTheDefault()
{
    insert("('x', '')");
    const QVariant value = settings->variableGet(key("x"), valueOf("default"));
    QVERIFY(!value.isNull());
    QCOMPARE(value, valueOf(""));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGet_missingIsTheDefault()
{
    insert("('xy', 'another')");
    QCOMPARE(settings->variableGet(key("x"), valueOf("default")), valueOf("default"));
    QVERIFY(!settings->variableGet(key("x"), QVariant()).isValid());
    // The name is no pattern.
    QCOMPARE(settings->variableGet(key("x%"), valueOf("default")), valueOf("default"));
    QCOMPARE(settings->variableGet(key("x_"), valueOf("default")), valueOf("default"));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGet_apostropheFails()
{
    insert("('O''Brien', 'value')");
    QCOMPARE(settings->variableGet(key("O'Brien"), valueOf("default")), valueOf("default"));
    syntaxErrorIs("critical OrvDbSettings::variableGet - SQL ERROR:");
}

void tst_VarsTable::variableGet_hiddenTable()
{
    insert("('x', 'value')");
    database->hideTable(key("vars"));
    const QVariant value = settings->variableGet(key("x"), valueOf("default"));
    database->showTable(key("vars"));
    QCOMPARE(value, valueOf("default"));
    QCOMPARE(log->take(),
             lines({"critical OrvDbSettings::variableGet - SQL ERROR:",
                    "critical Table 'attendance.vars' doesn't exist QMYSQL: "
                    "Unable to execute query"}));
}

void tst_VarsTable::variableSet_insertsAndReplaces()
{
    QVERIFY(settings->variableSet(key("x"), valueOf("first")));
    // Seen at once by others: there is no transaction.
    QCOMPARE(rows(), lines({"x|first"}));
    QVERIFY(settings->variableSet(key("x"), valueOf("second")));
    QCOMPARE(rows(), lines({"x|second"}));
    // Nothing changes in the row, and it counts as set.
    QVERIFY(settings->variableSet(key("x"), valueOf("second")));
    QCOMPARE(rows(), lines({"x|second"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableSet_values_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("row");
    QTest::newRow("the cleared flag") << QVariant(0) << QStringLiteral("x|0");
    QTest::newRow("bound as the number it is") << QVariant(true) << QStringLiteral("x|1");
    QTest::newRow("number") << QVariant(-7) << QStringLiteral("x|-7");
    QTest::newRow("empty text") << valueOf("") << QStringLiteral("x|");
    QTest::newRow("invalid") << QVariant() << QStringLiteral("x|NULL");
    QTest::newRow("null text") << QVariant(QString()) << QStringLiteral("x|NULL");
    QTest::newRow("apostrophes") << valueOf("it's '; DROP TABLE vars; --")
                                 << QStringLiteral("x|it's '; DROP TABLE vars; --");
    QTest::newRow("backslashes and quotes") << valueOf("a\\b\"c") << QStringLiteral("x|a\\b\"c");
    QTest::newRow("placeholders") << valueOf(":name ? %1") << QStringLiteral("x|:name ? %1");
    QTest::newRow("letters beyond ASCII") << valueOf("žltý ₤") << QStringLiteral("x|žltý ₤");
}

void tst_VarsTable::variableSet_values()
{
    QFETCH(QVariant, value);
    QFETCH(QString, row);
    insert("('x', 'earlier')");
    QVERIFY(settings->variableSet(key("x"), value));
    QCOMPARE(rows(), QStringList {row});
    const QVariant read = settings->variableGet(key("x"), valueOf("default"));
    QCOMPARE(QStringLiteral("x|") + (read.isNull() ? QStringLiteral("NULL") : read.toString()),
             row);
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableSet_touchesNoOtherRow()
{
    insert("('a', '1'), ('x', '2'), ('x1', '3'), ('y', NULL)");
    QVERIFY(settings->variableSet(key("x"), valueOf("new")));
    QCOMPARE(rows(), lines({"a|1", "x|new", "x1|3", "y|NULL"}));
}

void tst_VarsTable::variableSet_apostrophesAndWildcardsAreOnlyText()
{
    insert("('ab', '1')");
    QVERIFY(settings->variableSet(key("O'Brien"), valueOf("first")));
    QVERIFY(settings->variableSet(key("O'Brien"), valueOf("second")));
    QVERIFY(settings->variableSet(key("a%"), valueOf("wild")));
    QVERIFY(settings->variableSet(key("a_"), valueOf("wilder")));
    QCOMPARE(database->rows(QStringLiteral("SELECT name, value FROM vars ORDER BY value")),
             lines({"ab|1", "O'Brien|second", "a%|wild", "a_|wilder"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableSet_longValue()
{
    // A list of some hundred thousand people.
    QString list = QStringLiteral("10000");
    for (int uid = 10001; uid < 210000; ++uid)
        list += QLatin1Char(',') + QString::number(uid);
    QVERIFY(settings->variableSet(key("x"), list));
    QVERIFY(settings->variableGet(key("x"), QVariant()).toString() == list);
}

void tst_VarsTable::variableSet_nameTooLong()
{
    QVERIFY(!settings->variableSet(tooLong(), 1));
    QCOMPARE(rows(), QStringList());
    QCOMPARE(log->take(),
             lines({"critical variableSet ERROR: \"Data too long for column 'name' at row 1 "
                    "QMYSQL3: Unable to execute statement\""}));
}

void tst_VarsTable::variableSet_hiddenTable()
{
    database->hideTable(key("vars"));
    const bool set = settings->variableSet(key("x"), 1);
    database->showTable(key("vars"));
    QVERIFY(!set);
    QCOMPARE(log->take(),
             lines({"critical variableSet ERROR: \"Table 'attendance.vars' doesn't exist "
                    "QMYSQL3: Unable to prepare statement\""}));
}

void tst_VarsTable::variableSet_map()
{
    insert("('a', 'earlier'), ('b', 'same')");
    QVERIFY(settings->variableSet(QMap<QString, QVariant> {{key("a"), 1},
                                                           {key("b"), valueOf("same")},
                                                           {key("c"), QVariant()},
                                                           {key("O'Brien"), valueOf("it's")}}));
    QCOMPARE(rows(), lines({"a|1", "b|same", "c|NULL", "O'Brien|it's"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableSet_mapSecondEntryFails()
{
    insert("('a', 'earlier')");
    QVERIFY(!settings->variableSet(
        QMap<QString, QVariant> {{key("a"), 1}, {tooLong(), 2}, {key("c"), 3}}));
    QCOMPARE(rows(), lines({"a|1", "c|3"}));
    QCOMPARE(log->take(),
             lines({"critical variableSet ERROR: \"Data too long for column 'name' at row 1 "
                    "QMYSQL3: Unable to execute statement\""}));
}

void tst_VarsTable::variableSet_mapEmpty()
{
    insert("('a', '1')");
    QVERIFY(settings->variableSet(QMap<QString, QVariant>()));
    QCOMPARE(rows(), lines({"a|1"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableSet_mapHiddenTable()
{
    const QString error = key("critical variableSet ERROR: \"Table 'attendance.vars' doesn't exist "
                              "QMYSQL3: Unable to prepare statement\"");
    database->hideTable(key("vars"));
    const bool set = settings->variableSet(QMap<QString, QVariant> {{key("a"), 1}, {key("b"), 2}});
    const bool setNothing = settings->variableSet(QMap<QString, QVariant>());
    database->showTable(key("vars"));
    QVERIFY(!set);
    QVERIFY(!setNothing);
    QCOMPARE(log->take(), (QStringList {error, error}));
    QCOMPARE(rows(), QStringList());
}

void tst_VarsTable::variableDel_nameOnceOnly()
{
    insert("('ab', '1'), ('abc', '2')");
    QVERIFY(settings->variableDel(key("ab"), false));
    QCOMPARE(rows(), lines({"abc|2"}));
    QVERIFY(!settings->variableDel(key("ab"), false));
    QCOMPARE(rows(), lines({"abc|2"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableDel_prefix()
{
    insert("('ab', '1'), ('abc', '2'), ('ab.x', '3'), ('xab', '4'), ('a', '5')");
    QVERIFY(settings->variableDel(key("ab"), true));
    QCOMPARE(rows(), lines({"a|5", "xab|4"}));
    QVERIFY(!settings->variableDel(key("ab"), true));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableDel_wildcardsOfAPrefix()
{
    insert("('a.1.x', '1'), ('a.22.x', '2'), ('a.22.xy', '3'), ('a.22.y', '4'), ('b.1.x', '5')");
    QVERIFY(settings->variableDel(key("a._.x"), true));
    QCOMPARE(rows(), lines({"a.22.x|2", "a.22.xy|3", "a.22.y|4", "b.1.x|5"}));
    QVERIFY(settings->variableDel(key("a.%.x"), true));
    QCOMPARE(rows(), lines({"a.22.y|4", "b.1.x|5"}));
}

void tst_VarsTable::variableDel_wildcardsOfANameAreText()
{
    insert("('a%', '1'), ('ab', '2')");
    QVERIFY(settings->variableDel(key("a%"), false));
    QCOMPARE(rows(), lines({"ab|2"}));
    QVERIFY(!settings->variableDel(key("a_"), false));
    QCOMPARE(rows(), lines({"ab|2"}));
}

void tst_VarsTable::variableDel_emptyPrefixDeletesAll()
{
    insert("('', '0'), ('a', '1'), ('b', NULL)");
    QVERIFY(settings->variableDel(QString(), false));
    QCOMPARE(rows(), lines({"a|1", "b|NULL"}));
    QVERIFY(settings->variableDel(QString(), true));
    QCOMPARE(rows(), QStringList());
}

void tst_VarsTable::variableDel_apostropheFails()
{
    insert("('O''Brien', 'value')");
    QVERIFY(!settings->variableDel(key("O'Brien"), false));
    syntaxErrorIs("critical OrvDbSettings::variableDel - SQL ERROR:");
    QVERIFY(!settings->variableDel(key("O'"), true));
    syntaxErrorIs("critical OrvDbSettings::variableDel - SQL ERROR:");
    QCOMPARE(rows(), lines({"O'Brien|value"}));
}

void tst_VarsTable::variableDel_hiddenTable()
{
    insert("('a', '1')");
    database->hideTable(key("vars"));
    const bool deleted = settings->variableDel(key("a"), false);
    database->showTable(key("vars"));
    QVERIFY(!deleted);
    QCOMPARE(rows(), lines({"a|1"}));
    QCOMPARE(log->take(),
             lines({"critical OrvDbSettings::variableDel - SQL ERROR:",
                    "critical Table 'attendance.vars' doesn't exist QMYSQL: "
                    "Unable to execute query"}));
}

void tst_VarsTable::variableGetMultiple_names()
{
    insert("('a', '1'), ('b', ''), ('c', NULL), ('d', '4'), ('ab', '5')");
    const QMap<QString, QVariant> variables = settings->variableGetMultiple(
        lines({"c", "a", "nowhere", "a", "b"}));
    QCOMPARE(variables.keys(), lines({"a", "b", "c"}));
    QCOMPARE(variables.value(key("a")), valueOf("1"));
    QCOMPARE(variables.value(key("b")), valueOf(""));
    QVERIFY(!variables.value(key("b")).isNull());
    QVERIFY(variables.value(key("c")).isNull());
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGetMultiple_noNames()
{
    insert("('', '0'), ('a', '1')");
    database->hideTable(key("vars"));
    const QMap<QString, QVariant> variables = settings->variableGetMultiple(QStringList());
    database->showTable(key("vars"));
    QVERIFY(variables.isEmpty());
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGetMultiple_prefix()
{
    insert("('ab', '1'), ('abc', NULL), ('ab.x', '3'), ('xab', '4'), ('a', '5'), ('a%', '6')");
    const QMap<QString, QVariant> variables = settings->variableGetMultiple(key("ab"));
    QCOMPARE(variables.keys(), lines({"ab", "ab.x", "abc"}));
    QCOMPARE(variables.value(key("ab.x")), valueOf("3"));
    QVERIFY(variables.value(key("abc")).isNull());
    QVERIFY(settings->variableGetMultiple(key("b")).isEmpty());
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGetMultiple_patternOfThePlugin()
{
    insert("('exportPam.1.active', '1'), ('exportPam.12.active', '0'), "
           "('exportPam.1.selPeople', '5'), ('exportPam.active', '6'), "
           "('exportPam.2.active.since', '7'), ('my.exportPam.3.active', '8')");
    const QMap<QString, QVariant> variables = settings->variableGetMultiple(
        key("exportPam.%.active"));
    QCOMPARE(variables.keys(),
             lines({"exportPam.1.active", "exportPam.12.active", "exportPam.2.active.since"}));
    QCOMPARE(variables.value(key("exportPam.12.active")), valueOf("0"));
}

void tst_VarsTable::variableGetMultiple_emptyPrefixIsTheWholeTable()
{
    insert("('', '0'), ('a', '1'), ('O''Brien', '2'), ('%', NULL), ('žltý', '4')");
    QCOMPARE(settings->variableGetMultiple(QString()).keys(),
             lines({"", "%", "O'Brien", "a", "žltý"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::variableGetMultiple_apostropheFails()
{
    insert("('O''Brien', '1'), ('a', '2')");
    QVERIFY(settings->variableGetMultiple(lines({"a", "O'Brien"})).isEmpty());
    syntaxErrorIs("critical OrvDbSettings::variableGetMultiple - SQL ERROR:");
    QVERIFY(settings->variableGetMultiple(key("O'")).isEmpty());
    syntaxErrorIs("critical OrvDbSettings::variableGetMultiple - SQL ERROR:");
}

void tst_VarsTable::variableGetMultiple_hiddenTable()
{
    insert("('a', '1')");
    database->hideTable(key("vars"));
    const QMap<QString, QVariant> byNames = settings->variableGetMultiple(lines({"a"}));
    const QMap<QString, QVariant> byPrefix = settings->variableGetMultiple(key("a"));
    database->showTable(key("vars"));
    QVERIFY(byNames.isEmpty());
    QVERIFY(byPrefix.isEmpty());
    const QStringList report = lines(
        {"critical OrvDbSettings::variableGetMultiple - SQL ERROR:",
         "critical Table 'attendance.vars' doesn't exist QMYSQL: Unable to execute query"});
    QCOMPARE(log->take(), report + report);
}

void tst_VarsTable::dbOpen_openAndClose()
{
    insert("('a', '1')");
    const QSqlDatabase another = database->handle();
    {
        OrvDbSettings access(another);
        QVERIFY(access.dbOpen());
        QVERIFY(another.isOpen());
        QCOMPARE(access.variableGet(key("a"), QVariant()), valueOf("1"));
        access.dbClose();
        QVERIFY(!another.isOpen());
        QVERIFY(access.dbOpen());
        QCOMPARE(access.variableGet(key("a"), QVariant()), valueOf("1"));
    }
    // The object goes, the connection stays.
    QVERIFY(another.isOpen());
    QVERIFY(handle.isOpen());
    QCOMPARE(log->take(), QStringList());
}

void tst_VarsTable::dbOpen_noServer()
{
    QSqlDatabase nowhere = database->handle();
    nowhere.setConnectOptions(QStringLiteral("UNIX_SOCKET=/nowhere/mysqld.sock"));
    OrvDbSettings access(nowhere);
    QVERIFY(!access.dbOpen());
    const QStringList events = log->take();
    QCOMPARE(events.size(), 1);
    QVERIFY2(events.first().startsWith(QStringLiteral("critical OrvDbSettings Database Error: \"")),
             qPrintable(events.first()));
    QVERIFY(events.first().contains(QStringLiteral("'/nowhere/mysqld.sock'")));
    QVERIFY(events.first().endsWith(QStringLiteral(" QMYSQL: Unable to connect\"")));
}

QTEST_GUILESS_MAIN(tst_VarsTable)
#include "tst_varstable.moc"
