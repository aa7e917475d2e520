// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What texts do to the statements of the plugin. That a server does what is foretold here is held
// by tst_HostileStatements.
#include "host/base/silentmessages.h"
#include "host/exportcheck/statementtrial.h"
#include "support/eventlog.h"
#include "support/hostiletexts.h"
#include "support/recordbuilder.h"
#include "support/testrows.h"

#include <QSqlDatabase>
#include <QtTest>

#include <array>
#include <thread>

namespace {

const int shownLength = 24; // no more than that, for the rest may depend on the time zone

/// COLUMN EFFECT BECOMES, and under which setting; of several columns with "; " between them.
QString describe(const QVector<TextTrial> &trials)
{
    const QStringList effects {str("none"), str("other"), str("fails"), str("runs")};
    QStringList parts;
    for (const TextTrial &trial : trials) {
        QString part = QString::number(trial.column) + QLatin1Char(' ')
            + effects.at(static_cast<int>(trial.effect));
        if (!trial.becomes.isEmpty())
            part += QLatin1String(" <") + trial.becomes.left(shownLength) + QLatin1Char('>');
        if (trial.onlyWithBackslashEscapes)
            part += QStringLiteral(" escaping");
        if (trial.onlyWithoutBackslashEscapes)
            part += QStringLiteral(" plain");
        parts.append(part);
    }
    return parts.join(QStringLiteral("; "));
}

struct Case
{
    const char *name;
    const char *surname;
    const char *effects;
};

/// Of Ján 'surname' PhD., telephone 0905.
const QVector<Case> cases {
    {"a name", "Nováková-Malá", ""},
    {"no name", "", ""},
    {"double quotes, comments, semicolons", "a\"b`c -- # /* ; ", ""},
    {"an apostrophe", "O'Neil", "5 fails"},
    {"an apostrophe at the end", "Novák'", "5 fails"},
    {"two apostrophes", "Rock 'n' Roll", "5 fails"},
    {"two apostrophes around a name", "Ján 'Jano' Novák", "5 fails"},
    {"doubled apostrophes", "O''Neil", "5 other <O'Neil>"},
    {"literals that become one", "a' 'b", "5 other <ab>"},
    {"a comment between them", "a'/* x */'b", "5 other <ab>"},
    {"a comment that runs between them", "a' /*!50000 'b' */ 'c", "5 other <abc>"},
    {"an operator", "x' or '1", "5 runs <or '1', 'PhD.', '0905', >"},
    {"an operator that looks like a name", "D'Or'Neil", "5 runs <Or'Neil', 'PhD.', '0905'>"},
    {"another column", "x', phone='1", "5 runs <phone='1', title2='PhD.'>"},
    {"another statement", "x'; DELETE FROM people; -- ", "5 runs <DELETE FROM people;>"},
    {"another statement with a full first one",
     "x','','',0,0,0,0,0,'',0,0,0,0); DROP TABLE people; -- ", "5 runs <0,0,0,0,0,'',0,0,0,0); D>"},
    {"another statement behind one that fails", "x'); DROP TABLE people; -- ", "5 fails"},
    {"the rest is a comment", "x' -- ", "5 runs <UPDATE people SET pamId=>"},
    {"the rest is an open comment", "x' /* ", "5 fails"},
    {"a backslash", "AC\\DC", "5 other <ACDC> escaping"},
    {"a backslash at the end", "AC\\", "5 fails escaping"},
    {"two backslashes", "AC\\\\DC", "5 other <AC\\DC> escaping"},
    {"a backslash that stays", "50\\% a\\_b", ""},
    {"an escaped apostrophe", "O\\'Neil", "5 fails plain"},
    {"an escape that hides an attack", "a\\', phone='1", "5 runs <phone='1', title2='PhD.'> plain"},
    {"per cent", "50 %", ""},
    {"per cent before a letter", "%d", ""},
    {"a marker of an earlier value", "%1", "5 fails"},
    {"the least marker", "%0", "5 fails"},
    {"a marker of a later text", "%7", "5 other <0905>"},
    {"the same in the form for the language", "%L7", "5 other <0905>"},
    {"in other digits", "%٧", "5 other <0905>"},
    {"in raised digits", "%⁷", "5 other <0905>"},
    {"a marker of a number", "%15", "5 other <0>"},
    {"a marker that only the longest statement fills", "%17", "5 other <NULL>"},
    {"a marker that nothing fills", "%18", ""},
    {"two digits are taken at most", "%180", ""},
};

} // namespace

class tst_StatementTrial : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void surname_data() { addRows(cases); }
    void surname();
    void everyColumnOfText();
    void eachColumnHasItsOwnEffect();
    void onlyTogether();
    void stateText();
    void mode_asksOneSettingOnly();
    void keyWithoutNumber();
    void isSuspicious_knowsAllDigits();
    void quickLook_neverDiffers();
    void memoryOfNames_neverDiffers();
    void log_staysEmpty();
    void connections_areTakenAway();
    void threads_haveTheirOwn();
};

void tst_StatementTrial::surname()
{
    const Case &row = currentRow(cases);
    StatementTrial trial;
    const EmployeeRecord employee = RecordBuilder()
                                        .name(str("Ján"), str(row.surname))
                                        .titles(QString(), str("PhD."))
                                        .phone(str("0905"));
    QCOMPARE(describe(trial.effectsOf(employee)), str(row.effects));
}

void tst_StatementTrial::everyColumnOfText()
{
    StatementTrial trial;
    const QString quoted = str("O'Neil");
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().titles(quoted, str("x")))), str("3 fails"));
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().name(quoted, str("x")))), str("4 fails"));
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().name(str("x"), quoted))), str("5 fails"));
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().titles(str("x"), quoted))), str("6 fails"));
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().phone(quoted))), str("7 fails"));
    // Stands in no statement.
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().branch(7, quoted))), QString());
}

void tst_StatementTrial::eachColumnHasItsOwnEffect()
{
    StatementTrial trial;
    const RecordBuilder employee = RecordBuilder().name(str("AC\\DC"), str("O'Neil"));
    QCOMPARE(describe(trial.effectsOf(employee)), str("4 other <ACDC> escaping; 5 fails"));
    const RecordBuilder filled = RecordBuilder(employee).titles(str("%5 x"), QString());
    QCOMPARE(describe(trial.effectsOf(filled)),
             str("3 other <ONeil x>; 4 other <ACDC> escaping; 5 fails"));
}

void tst_StatementTrial::onlyTogether()
{
    StatementTrial trial;
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().titles(str("x'/*"), QString()))),
             str("3 fails"));
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().phone(str("*/'y")))), str("7 fails"));
    const RecordBuilder both = RecordBuilder().titles(str("x'/*"), QString()).phone(str("*/'y"));
    QVERIFY(describe(trial.effectsOf(both)).contains(str("; 7 runs <begin=")));
    QVERIFY(describe(trial.effectsOf(both)).startsWith(str("3 runs <begin=")));
}

void tst_StatementTrial::stateText()
{
    StatementTrial trial({{21, str("mater'ská")}, {22, str("%13 h")}, {71, str("voľno")}});
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().es(0))), QString());
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().es(71))), QString());
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().es(21))), str("0 fails"));
    // The type stands behind the text.
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().es(22))), str("0 other <1 h>"));
    QCOMPARE(describe(trial.effectsOf(RecordBuilder().es(22).name(QString(), str("O'Neil")))),
             str("5 fails; 0 other <1 h>"));
}

void tst_StatementTrial::mode_asksOneSettingOnly()
{
    StatementTrial trial;
    const RecordBuilder employee = RecordBuilder().name(QString(), str("AC\\DC"));
    QCOMPARE(describe(trial.effectsOf(employee, EscapeMode::BackslashEscapes)),
             str("5 other <ACDC>"));
    QCOMPARE(describe(trial.effectsOf(employee, EscapeMode::NoBackslashEscapes)), QString());
}

/// The plugin says more of such a person; nobody hears it.
void tst_StatementTrial::keyWithoutNumber()
{
    EventLog log;
    StatementTrial trial;
    const RecordBuilder employee = RecordBuilder().pid(4294967295u, 9).name(str("x"), str("%9"));
    QCOMPARE(describe(trial.effectsOf(employee)), str("5 other <NULL>"));
    QCOMPARE(log.take(), QStringList());
}

void tst_StatementTrial::isSuspicious_knowsAllDigits()
{
    const SilentMessages silence; // of markers that are none
    for (uint code = 0; code <= 0xffff; ++code) {
        for (const char *start : {"%", "%L"}) {
            const QString text = str(start) + QChar(code);
            if (!isSuspicious(text))
                QCOMPARE(text.arg(QStringLiteral("filled")), text);
        }
    }
}

void tst_StatementTrial::quickLook_neverDiffers()
{
    StatementTrial trial({{21, str("%13 h")}, {71, str("voľno 50 %")}});
    Draw draw(20261122);
    int harmless = 0;
    for (int i = 0; i < 3000; ++i) {
        EmployeeRecord employee = hostileEmployee(&draw);
        employee.evidencniStav = draw.percent(20) ? 71 : (draw.percent(5) ? 21 : 0);
        const QString quick = describe(trial.effectsOf(employee));
        QCOMPARE(quick, describe(trial.fullTrial(employee, EscapeMode::Either)));
        harmless += quick.isEmpty() ? 1 : 0;
    }
    QVERIFY(harmless > 300 && harmless < 2700);
}

/// A name is tried once; whatever stands beside it the next time, the trial would come to the same.
void tst_StatementTrial::memoryOfNames_neverDiffers()
{
    const QStringList names {str("O'Neill"),  str("D'Or"),      str("D'Orsay"),   str("O'Not"),
                             str("L'and"),    str("O'Šťastná"), str("x'like y"),  str("a'between"),
                             str("N'Golo K"), str("O'Brien 2"), str("d'Arc-Lys"), str("O'member")};
    const QStringList others {
        QString(), str("PhD."), str("0905 123 456"), str("or 1"),  str("= name"),   str("), ("),
        str("x"),  str("-- "),  str("union all 1"),  str("\"q\""), str(", phone="), str("/*")};
    StatementTrial trial;
    Draw draw(20261123);
    int found = 0;
    for (int i = 0; i < 1500; ++i) {
        const auto other = [&] { return others.at(draw.below(others.size())); };
        EmployeeRecord employee = RecordBuilder()
                                      .name(other(), names.at(draw.below(names.size())))
                                      .titles(other(), other())
                                      .phone(other());
        if (draw.percent(30))
            std::swap(employee.jmeno, employee.prijmeni);
        const QString quick = describe(trial.effectsOf(employee));
        QCOMPARE(quick, describe(trial.fullTrial(employee, EscapeMode::Either)));
        found += quick.isEmpty() ? 0 : 1;
    }
    QCOMPARE(found, 1500);
}

void tst_StatementTrial::log_staysEmpty()
{
    EventLog log;
    StatementTrial trial;
    trial.effectsOf(RecordBuilder().phone(str("O'Neil")));
    QCOMPARE(log.take(), QStringList());
}

void tst_StatementTrial::connections_areTakenAway()
{
    EventLog log;
    const QStringList drivers = QSqlDatabase::drivers();
    {
        StatementTrial trial;
        StatementTrial other;
        trial.effectsOf(RecordBuilder().phone(str("O'Neil")));
        QCOMPARE(QSqlDatabase::connectionNames().size(), 4);
    }
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    QCOMPARE(QSqlDatabase::drivers(), drivers);
    QCOMPARE(log.take(), QStringList());
}

void tst_StatementTrial::threads_haveTheirOwn()
{
    EventLog log;
    std::array<int, 4> right {};
    std::array<std::thread, 4> threads;
    for (size_t i = 0; i < threads.size(); ++i) {
        threads.at(i) = std::thread([&right, i] {
            for (int round = 0; round < 20; ++round) {
                StatementTrial trial;
                const QString name = QString::number(i) + str("''") + QString::number(round);
                const auto trials = trial.effectsOf(RecordBuilder().name(name, name));
                const QString stored = QString(name).replace(str("''"), str("'"));
                right.at(i) += trials.size() == 2 && trials.at(0).becomes == stored ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const int count : right)
        QCOMPARE(count, 20);
    QCOMPARE(log.take(), QStringList());
}

QTEST_GUILESS_MAIN(tst_StatementTrial)
#include "tst_statementtrial.moc"
