// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a page, with the commands that bring back what is lost.
#include "host/report/jsonreport.h"
#include "host/report/textreport.h"
#include "host/status/checkline.h"
#include "host/status/folderstatus.h"
#include "host/status/metrics.h"
#include "host/status/statusreport.h"
#include "host/status/statustexts.h"
#include "support/status/madestatus.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

class tst_StatusPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void page_fitsAScreen();
    void page_withoutNames();
    void recovery_takesTheNewestExport();
    void recovery_restartsWithTheExportInPlace();
    void recovery_settlesEachPassByItself();
    void newestExport_isToldUntilItIsLookedAt();
    void passOfTheServer_ranBetweenTwoMoments();
    void pass_tellsErrorsByTheirCodes();
    void doubts_standBesideWhatIsMissing();
    void recovery_leavesAloneWhatWasReleased();
    void document_showsWhatThePageTells();
    void durations_haveTwoPartsAtMost();
};

namespace {

QString pageOf(const Status &status)
{
    return textReport(statusPage(status, PersonalTexts::Shown), 200);
}

QStringList stepsOf(const Status &status)
{
    return recoverySteps(status, PersonalTexts::Shown);
}

} // namespace

void tst_StatusPage::page_fitsAScreen()
{
    const GateFolder folder;
    folder.keep(rehearsed(folder.record(30, "a"), 4));
    folder.keep(refused(folder.record(2, "b", GateRecord::Refused)));
    Status status = folder.status();
    status.database = DatabaseStatus {true, 12, {}};
    status.lossesAreKnown = true;
    for (int i = 0; i < 30; ++i) {
        status.lost.append(lostEva());
        Person person = lostEva().person;
        person.pamId = QStringLiteral("10%1.1").arg(i);
        // Several times, as statement after statement was refused.
        for (const NotDone::What what : {NotDone::Refused, NotDone::Group, NotDone::Refused})
            status.waiting.append({person, what, {}});
    }
    const QString page = textReport(statusPage(status, PersonalTexts::Shown), 100);
    QVERIFY2(page.count(QLatin1Char('\n')) < 70, qPrintable(page));
    QCOMPARE(page.count(QStringLiteral("… and 20 more; --all shows them")), 2);
    const QString all = textReport(statusPage(status, PersonalTexts::Shown, 1000), 100);
    QCOMPARE(all.count(QStringLiteral("1001.1 Eva Malá")), 30);
    QCOMPARE(all.count(QStringLiteral(".1 Eva Malá")), 60);
    QVERIFY(!all.contains(QStringLiteral("more;")));
    QVERIFY(page.contains(QStringLiteral("1001.1 Eva Malá")));
    QVERIFY(page.contains(QStringLiteral("with the next tick, for it is forced; by ")));
    QVERIFY(
        page.contains(QStringLiteral("(2 h 0 min ago), refused: ron.data, 1 bytes, lines: 12")));
}

void tst_StatusPage::page_withoutNames()
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
    for (const QString &text :
         {checkLine(status), QString::fromUtf8(metricsText(status)), verdictOf(concernsOf(status))})
        QVERIFY2(!text.contains(QStringLiteral("Mal")), qPrintable(text));
    // Whoever lets an export through may name people.
    GateRecord record = folder.record(3, "a");
    record.name = status.lost.constFirst().record;
    record.release = Release {QStringLiteral("anna"), QStringLiteral("Eva Malá leaves"), {}};
    status.records = {record};
    QVERIFY(recoveryText(status, PersonalTexts::Shown).contains(QStringLiteral("Eva Malá leaves")));
    const QString steps = recoveryText(status, PersonalTexts::Hidden)
        + QString::fromUtf8(jsonReport(statusDocument(status, PersonalTexts::Hidden)));
    QVERIFY2(!steps.contains(QStringLiteral("Mal")), qPrintable(steps));
    QVERIFY(steps.contains(QStringLiteral("was let through by anna")));
    QVERIFY(jsonReport(statusDocument(status, PersonalTexts::Shown)).contains("Eva Mal"));
}

void tst_StatusPage::recovery_takesTheNewestExport()
{
    const GateFolder folder;
    const GateRecord record = folder.record(3, "a");
    folder.keep(record);
    Status status = folder.status();
    QCOMPARE(stepsOf(status), QStringList());
    status.lost = {lostEva()};
    status.lost[0].record = record.name;
    QCOMPARE(stepsOf(status).value(1),
             QStringLiteral("# Let the HR system leave a new export, and copy it to again.data"));
    folder.write(QStringLiteral("archive/") + record.name + QStringLiteral(".export.gz"), "z");
    status.lost[0].remedies = {Remedy::Rejoin, Remedy::Replan, Remedy::ByHand};
    const QStringList steps = stepsOf(status);
    QCOMPARE(steps.size(), 8);
    QVERIFY(steps.constFirst().startsWith(
        QStringLiteral("# Was the pass over export %1 taken back, or").arg(record.name)));
    QVERIFY(
        steps.constFirst().endsWith(QStringLiteral("touch '%1/%2.settled'")
                                        .arg(folder.path(QStringLiteral("archive")), record.name)));
    QCOMPARE(steps.at(1),
             QStringLiteral("gzip -dc '%1/%2.export.gz' > 'again.data'")
                 .arg(folder.path(QStringLiteral("archive")), record.name));
    const QString client = QStringLiteral("mariadb attendance --execute \"");
    QVERIFY(steps.at(2).startsWith(client + QStringLiteral("DELETE brape"))
            && steps.at(2).endsWith(QStringLiteral("IN (7)\"")));
    QVERIFY(steps.at(3).startsWith(client + QStringLiteral("DELETE plan FROM groups_plan")));
    QVERIFY(steps.at(4).endsWith(QStringLiteral("--export 'again.data' &&")));
    QVERIFY(steps.at(5).endsWith(QStringLiteral("mv '%1.new' '%1' &&").arg(folder.place())));
    QVERIFY(steps.at(6).startsWith(client + QStringLiteral("INSERT INTO vars")));
    QVERIFY(steps.at(7).startsWith(QStringLiteral("# Enrol in PaM by hand")));

    status.lost[0].remedies = {Remedy::ByHand};
    QCOMPARE(stepsOf(status), QStringList({steps.constFirst(), steps.constLast()}));
}

/// A server that runs would read the export before its restart.
void tst_StatusPage::recovery_restartsWithTheExportInPlace()
{
    const GateFolder folder;
    const GateRecord record = folder.record(3, "a");
    folder.keep(record);
    folder.write(QStringLiteral("archive/") + record.name + QStringLiteral(".export.gz"), "z");
    Status status = folder.status();
    status.lost = {lostEva(), lostEva()};
    status.lost[0].record = status.lost[1].record = record.name;
    status.lost[1].remedies = {Remedy::Restart};
    QStringList steps = stepsOf(status);
    QCOMPARE(steps.size(), 6);
    QCOMPARE(steps.at(2), QStringLiteral("talvenhr rehearse --export 'again.data' &&"));
    QCOMPARE(steps.at(3), QStringLiteral("# Stop the attendance server"));
    QVERIFY(steps.at(4).startsWith(QStringLiteral("cp 'again.data' ")));
    QCOMPARE(steps.at(5), QStringLiteral("# Start the attendance server"));
    QVERIFY(steps.filter(QStringLiteral("forceSync")).isEmpty());

    status.sources.place.clear();
    QCOMPARE(stepsOf(status).at(4), QStringLiteral("# Put again.data where the plugin reads it"));
}

/// Each with a line of its own, so that one can be settled.
void tst_StatusPage::recovery_settlesEachPassByItself()
{
    const GateFolder folder;
    const GateRecord first = folder.record(30, "a");
    const GateRecord sound = folder.record(20, "b");
    const GateRecord second = folder.record(3, "c");
    for (const GateRecord &record : {first, sound, second})
        folder.keep(record);
    Status status = folder.status();
    status.lost = {lostEva(), lostEva(), lostEva()};
    status.lost[0].record = second.name;
    status.lost[1].record = status.lost[2].record = first.name;
    const QStringList settling = stepsOf(status).filter(QStringLiteral(".settled"));
    QCOMPARE(settling.size(), 2);
    QVERIFY(settling.at(0).endsWith(first.name + QStringLiteral(".settled'")));
    QVERIFY(settling.at(1).endsWith(second.name + QStringLiteral(".settled'")));
}

/// Nobody is lost yet, for nobody has looked.
void tst_StatusPage::newestExport_isToldUntilItIsLookedAt()
{
    const GateFolder folder;
    folder.keep(folder.record(0, "a"));
    folder.age(QStringLiteral("site"), 0);
    Status status = folder.status();
    status.lossesAreKnown = true;
    const QString warned = QStringLiteral("the newest export is not looked at yet");
    QVERIFY(pageOf(status).contains(warned));
    QVERIFY(jsonReport(statusDocument(status, PersonalTexts::Shown))
                .contains("\"newestIsJudged\":false"));
    folder.age(QStringLiteral("site"), 1);
    status = folder.status();
    status.lossesAreKnown = true;
    QVERIFY(!pageOf(status).contains(warned));
    QVERIFY(pageOf(status).contains(QStringLiteral("people: 0\n")));
    status.notJudged = 2;
    const QString page = pageOf(status).simplified();
    QVERIFY2(page.contains(QStringLiteral("exports that are not looked at, for the next one came "
                                          "within ten minutes of their pass: 2")),
             qPrintable(page));
}

void tst_StatusPage::passOfTheServer_ranBetweenTwoMoments()
{
    const GateFolder folder;
    folder.keep(rehearsed(folder.record(3, "a"), 4));
    folder.age(QStringLiteral("site"), 2);
    const Status status = folder.status();
    const QString told = QStringLiteral("between %1 and %2 (2 h 0 min ago), when the export was "
                                        "gone; as rehearsed: added 4, ")
                             .arg(momentText(status.pass.notBefore), momentText(status.pass.when));
    QVERIFY2(pageOf(status).contains(told), qPrintable(pageOf(status)));
}

void tst_StatusPage::pass_tellsErrorsByTheirCodes()
{
    const GateFolder folder;
    folder.keep(folder.record(5, "a"));
    keepPass(folder, 1, toldError());
    const Status status = folder.status();
    QVERIFY2(pageOf(status).contains(QStringLiteral("errors 1 (errors by code: 1062 1)")),
             qPrintable(pageOf(status)));
    QVERIFY(pageOf(status).contains(QStringLiteral("Incoming ")));
    Status working = status;
    working.gate.isAtWork = true;
    QVERIFY(pageOf(working).contains(QStringLiteral("files: 0; the gate is at work")));
}

void tst_StatusPage::doubts_standBesideWhatIsMissing()
{
    const GateFolder folder;
    Status status = folder.status();
    status.lost = {lostEva()};
    status.lost[0].uncertain = QStringList {QStringLiteral("Twice in the export.")};
    QVERIFY(pageOf(status).contains(QStringLiteral("added; not certain: Twice in the export.")));
}

/// One that was taken back is not brought in again.
void tst_StatusPage::recovery_leavesAloneWhatWasReleased()
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
    const QStringList steps = stepsOf(status);
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
    const QStringList more = stepsOf(status);
    QCOMPARE(more.at(0), steps.at(0));
    QVERIFY(more.at(1).endsWith(older.name + QStringLiteral(".settled'")));
    QCOMPARE(more.at(2), steps.at(1));
    QVERIFY(more.at(3).startsWith(QStringLiteral("# Let the HR system leave a new export")));
    QVERIFY(more.at(4).endsWith(QStringLiteral("IN (8)\"")));
}

void tst_StatusPage::document_showsWhatThePageTells()
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/docs/status.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const GateFolder folder;
    const GateRecord record = folder.record(3, "a");
    folder.keep(record);
    folder.write(QStringLiteral("archive/") + record.name + QStringLiteral(".export.gz"), "z");
    Status status = folder.status();
    status.database = DatabaseStatus {false, 12, {}};
    status.lossesAreKnown = true;
    status.lost = {lostEva()};
    status.lost[0].record = record.name;
    const Section figures = statusFigures(status);
    for (const Figure &figure : figures.figures)
        QVERIFY2(text.contains(QStringLiteral("\n%1 ").arg(figure.label)),
                 qPrintable(figure.label));
    // All that is no name, moment or path.
    static const QRegularExpression own(QStringLiteral("'[^'\\n]*'|\\b[0-9TZa-f-]{20,}\\b"));
    const auto plain = [](QString words) { return words.replace(own, QStringLiteral("X")); };
    const QString shown = plain(text);
    const QStringList steps = recoveryText(status, PersonalTexts::Shown)
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(steps.size(), 6);
    for (const QString &step : steps.mid(0, 4))
        QVERIFY2(shown.contains(plain(step)), qPrintable(plain(step)));
    QVERIFY(shown.contains(QStringLiteral("TALVENHR CRITICAL - ")
                           + concernsOf(status).constFirst().text
                           + QStringLiteral(" | export_age=")));
}

void tst_StatusPage::durations_haveTwoPartsAtMost()
{
    QCOMPARE(durationText(59), QStringLiteral("59 s"));
    QCOMPARE(durationText(3599), QStringLiteral("59 min"));
    QCOMPARE(durationText(3661), QStringLiteral("1 h 1 min"));
    QCOMPARE(durationText(48 * 3600), QStringLiteral("2 days"));
    QCOMPARE(ageText(GateFolder::now(), GateFolder::now().addSecs(-5)), QStringLiteral("0 s"));
}

QTEST_GUILESS_MAIN(tst_StatusPage)
#include "tst_statuspage.moc"
