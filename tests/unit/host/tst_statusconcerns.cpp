// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What somebody has to look at, and the line for a monitoring system.
#include "host/status/checkline.h"
#include "host/status/folderstatus.h"
#include "host/status/metrics.h"
#include "host/status/statusreport.h"
#include "host/status/statustexts.h"
#include "support/status/madestatus.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

class tst_StatusConcerns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void concerns_tellTheWorstFirst_data();
    void concerns_tellTheWorstFirst();
    void checkLine_hasFiguresBehindTheBar();
};

namespace {

/// Empty if the line tells the concern and has figures as monitoring systems read them.
QString lineFault(const QString &line, const QString &concern)
{
    const QString level = concern.isEmpty() ? QStringLiteral("OK")
                                            : concern.section(QLatin1Char(' '), 0, 0);
    const QString text = concern.isEmpty() ? QStringLiteral("exports and passes are as they should")
                                           : concern.section(QLatin1Char(' '), 1);
    const QString begin = QStringLiteral("TALVENHR %1 - %2")
                              .arg(level,
                                   QString(text).replace(QLatin1Char('|'), QLatin1Char('/')));
    static const QRegularExpression form(
        QStringLiteral("^[^|\n]+ \\| export_age=\\d+s;;\\d+( [a-z_]+=\\d+(s|B)?)* "
                       "incoming_size=\\d+B archive_size=\\d+B refused_size=\\d+B "
                       "state_size=\\d+B$"));
    return line.startsWith(begin) && form.match(line).hasMatch() ? QString() : line;
}

} // namespace

void tst_StatusConcerns::concerns_tellTheWorstFirst_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("concern");
    const auto add = [](const char *what, const char *concern) {
        QTest::newRow(what) << QString::fromLatin1(what) << QString::fromLatin1(concern);
    };
    add("well", "");
    add("refused", "CRITICAL the last export was refused: too many | ends");
    add("nothing new", "");
    add("late", "CRITICAL no export has come for 5 h 0 min");
    add("marked late", "CRITICAL no export has come for 5 h 0 min");
    add("stopped", "WARNING the gate was stopped while it put an export in place, 1 h 0 min ago");
    add("dropped", "WARNING lines of the last export that passed, which come to nothing: 3");
    add("unread", "CRITICAL the export in place has not been read for 3 h 0 min");
    add("foreign", "WARNING what lies in place has not come through the gate");
    add("no pass", "CRITICAL no pass for 3 h 0 min");
    add("unwritable", "UNKNOWN site and figures: the disk is full");
    add("errors", "CRITICAL errors of the last pass: 1");
    add("rehearsed errors", "CRITICAL errors in the rehearsal of the last pass: 2");
    add("waiting", "WARNING people of whom the last pass has left something undone: 1");
    add("lost", "CRITICAL people whom a pass has lost: 1");
    add("perhaps lost", "WARNING people whom a pass may have lost: 1");
    add("no database", "UNKNOWN it does not answer");
}

void tst_StatusConcerns::concerns_tellTheWorstFirst()
{
    QFETCH(QString, what);
    QFETCH(QString, concern);
    const auto is = [&what](const char *name) { return what == QLatin1String(name); };
    const GateFolder folder;
    GateRecord record = folder.record(5, "a");
    if (is("dropped"))
        record.fates.dropped = 3;
    folder.keep(is("rehearsed errors") ? rehearsed(record, 1, 2) : record);
    if (is("refused"))
        folder.keep(refused(folder.record(1, "b", GateRecord::Refused)));
    if (is("nothing new")) {
        GateRecord same = folder.record(1, "a", GateRecord::Refused);
        same.reasons = {{QStringLiteral("seen"), QStringLiteral("the same bytes"), QString()}};
        same.isNothingNew = true;
        folder.keep(same);
        const Status status = folder.status();
        QVERIFY(metricsText(status).contains("\ntalvenhr_last_export_refused 0\n"));
        QCOMPARE(lastRecord(status)->name, same.name);
        QCOMPARE(outcomeText(same), QStringLiteral("nothing new since the last one that passed"));
    }
    if (is("stopped"))
        folder.keep(folder.record(1, "b", GateRecord::Passing));
    if (is("marked late"))
        folder.write(QStringLiteral("state/late"), record.name.toUtf8());
    if (is("well")) // of an older export
        folder.write(QStringLiteral("state/late"), "20261101T020000Z-0123456789ab");
    if (is("errors"))
        keepPass(folder, 1, toldError());
    if (is("no pass"))
        keepPass(folder, 3, PassTold());
    if (is("unread") || is("foreign"))
        folder.write(QStringLiteral("site/ron.data"), is("foreign") ? "else" : "a",
                     is("foreign") ? 1 : 3);
    StatusSources sources = folder.sources();
    sources.lateAfter = is("late") ? 4 * 3600 : 6 * 3600;
    Status status = readStatus(sources, folder.now());
    if (is("waiting"))
        status.waiting = {{{}, NotDone::Branch, {}}, {{}, NotDone::LeaveNotAtRest, {}}};
    if (is("lost") || is("perhaps lost"))
        status.lost = {lostEva()};
    if (is("perhaps lost"))
        status.lost[0].uncertain = QStringList {QStringLiteral("why")};
    if (is("unwritable"))
        status.unknown = {
            {QStringLiteral("site and figures"), QStringLiteral("the disk is full"), true}};
    if (is("no database"))
        status.databaseTrouble = QStringLiteral("it does not answer");
    QCOMPARE(firstConcern(status), concern);
    QCOMPARE(lineFault(checkLine(status), concern), QString());
    QCOMPARE(exitCodeOf(status),
             concern.isEmpty()       ? ExitClean
                 : is("no database") ? ExitDatabase
                                     : ExitErrors);
    status.unknown.append({QStringLiteral("x"), QStringLiteral("y"), true});
    QCOMPARE(firstConcern(status), concern.isEmpty() ? QStringLiteral("UNKNOWN x: y") : concern);
}

void tst_StatusConcerns::checkLine_hasFiguresBehindTheBar()
{
    const GateFolder folder;
    folder.keep(rehearsed(folder.record(30, "a"), 4));
    folder.keep(refused(folder.record(2, "b", GateRecord::Refused)));
    StatusSources sources = folder.sources();
    sources.lateAfter = 93600;
    sources.state.clear();
    sources.incoming.clear();
    sources.refused = sources.archive = folder.path(QStringLiteral("refused"));
    QFile::remove(
        folder.path(QStringLiteral("refused/") + folder.record(30, "a").name + recordEnding()));
    Status status = readStatus(sources, folder.now());
    status.folders.clear();
    status.database = DatabaseStatus {false, 12, {}};
    status.lossesAreKnown = true;
    status.pass.source = PassStatus::FromChanges;
    status.pass.when = folder.now().addSecs(-90);
    status.pass.summary = KindCounts();
    (*status.pass.summary)[ChangeKind::Added] = 3;
    QCOMPARE(checkLine(status),
             QStringLiteral("TALVENHR CRITICAL - the last export was refused: too many / ends | "
                            "export_age=7200s;;93600 pass_age=90s added=3 updated=0 waiting=0 "
                            "errors=0 lost=0 queue=12"));
    QCOMPARE(unknownCheckLine(QStringLiteral("a|b\nc")),
             QStringLiteral("TALVENHR UNKNOWN - a/b\\nc"));
    const GateFolder empty;
    QVERIFY(checkLine(empty.status())
                .startsWith(QStringLiteral("TALVENHR UNKNOWN - the gate has decided on nothing ")));
}

QTEST_GUILESS_MAIN(tst_StatusConcerns)
#include "tst_statusconcerns.moc"
