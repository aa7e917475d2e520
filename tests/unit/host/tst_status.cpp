// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What folders tell of exports and passes, and in which forms.
#include "host/changes/changesjson.h"
#include "host/report/textreport.h"
#include "host/status/checkline.h"
#include "host/status/folderstatus.h"
#include "host/status/metrics.h"
#include "host/status/statusreport.h"
#include "host/status/statustexts.h"
#include "support/passchanges.h"
#include "support/status/gatefolder.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

class tst_Status : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void export_isReadOnceItIsGone();
    void export_ofALongIntervalIsReadOnceItsPassIsOver();
    void lastExport_isTheNewestOfSeveral();
    void export_inPlaceIsUnread();
    void export_thatStaysIsReadAfterAnInterval();
    void supersededExports_wereNeverRead();
    void pass_comesFromItsChanges();
    void pass_comesFromThePlace();
    void damagedFiles_areNamed();
    void rehearsals_areThoseOfExportsThatWereRead();
    void settledFile_isThatOfAnExportThatPassed();
    void concerns_tellTheWorstFirst_data();
    void concerns_tellTheWorstFirst();
    void page_fitsAScreen();
    void page_withoutNames();
    void recovery_takesTheNewestExport();
    void recovery_leavesAloneWhatWasReleased();
    void checkLine_hasFiguresBehindTheBar();
    void metrics_haveHelpAndTypeOnce();
    void metrics_areThoseOfTheDocument();
    void metrics_areForEverybodyToRead();
    void durations_haveTwoPartsAtMost();
};

namespace {

GateRecord rehearsed(GateRecord record, int added, int errors = 0)
{
    record.rehearsal = RehearsedFigures {0, added, QStringLiteral("abc"), KindCounts()};
    record.rehearsal->summary[ChangeKind::Added] = added;
    record.rehearsal->summary[ChangeKind::Errors] = errors;
    return record;
}

GateRecord refused(GateRecord record)
{
    record.reasons = {{QStringLiteral("limit:ended"), QStringLiteral("too many | ends"), {}}};
    return record;
}

/// A real pass so many hours ago, in the archive.
void keepPass(const GateFolder &folder, int hoursAgo, const PassTold &told)
{
    Changes changes = changesBy(told);
    changes.header.how = ChangesHeader::Run;
    changes.header.when = GateFolder::now().addSecs(-3600 * hoursAgo);
    changes.header.since = changes.header.when.addSecs(-7);
    const QString path = folder.path(QStringLiteral("archive/"))
        + changes.header.when.toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z-1.changes.json'"));
    if (const Failure failure = writeChangesFile(changes, path))
        QTest::qFail(qPrintable(failure.text), __FILE__, __LINE__);
}

PassTold toldError()
{
    PassTold told;
    ToldMessage message;
    message.message = {true, QDateTime(), QStringLiteral("dbAddPerson(x) - SQL ERROR [1062]: no")};
    told.messages = {message};
    told.waiting = 2;
    return told;
}

QString firstConcern(const Status &status)
{
    const QVector<Concern> concerns = concernsOf(status);
    return concerns.isEmpty()
        ? QString()
        : levelName(concerns.constFirst().level) + QLatin1Char(' ') + concerns.constFirst().text;
}

LostPerson lostEva()
{
    LostPerson lost;
    lost.person = {7, QStringLiteral("1001.1"), QStringLiteral("Eva Malá")};
    lost.record = QStringLiteral("20261122T100000Z-1");
    lost.missing.kinds.add(ChangeKind::Added);
    lost.remedies = {Remedy::Force};
    return lost;
}

QString sourceFile(const QByteArray &name)
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/") + QString::fromLatin1(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    return QString::fromUtf8(file.readAll());
}

/// The families as rows of the table in docs/status.md.
QStringList documentRows(const QByteArray &metrics)
{
    static const QRegularExpression family(
        QStringLiteral("# HELP (\\S+) (.*)\n# TYPE \\S+ (\\S+)\n"));
    QStringList rows;
    auto found = family.globalMatch(QString::fromUtf8(metrics));
    while (found.hasNext()) {
        const auto match = found.next();
        rows.append(QStringLiteral("| `%1` | %2 | %3 |")
                        .arg(match.captured(1), match.captured(3), match.captured(2)));
    }
    return rows;
}

} // namespace

void tst_Status::export_isReadOnceItIsGone()
{
    const GateFolder folder;
    const GateRecord record = folder.record(2, "a");
    folder.keep(record);
    QCOMPARE(readExports(folder.status()), QStringList {record.name});

    // Its pass may still be at work.
    const GateRecord young = folder.record(0, "b");
    folder.keep(young);
    folder.age(QStringLiteral("site"), 0);
    QCOMPARE(readExports(folder.status()), QStringList {record.name});
}

void tst_Status::export_ofALongIntervalIsReadOnceItsPassIsOver()
{
    const GateFolder folder;
    const GateRecord record = folder.record(5, "a");
    folder.keep(record);
    folder.age(QStringLiteral("site"), 0);
    StatusSources sources = folder.sources();
    sources.passSeconds = 6 * 3600;
    QCOMPARE(readExports(readStatus(sources, folder.now())), QStringList());
    sources.passSeconds = 0;
    QCOMPARE(readExports(readStatus(sources, folder.now())), QStringList());
    // Something else changes the folder all the time.
    sources.passSeconds = 4 * 3600;
    QCOMPARE(readExports(readStatus(sources, folder.now())), QStringList {record.name});
}

/// In the order in which a gate decides on them: the newest first.
void tst_Status::lastExport_isTheNewestOfSeveral()
{
    const GateFolder folder;
    GateRecord newest = refused(folder.record(5, "a", GateRecord::Refused));
    newest.fileTime = folder.now().addSecs(-60);
    const GateRecord sound = folder.record(4, "b");
    const GateRecord oldest = folder.record(3, "c", GateRecord::Superseded);
    for (const GateRecord &record : {newest, sound, oldest})
        folder.keep(record);
    const Status status = folder.status();
    QCOMPARE(lastRecord(status)->name, newest.name);
    QCOMPARE(lastPassed(status.records)->name, sound.name);
    QCOMPARE(firstConcern(status),
             QStringLiteral("CRITICAL the last export was refused: too many | ends"));

    newest.fileTime = sound.fileTime.addSecs(-60);
    folder.keep(newest);
    QCOMPARE(lastRecord(folder.status())->name, sound.name);

    newest.fileTime = folder.now();
    newest.reasons = {{QStringLiteral("foreign"), QStringLiteral("it lay there"), {}}};
    folder.keep(newest);
    QCOMPARE(lastRecord(folder.status())->name, sound.name);
}

void tst_Status::export_inPlaceIsUnread()
{
    const GateFolder folder;
    const GateRecord record = folder.record(2, "a");
    folder.keep(record);
    folder.write(QStringLiteral("site/ron.data"), "a", 2);
    Status status = folder.status();
    QCOMPARE(readExports(status), QStringList());
    QCOMPARE(status.place.record, record.name);
    QVERIFY(isUnread(status));
    QCOMPARE(firstConcern(status), QString());
    folder.write(QStringLiteral("site/ron.data"), "a", 3);
    QCOMPARE(firstConcern(folder.status()),
             QStringLiteral("CRITICAL the export in place has not been read for 3 h 0 min"));
    folder.write(QStringLiteral("site/ron.data"), "else", 1);
    status = folder.status();
    QCOMPARE(status.place.record, QString());
    QCOMPARE(firstConcern(status),
             QStringLiteral("WARNING what lies in place has not come through the gate"));
}

void tst_Status::export_thatStaysIsReadAfterAnInterval()
{
    const GateFolder folder;
    const GateRecord record = folder.record(1, "a");
    folder.keep(record);
    folder.write(QStringLiteral("site/ron.data"), "a", 1);
    StatusSources sources = folder.sources();
    sources.staysInPlace = true;
    const Status young = readStatus(sources, folder.now());
    QVERIFY(!isUnread(young));
    QCOMPARE(readExports(young), QStringList());
    QCOMPARE(readExports(readStatus(sources, folder.now().addSecs(1200))),
             QStringList {record.name});
}

void tst_Status::supersededExports_wereNeverRead()
{
    const GateFolder folder;
    const GateRecord first = folder.record(5, "a", GateRecord::Superseded);
    const GateRecord second = folder.record(4, "b");
    GateRecord third = folder.record(3, "c");
    third.replaced = second.name;
    const GateRecord fourth = folder.record(2, "d", GateRecord::Refused);
    for (const GateRecord &record : {first, second, third, fourth})
        folder.keep(record);
    QCOMPARE(readExports(folder.status()), QStringList {third.name});
}

void tst_Status::pass_comesFromItsChanges()
{
    const GateFolder folder;
    folder.keep(folder.record(5, "a"));
    keepPass(folder, 4, PassTold());
    keepPass(folder, 3, toldError());
    const Status status = folder.status();
    QCOMPARE(status.pass.source, PassStatus::FromChanges);
    QCOMPARE(status.pass.when, folder.now().addSecs(-3 * 3600));
    QCOMPARE(status.pass.errors.value(QStringLiteral("1062")), 1);
    QCOMPARE((*status.pass.summary)[ChangeKind::Waiting], Q_INT64_C(2));
    QCOMPARE(nextPassDue(status), folder.now().addSecs(-2 * 3600));

    // The place tells of a newer one.
    folder.keep(rehearsed(folder.record(2, "b"), 4));
    QCOMPARE(folder.status().pass.source, PassStatus::FromPlace);
}

void tst_Status::pass_comesFromThePlace()
{
    const GateFolder folder;
    const GateRecord record = rehearsed(folder.record(3, "a"), 4);
    folder.keep(record);
    folder.age(QStringLiteral("site"), 2);
    PassTold told;
    told.leave = {{10011, NotDone::LeaveNotAtRest, QStringLiteral("not at rest")}};
    folder.keep(record, changesBy(told));
    const Status status = folder.status();
    QCOMPARE(status.pass.file, record.name);
    QCOMPARE(status.pass.notBefore, record.when);
    QCOMPARE(status.pass.when, folder.now().addSecs(-2 * 3600));
    QCOMPARE((*status.pass.summary)[ChangeKind::Added], Q_INT64_C(4));
    QCOMPARE(status.waiting.size(), 1);
    QVERIFY(!waitsForSomebody(status.waiting.constFirst()));

    // One that has only just begun is the last one already.
    const GateRecord newer = folder.record(1, "b");
    folder.keep(newer);
    folder.age(QStringLiteral("site"), 0);
    QCOMPARE(folder.status().pass.file, newer.name);
}

void tst_Status::damagedFiles_areNamed()
{
    const GateFolder folder;
    folder.keep(folder.record(3, "a"));
    folder.write(QStringLiteral("archive/1.gate.json"), "{");
    folder.write(QStringLiteral("archive/2-1.changes.json"), "{");
    StatusSources sources = folder.sources();
    sources.refused = folder.path(QStringLiteral("nowhere"));
    const Status status = readStatus(sources, folder.now());
    QCOMPARE(status.records.size(), 1);
    QCOMPARE(status.unknown.size(), 3);
    QCOMPARE(status.unknown.constFirst().reason, QStringLiteral("it is not there"));
    QCOMPARE(levelOf(concernsOf(status)), Level::Unknown);
    QCOMPARE(exitCodeOf(status), ExitErrors);
}

void tst_Status::rehearsals_areThoseOfExportsThatWereRead()
{
    const GateFolder folder;
    const GateRecord old = folder.record(24 * 20, "o");
    const GateRecord read = folder.record(5, "a");
    const GateRecord unread = folder.record(2, "b");
    for (const GateRecord &record : {old, read, unread}) {
        folder.keep(record);
        folder.keep(record, changesBy(PassTold()));
    }
    folder.write(QStringLiteral("site/ron.data"), "b", 2);
    const QVector<RehearsedExport> rehearsals = readRehearsals(folder.status());
    QCOMPARE(rehearsals.size(), 1);
    QCOMPARE(rehearsals.constFirst().record, read.name);

    const GateRecord next = folder.record(3, "c");
    folder.keep(next);
    folder.keep(next, changesBy(PassTold()));
    folder.write(QStringLiteral("archive/%1.settled").arg(read.name), QByteArray());
    const QVector<RehearsedExport> later = readRehearsals(folder.status());
    QCOMPARE(later.size(), 1);
    QCOMPARE(later.constFirst().record, next.name);
}

/// Only what an export that went through has changed is ever looked for.
void tst_Status::settledFile_isThatOfAnExportThatPassed()
{
    const GateFolder folder;
    GateRecord record = folder.record(5, "a");
    const QString stem = folder.path(QStringLiteral("archive/")) + record.name;
    const QString changes = stem + QStringLiteral(".changes.json");
    QCOMPARE(settledFileOf(changes), QString());
    folder.keep(record);
    QCOMPARE(settledFileOf(changes), stem + QStringLiteral(".settled"));
    QCOMPARE(settledFileOf(stem + QStringLiteral(".export.gz")), QString());
    folder.write(QStringLiteral("archive/%1.settled").arg(record.name), QByteArray());
    QCOMPARE(settledFileOf(changes), QString());
    record = folder.record(4, "b");
    record.outcome = GateRecord::Superseded;
    folder.keep(record);
    QCOMPARE(settledFileOf(folder.path(QStringLiteral("archive/%1.changes.json").arg(record.name))),
             QString());
}

void tst_Status::concerns_tellTheWorstFirst_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("concern");
    const auto add = [](const char *what, const char *concern) {
        QTest::newRow(what) << QString::fromLatin1(what) << QString::fromLatin1(concern);
    };
    add("well", "");
    add("refused", "CRITICAL the last export was refused: too many | ends");
    add("late", "CRITICAL no export has come for 5 h 0 min");
    add("marked late", "CRITICAL no export has come for 5 h 0 min");
    add("stopped", "WARNING the gate was stopped while it put an export in place, 1 h 0 min ago");
    add("dropped", "WARNING lines of the last export that come to nothing: 3");
    add("errors", "CRITICAL errors of the last pass: 1");
    add("rehearsed errors", "CRITICAL errors in the rehearsal of the last pass: 2");
    add("waiting", "WARNING left undone by the last pass: 1");
    add("lost", "CRITICAL people whom a pass has lost: 1");
    add("perhaps lost", "WARNING people whom a pass may have lost: 1");
    add("no database", "UNKNOWN it does not answer");
}

void tst_Status::concerns_tellTheWorstFirst()
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
    if (is("stopped"))
        folder.keep(folder.record(1, "b", GateRecord::Passing));
    if (is("marked late"))
        folder.write(QStringLiteral("state/late"), record.name.toUtf8());
    if (is("well")) // of an older export
        folder.write(QStringLiteral("state/late"), "20261101T020000Z-0123456789ab");
    if (is("errors"))
        keepPass(folder, 1, toldError());
    StatusSources sources = folder.sources();
    sources.lateAfter = is("late") ? 4 * 3600 : 6 * 3600;
    Status status = readStatus(sources, folder.now());
    if (is("waiting"))
        status.waiting = {{{}, NotDone::Branch, {}}, {{}, NotDone::LeaveNotAtRest, {}}};
    if (is("lost") || is("perhaps lost"))
        status.lost = {lostEva()};
    if (is("perhaps lost"))
        status.lost[0].uncertain = QStringList {QStringLiteral("why")};
    if (is("no database"))
        status.databaseTrouble = QStringLiteral("it does not answer");
    QCOMPARE(firstConcern(status), concern);
    QCOMPARE(exitCodeOf(status),
             concern.isEmpty()       ? ExitClean
                 : is("no database") ? ExitDatabase
                                     : ExitErrors);
    status.unknown.append({QStringLiteral("x"), QStringLiteral("y"), true});
    QCOMPARE(firstConcern(status), concern.isEmpty() ? QStringLiteral("UNKNOWN x: y") : concern);
}

void tst_Status::page_fitsAScreen()
{
    const GateFolder folder;
    folder.keep(rehearsed(folder.record(30, "a"), 4));
    folder.keep(refused(folder.record(2, "b", GateRecord::Refused)));
    Status status = folder.status();
    status.database = DatabaseStatus {true, 12, {}};
    status.lossesAreKnown = true;
    for (int i = 0; i < 30; ++i) {
        status.lost.append(lostEva());
        status.waiting.append({lostEva().person, NotDone::Branch, {}});
    }
    const QString page = textReport(statusPage(status, PersonalTexts::Shown), 100);
    QVERIFY2(page.count(QLatin1Char('\n')) < 60, qPrintable(page));
    QVERIFY(page.contains(QStringLiteral("… and 20 more; --json has all of them")));
    QVERIFY(page.contains(QStringLiteral("1001.1 Eva Malá")));
    QVERIFY(page.contains(QStringLiteral("with the next tick, for it is forced; by ")));
    QVERIFY(
        page.contains(QStringLiteral("(2 h 0 min ago), refused: ron.data, 1 bytes, lines: 12")));
}

void tst_Status::page_withoutNames()
{
    const GateFolder folder;
    Status status = folder.status();
    status.lost = {lostEva()};
    status.lost[0].missing.fields = {
        {QStringLiteral("surname"), QStringLiteral("Malá"), QStringLiteral("Nová")}};
    status.waiting = {{lostEva().person, NotDone::Group, QStringLiteral("Eva Malá, no group")}};
    const QString page = textReport(statusPage(status, PersonalTexts::Hidden), 100);
    const QString json = QString::fromUtf8(
        jsonReport(statusDocument(status, PersonalTexts::Hidden)));
    for (const QString &text : {page, json}) {
        QVERIFY(text.contains(QStringLiteral("1001.1")));
        QVERIFY2(!text.contains(QStringLiteral("Mal")), qPrintable(text));
    }
    QVERIFY(jsonReport(statusDocument(status, PersonalTexts::Shown)).contains("Eva Mal"));
}

void tst_Status::recovery_takesTheNewestExport()
{
    const GateFolder folder;
    const GateRecord record = folder.record(3, "a");
    folder.keep(record);
    Status status = folder.status();
    QCOMPARE(recoverySteps(status), QStringList());
    status.lost = {lostEva()};
    QCOMPARE(recoverySteps(status).value(1),
             QStringLiteral("# Let the HR system leave a new export, and copy it to again.data"));
    folder.write(QStringLiteral("archive/") + record.name + QStringLiteral(".export.gz"), "z");
    status.lost[0].remedies = {Remedy::Rejoin, Remedy::Replan, Remedy::Restart, Remedy::ByHand};
    const QStringList steps = recoverySteps(status);
    QCOMPARE(steps.size(), 9);
    QVERIFY(steps.constFirst().startsWith(QStringLiteral("# Was this pass taken back, or")));
    QVERIFY(
        steps.constFirst().endsWith(QStringLiteral("touch '%1/%2.settled'")
                                        .arg(folder.path(QStringLiteral("archive")), record.name)));
    QCOMPARE(steps.at(1),
             QStringLiteral("gzip -dc '%1/%2.export.gz' > 'again.data'")
                 .arg(folder.path(QStringLiteral("archive")), record.name));
    QVERIFY(steps.at(2).startsWith(QStringLiteral("DELETE brape"))
            && steps.at(2).endsWith(QStringLiteral("IN (7);")));
    QVERIFY(steps.at(3).startsWith(QStringLiteral("DELETE plan FROM groups_plan")));
    QVERIFY(steps.at(5).endsWith(QStringLiteral("mv '%1.new' '%1'").arg(folder.place())));
    QVERIFY(steps.at(6).startsWith(QStringLiteral("INSERT INTO vars")));
}

/// One that was taken back is not brought in again.
void tst_Status::recovery_leavesAloneWhatWasReleased()
{
    const GateFolder folder;
    const GateRecord older = folder.record(30, "a");
    GateRecord record = folder.record(3, "b");
    record.release = Release {QStringLiteral("anna"), QStringLiteral("many\nleft"), {}};
    for (const GateRecord &kept : {older, record}) {
        folder.keep(kept);
        folder.write(QStringLiteral("archive/") + kept.name + QStringLiteral(".export.gz"), "z");
    }
    Status status = folder.status();
    status.lost = {lostEva()};
    status.lost[0].record = record.name;
    status.lost[0].remedies = {Remedy::Rejoin};
    const QStringList steps = recoverySteps(status);
    QCOMPARE(steps.size(), 2);
    QCOMPARE(steps.constFirst(),
             QStringLiteral("# Export %1 was let through by anna: many\\nleft").arg(record.name));
    QVERIFY(steps.constLast().endsWith(record.name + QStringLiteral(".settled'")));

    // Somebody whom an older one has lost does not bring it back, either.
    LostPerson other = lostEva();
    other.record = older.name;
    other.person.uid = 8;
    other.remedies = {Remedy::Rejoin};
    status.lost.append(other);
    const QStringList more = recoverySteps(status);
    QCOMPARE(more.mid(0, 2), steps);
    QVERIFY(more.at(2).startsWith(QStringLiteral("# Let the HR system leave a new export")));
    QVERIFY(more.at(3).endsWith(QStringLiteral("IN (8);")));
}

void tst_Status::checkLine_hasFiguresBehindTheBar()
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

void tst_Status::metrics_haveHelpAndTypeOnce()
{
    const GateFolder folder;
    GateRecord record = rehearsed(folder.record(5, "a"), 4);
    record.findings = {{QStringLiteral("W-\"\\\n"), Finding::Warning, 3}};
    folder.keep(record);
    folder.keep(refused(folder.record(4, "b", GateRecord::Refused)));
    keepPass(folder, 1, toldError());
    Status status = folder.status();
    status.database = DatabaseStatus {true, 12, {}};
    status.lossesAreKnown = true;
    const QStringList lines = QString::fromUtf8(metricsText(status))
                                  .split(QLatin1Char('\n'), QString::SkipEmptyParts);
    const QRegularExpression help(QStringLiteral("^# HELP (talvenhr_[a-z_]+) \\S.*\\.$"));
    const QRegularExpression type(QStringLiteral("^# TYPE (talvenhr_[a-z_]+) (gauge|counter)$"));
    const QRegularExpression sample(
        QStringLiteral("^(talvenhr_[a-z_]+)(\\{([a-z]+=\"([^\"\\\\]|\\\\.)*\",?)+\\})? -?\\d+$"));
    QSet<QString> families;
    for (int i = 0; i < lines.size(); ++i) {
        const auto begun = help.match(lines.at(i));
        if (!begun.hasMatch()) {
            QVERIFY2(sample.match(lines.at(i)).hasMatch(), qPrintable(lines.at(i)));
            continue;
        }
        const QString name = begun.captured(1);
        QVERIFY2(!families.contains(name), qPrintable(name));
        families.insert(name);
        const auto typed = type.match(lines.value(++i));
        QCOMPARE(typed.captured(1), name);
        QCOMPARE(typed.captured(2) == QLatin1String("counter"),
                 name.endsWith(QLatin1String("_total")));
        QCOMPARE(sample.match(lines.value(i + 1)).captured(1), name);
    }
    for (const char *line :
         {"talvenhr_status_level 2", "talvenhr_export_lines{fate=\"taken\"} 11",
          "talvenhr_gate_exports_total{outcome=\"refused\"} 1",
          "talvenhr_gate_refusals_total{reason=\"limit:ended\"} 1",
          "talvenhr_pass_errors{code=\"1062\"} 1", "talvenhr_pass_changes{kind=\"waiting\"} 2",
          "talvenhr_pass_seconds 7", "talvenhr_terminal_queue_rows 12", "talvenhr_lost_people 0",
          "talvenhr_pass_is_forced 1", "talvenhr_last_export_refused 1"})
        QVERIFY2(lines.contains(QLatin1String(line)), line);
    QVERIFY(!lines.join(QLatin1Char(' ')).contains(QStringLiteral("last_success")));
}

/// Alerts and dashboard name no others.
void tst_Status::metrics_areThoseOfTheDocument()
{
    const GateFolder folder;
    GateRecord record = rehearsed(folder.record(5, "a"), 4);
    record.findings = {{QStringLiteral("W-CELL-DATE"), Finding::Warning, 3}};
    folder.keep(record);
    folder.keep(refused(folder.record(4, "b", GateRecord::Refused)));
    keepPass(folder, 2, toldError());
    folder.write(QStringLiteral("site/ron.data"), "c", 1);
    Status status = folder.status();
    record.fileTime = status.now;
    status.records.append(record);
    status.database = DatabaseStatus {true, 12, {}};
    status.lossesAreKnown = true;
    status.pass.rows.insert(QStringLiteral("people"), 1);
    QStringList rows = documentRows(metricsText(status));
    status.pass.summary = KindCounts();
    rows += documentRows(metricsText(status));
    rows.removeDuplicates();
    rows.sort();
    const QString page = sourceFile("docs/status.md");
    QStringList told = page.split(QLatin1Char('\n')).filter(QStringLiteral("| `talvenhr_"));
    told.sort();
    QCOMPARE(told, rows);
    for (const char *name : {"alerts.yml", "alerts_test.yml", "dashboard.json"}) {
        const QString text = sourceFile("examples/monitoring/" + QByteArray(name));
        auto used = QRegularExpression(QStringLiteral("talvenhr_[a-z_]+")).globalMatch(text);
        QVERIFY(used.hasNext());
        while (used.hasNext()) {
            const QString metric = QStringLiteral("| `%1` |").arg(used.next().captured());
            QVERIFY2(page.contains(metric), qPrintable(metric));
        }
    }
}

void tst_Status::metrics_areForEverybodyToRead()
{
    const GateFolder folder;
    const QString path = folder.path(QStringLiteral("talvenhr.prom"));
    QVERIFY(!writeMetrics(folder.status(), path));
    QVERIFY(QFile::permissions(path) & QFileDevice::ReadOther);
    QVERIFY(!(QFile::permissions(path) & QFileDevice::WriteOther));
    QCOMPARE(folder.read(QStringLiteral("talvenhr.prom")), metricsText(folder.status()));
    QVERIFY(writeMetrics(folder.status(), folder.path(QStringLiteral("no/folder"))));
}

void tst_Status::durations_haveTwoPartsAtMost()
{
    QCOMPARE(durationText(59), QStringLiteral("59 s"));
    QCOMPARE(durationText(3599), QStringLiteral("59 min"));
    QCOMPARE(durationText(3661), QStringLiteral("1 h 1 min"));
    QCOMPARE(durationText(48 * 3600), QStringLiteral("2 days"));
    QCOMPARE(ageText(GateFolder::now(), GateFolder::now().addSecs(-5)), QStringLiteral("0 s"));
}

QTEST_GUILESS_MAIN(tst_Status)
#include "tst_status.moc"
