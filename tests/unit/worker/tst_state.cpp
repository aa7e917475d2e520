// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Evidence states: their texts, and the interval worked out for the person's row.
#include "support/localseconds.h"
#include "support/workerfixture.h"

#include <QTranslator>
#include <QtTest>

namespace {

const ushort knownState = 21;
const ushort unknownState = 400;

/// Turns every text round and writes down what it was asked for.
class RecordingTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        asked.append(
            QStringLiteral("%1/%2/%3/%4")
                .arg(QString::fromUtf8(context), QString::fromUtf8(sourceText),
                     disambiguation ? QString::fromUtf8(disambiguation) : QStringLiteral("none"),
                     QString::number(n)));
        return QStringLiteral("translated");
    }

    mutable QStringList asked;
};

void addBuiltInTexts()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << QStringLiteral("aktívny právny vzťah");
    QTest::newRow("1") << 1 << QStringLiteral("v skúšobnej dobe");
    QTest::newRow("2") << 2 << QStringLiteral("vo výpovednej dobe");
    QTest::newRow("3") << 3 << QStringLiteral("skončený právny vzťah");
    QTest::newRow("21") << 21 << QStringLiteral("materská dovolenka");
    QTest::newRow("22") << 22 << QStringLiteral("rodičovská dovolenka");
    QTest::newRow("24") << 24 << QStringLiteral("rodičovská dovolenka (nad 3r)");
    QTest::newRow("53") << 53 << QStringLiteral("výkon trestu");
    QTest::newRow("71") << 71 << QStringLiteral("neplatené voľno");
    QTest::newRow("560") << 560 << QStringLiteral("dlhodobé platené voľno");
}

void addInterval(const char *name, const QDate &oldBegin, const QDate &oldEnd, const QDate &begin,
                 const QDate &end)
{
    QTest::newRow(name) << oldBegin << oldEnd << begin << end;
}

void addIntervalColumns()
{
    QTest::addColumn<QDate>("oldBegin");
    QTest::addColumn<QDate>("oldEnd");
    QTest::addColumn<QDate>("begin");
    QTest::addColumn<QDate>("end");
}

/// The interval of the row, for a person who comes into the state from another one.
void compareInterval(ushort state, ushort earlierState, const char *text)
{
    QFETCH(QDate, oldBegin);
    QFETCH(QDate, oldEnd);
    QFETCH(QDate, begin);
    QFETCH(QDate, end);
    THRWorker worker;
    worker.setMes({{knownState, QStringLiteral("MD")}});
    // Neither the interval of the record itself nor the state of the old one plays a part.
    EmployeeRecord employee = record().es(state).interval(QDate(1999, 1, 1), QDate(2199, 1, 1),
                                                          QStringLiteral("left over"));
    worker.applyStateValidity(
        employee, record().es(earlierState).interval(oldBegin, oldEnd, QStringLiteral("earlier")));
    QCOMPARE(employee.rsBegin, begin);
    QCOMPARE(employee.rsEnd, end);
    QCOMPARE(employee.rsText, str(text));
}

QString insertOf(qint64 begin, const QString &rsBegin, const QString &rsText)
{
    return QStringLiteral(
               "sql exec INSERT INTO people (pid, pamId, title, name, surname, title2, phone, "
               "begin, end, created, rsBegin, rsEnd, rsText, type, did, calendarID, bid) "
               "VALUES('12341', '1234.1', '', 'Ján', 'Novák', '', '', %1, NULL, UNIX_TIMESTAMP(), "
               "%2, NULL, '%3', 1, 1, 0, NULL) ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), "
               "title=VALUES(title), name=VALUES(name), surname=VALUES(surname), "
               "title2=VALUES(title2), phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), "
               "edited=VALUES(created), status=1, type=VALUES(type), did=1")
        .arg(QString::number(begin), rsBegin, rsText);
}

} // namespace

class tst_State : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateText_builtIn_data() { addBuiltInTexts(); }
    void stateText_builtIn();
    void stateText_unknownIsEmpty_data();
    void stateText_unknownIsEmpty();
    void stateText_settingsWin();
    void stateText_goesThroughTheTranslation_data() { addBuiltInTexts(); }
    void stateText_goesThroughTheTranslation();
    void stateText_ofSettingsIsNotTranslated();
    void stateTextOf_takesTheRecordsState();
    void stateKnown_inTheSettingsOnly();
    void applyStateValidity_knownState_data();
    void applyStateValidity_knownState();
    void applyStateValidity_unknownState_data();
    void applyStateValidity_unknownState();
    void applyStateValidity_emptyTextIsKnown();
    void applyStateValidity_forAPersonBeingAdded();
    void applyStateValidity_setsNothingElse();
    void withStateValidity_isACopy();
    void builtInTextsNeverReachRsText_data() { addBuiltInTexts(); }
    void builtInTextsNeverReachRsText();
    void doSyncRecord_remembersTheRecordOfTheFile();
};

void tst_State::stateText_builtIn()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    const THRWorker worker;
    QCOMPARE(worker.stateText(static_cast<ushort>(state)), text);
}

void tst_State::stateText_unknownIsEmpty_data()
{
    QTest::addColumn<int>("state");
    for (const int state : {4, 5, 20, 23, 25, 52, 54, 70, 72, 559, 561, 65535})
        QTest::newRow(qPrintable(QString::number(state))) << state;
}

void tst_State::stateText_unknownIsEmpty()
{
    QFETCH(int, state);
    THRWorker worker;
    worker.setMes({{ushort(6), QStringLiteral("another state")}});
    QCOMPARE(worker.stateText(static_cast<ushort>(state)), QString());
}

void tst_State::stateText_settingsWin()
{
    THRWorker worker;
    worker.setMes({{ushort(21), QStringLiteral("MD")},
                   {ushort(22), QString()},
                   {ushort(400), QStringLiteral("stáž")}});
    QCOMPARE(worker.stateText(21), QStringLiteral("MD"));
    QCOMPARE(worker.stateText(22), QString());
    QCOMPARE(worker.stateText(400), QStringLiteral("stáž"));
    QCOMPARE(worker.stateText(24), QStringLiteral("rodičovská dovolenka (nad 3r)"));
}

void tst_State::stateText_goesThroughTheTranslation()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    const THRWorker worker;
    RecordingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(worker.stateText(static_cast<ushort>(state)), QStringLiteral("translated"));
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(translator.asked,
             QStringList {QStringLiteral("THRWorker/") + text + QStringLiteral("/none/-1")});
}

void tst_State::stateText_ofSettingsIsNotTranslated()
{
    THRWorker worker;
    worker.setMes({{knownState, QStringLiteral("MD")}});
    RecordingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(worker.stateText(knownState), QStringLiteral("MD"));
    QCOMPARE(worker.stateText(unknownState), QString());
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(translator.asked, QStringList());
}

void tst_State::stateTextOf_takesTheRecordsState()
{
    THRWorker worker;
    worker.setMes({{ushort(22), QStringLiteral("RD")}});
    QCOMPARE(worker.stateTextOf(record().es(22)), QStringLiteral("RD"));
    QCOMPARE(worker.stateTextOf(record().es(53).relationState(22)), QStringLiteral("výkon trestu"));
    QCOMPARE(worker.stateTextOf(record().es(65535)), QString());
}

void tst_State::stateKnown_inTheSettingsOnly()
{
    THRWorker worker;
    QVERIFY(!worker.stateKnown(0));
    QVERIFY(!worker.stateKnown(21));
    worker.setMes({{ushort(21), QStringLiteral("MD")}, {ushort(400), QString()}});
    QVERIFY(worker.stateKnown(21));
    QVERIFY(worker.stateKnown(400));
    QVERIFY(!worker.stateKnown(22));
    QVERIFY(!worker.stateKnown(0));
}

void tst_State::applyStateValidity_knownState_data()
{
    addIntervalColumns();
    const QDate none;
    const QDate today = QDate::currentDate();
    const QDate yesterday = today.addDays(-1);
    const QDate tomorrow = today.addDays(1);
    const QDate future = today.addDays(40);
    const QDate past(2020, 1, 1);
    addInterval("no interval yet", none, none, today, none);
    addInterval("open since long ago", past, none, past, none);
    addInterval("open since yesterday", yesterday, none, yesterday, none);
    addInterval("open since today", today, none, today, none);
    addInterval("opens tomorrow", tomorrow, none, today, none);
    addInterval("ended long ago", past, QDate(2020, 2, 1), today, none);
    addInterval("ended yesterday", past, yesterday, today, none);
    addInterval("ends today", past, today, today, none);
    addInterval("ends tomorrow", past, tomorrow, past, tomorrow);
    addInterval("begun yesterday, ends tomorrow", yesterday, tomorrow, yesterday, tomorrow);
    addInterval("begun today, ends later", today, future, today, future);
    addInterval("begun today, ends today", today, today, today, none);
    addInterval("still to come", tomorrow, future, today, future);
    addInterval("no begin, ends later", none, future, today, future);
    addInterval("no begin, ended yesterday", none, yesterday, today, none);
    addInterval("no begin, ends today", none, today, today, none);
    addInterval("ends before it begins", today, yesterday, today, none);
}

void tst_State::applyStateValidity_knownState()
{
    compareInterval(knownState, unknownState, "MD");
}

void tst_State::applyStateValidity_unknownState_data()
{
    addIntervalColumns();
    const QDate none;
    const QDate today = QDate::currentDate();
    const QDate yesterday = today.addDays(-1);
    const QDate tomorrow = today.addDays(1);
    const QDate past(2020, 1, 1);
    addInterval("no interval", none, none, none, none);
    addInterval("open since long ago", past, none, past, today);
    addInterval("open since today", today, none, today, today);
    addInterval("opens tomorrow", tomorrow, none, tomorrow, today);
    addInterval("ended long ago", past, QDate(2020, 2, 1), past, QDate(2020, 2, 1));
    addInterval("ended on its first day", past, past, past, past);
    addInterval("ended the day before its first", past, QDate(2019, 12, 31), past, today);
    addInterval("ended yesterday", past, yesterday, past, yesterday);
    addInterval("ends tomorrow", past, tomorrow, past, tomorrow);
    addInterval("no begin, but an end", none, QDate(2020, 2, 1), none, none);
    addInterval("no begin, ends tomorrow", none, tomorrow, none, none);
}

void tst_State::applyStateValidity_unknownState()
{
    compareInterval(unknownState, knownState, "earlier");
}

void tst_State::applyStateValidity_emptyTextIsKnown()
{
    THRWorker worker;
    worker.setMes({{knownState, QString()}});
    EmployeeRecord employee = record().es(knownState);
    worker.applyStateValidity(
        employee, record().interval(QDate(2020, 1, 1), QDate(), QStringLiteral("earlier")));
    // Open as for any known state; an unknown one would be closed today and keep its text.
    QCOMPARE(employee.rsBegin, QDate(2020, 1, 1));
    QCOMPARE(employee.rsEnd, QDate());
    QCOMPARE(employee.rsText, QString());
}

void tst_State::applyStateValidity_forAPersonBeingAdded()
{
    THRWorker worker;
    worker.setMes({{knownState, QStringLiteral("MD")}});
    EmployeeRecord known = record().es(knownState);
    worker.applyStateValidity(known, EmployeeRecord());
    QCOMPARE(known.rsBegin, QDate::currentDate());
    QCOMPARE(known.rsEnd, QDate());
    QCOMPARE(known.rsText, QStringLiteral("MD"));

    EmployeeRecord unknown = record().es(unknownState);
    worker.applyStateValidity(unknown, EmployeeRecord());
    QCOMPARE(unknown.rsBegin, QDate());
    QCOMPARE(unknown.rsEnd, QDate());
    QCOMPARE(unknown.rsText, QString());
}

void tst_State::applyStateValidity_setsNothingElse()
{
    THRWorker worker;
    worker.setMes({{knownState, QStringLiteral("MD")}});
    const RecordBuilder original = record()
                                       .pid(7, 2)
                                       .titles(QStringLiteral("Ing."), QStringLiteral("PhD."))
                                       .phone(QStringLiteral("0905"))
                                       .employed(QDate(2015, 3, 1), QDate(2031, 12, 31))
                                       .branch(70, QStringLiteral("Sklad"))
                                       .calendar(8, QDate(2024, 1, 15))
                                       .relationState(1)
                                       .balance(12.5)
                                       .supervisor(99);
    const EmployeeRecord old = record().pid(9, 9).es(3).interval(QDate(2020, 1, 1), QDate(),
                                                                 QStringLiteral("earlier"));

    EmployeeRecord known = RecordBuilder(original).es(knownState);
    worker.applyStateValidity(known, old);
    QCOMPARE(known,
             RecordBuilder(original)
                 .es(knownState)
                 .interval(QDate(2020, 1, 1), QDate(), QStringLiteral("MD"))
                 .build());

    EmployeeRecord unknown = RecordBuilder(original).es(unknownState);
    worker.applyStateValidity(unknown, old);
    QCOMPARE(unknown,
             RecordBuilder(original)
                 .es(unknownState)
                 .interval(QDate(2020, 1, 1), QDate::currentDate(), QStringLiteral("earlier"))
                 .build());
}

void tst_State::withStateValidity_isACopy()
{
    THRWorker worker;
    worker.setMes({{knownState, QStringLiteral("MD")}});
    const EmployeeRecord employee = record().es(knownState);
    const EmployeeRecord old = record().interval(QDate(2020, 1, 1), QDate(),
                                                 QStringLiteral("earlier"));
    QCOMPARE(
        worker.withStateValidity(employee, old),
        record().es(knownState).interval(QDate(2020, 1, 1), QDate(), QStringLiteral("MD")).build());
    QCOMPARE(employee, record().es(knownState).build());
}

void tst_State::builtInTextsNeverReachRsText()
{
    QFETCH(int, state);
    WorkerFixture f;
    const EmployeeRecord employee = record().es(static_cast<ushort>(state));

    EmployeeRecord changed = employee;
    f.worker.applyStateValidity(
        changed, record().interval(QDate(2020, 1, 1), QDate(), QStringLiteral("earlier")));
    QCOMPARE(changed.rsText, QStringLiteral("earlier"));

    f.worker.doSyncRecord(employee);
    QCOMPARE(f.log.take().value(0),
             insertOf(localSeconds(QDate(2015, 3, 1)), QStringLiteral("NULL"), QString()));
}

void tst_State::doSyncRecord_remembersTheRecordOfTheFile()
{
    WorkerFixture f;
    f.worker.setMes({{knownState, QStringLiteral("MD")}});
    const EmployeeRecord employee = record().es(knownState);
    f.worker.doSyncRecord(employee);
    // The row has the interval that was worked out, the memory has not.
    QCOMPARE(f.log.take().value(0),
             insertOf(localSeconds(QDate(2015, 3, 1)),
                      QString::number(localSeconds(QDate::currentDate())), QStringLiteral("MD")));
    QCOMPARE(f.peer.lastRecords.keys(), QList<uint> {12341});
    QCOMPARE(f.peer.lastRecords.value(12341), employee);
    QVERIFY(!f.peer.lastRecords.value(12341).rsBegin.isValid());
}

QTEST_GUILESS_MAIN(tst_State)
#include "tst_state.moc"
