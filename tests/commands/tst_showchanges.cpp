// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run --show-changes`: the rows that each pass changed.
#include "host/server/privateserver.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"
#include "support/eventlog.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

/// The lines of one person, or of nobody, in one pass; the moments of the run read NOW.
QStringList linesOf(const QString &output, const QString &pass, const QString &person)
{
    const QString ofPass = output.section(pass, 1).section(QStringLiteral("\nPass"), 0, 0);
    QString ofPerson = ofPass.section(QLatin1Char('\n') + person + QLatin1Char('\n'), 1)
                           .section(QStringLiteral("\n\n"), 0, 0);
    ofPerson.replace(
        QRegularExpression(QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d")),
        QStringLiteral("NOW"));
    return ofPerson.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class tst_ShowChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachPass_showsWhatItChanged();
    void changesGoToStandardOutputOnly();
    void withoutTheOption_nothingIsShown();
    void missingTable_endsTheRunBeforeAnyPass();
    void missingRight_isTold();

private:
    QStringList options(const QStringList &others) const
    {
        return site.runOptions(QStringList {QStringLiteral("--private-db"), databasePath()}
                               + others);
    }
    QString databasePath() const { return site.path(QStringLiteral("db")); }
    void sql(const char *statement) const;

    Site site;
};

void tst_ShowChanges::sql(const char *statement) const
{
    TalvenhrProcess client({QStringLiteral("sql"), QStringLiteral("--private-db"), databasePath(),
                            QStringLiteral("--execute"), QString::fromUtf8(statement)});
    QCOMPARE(client.finish(), 0);
}

void tst_ShowChanges::eachPass_showsWhatItChanged()
{
    TalvenhrProcess program(options({QStringLiteral("--passes"), QStringLiteral("2"),
                                     QStringLiteral("--force"), QStringLiteral("--show-changes")}));
    QCOMPARE(program.finish(), 0);
    const QString output = program.output();

    const QString first = QStringLiteral("Pass 1: ");
    QVERIFY2(QRegularExpression(QStringLiteral("\\APass 1: \\d\\d rows changed\n\n1001\\.1 "))
                 .match(output)
                 .hasMatch(),
             qPrintable(output));
    QVERIFY(linesOf(output, first, QStringLiteral("1001.1 Ľubomír Novák"))
                .contains(QStringLiteral("  people: surname 'Krížik' -> 'Novák'")));
    QCOMPARE(linesOf(output, first, QStringLiteral("7002.1 Jiří Novák")),
             lines({"  + people uid 15, pid 70021, pamId '7002.1', name 'Jiří', surname 'Novák', "
                    "begin 2020-01-01,",
                    "      type 1, status 1, did 1, bid 1 (100 Riaditeľstvo), calendarID 1, "
                    "lastCalc 0, calc 0,",
                    "      created NOW", "  + people_pam id 1",
                    "  + brape bid 1 (100 Riaditeľstvo), since NOW",
                    "  + people_term tid 1 (Vrátnica)", "  + admins_people aid 1 (1001), request 0",
                    "  + groups_plan since 202401, gid 11 (Kancelárie – pružný čas)",
                    "  + term_sync id 3, tid 1 (Vrátnica), type 'I', ref 'people_term', created "
                    "NOW,",
                    "      flags 2"}));
    // The force variable is cleared after the pass's last line, yet belongs to it.
    QCOMPARE(linesOf(output, first, QStringLiteral("nobody")),
             lines({"  term tid 1 (Vrátnica): syn 0 -> 2",
                    "  vars name 'OQS.THRWorker.forceSync': value '1' -> '0'",
                    "  vars name 'exportPam.1.selPeople': value gained 70011, 70021"}));

    // Who was new gets the leave.
    const QString second = QStringLiteral("\nPass 2: 2 rows changed\n");
    QVERIFY2(output.contains(second), qPrintable(output));
    const QStringList leave = linesOf(output, second, QStringLiteral("7001.1 Dáša Novák"));
    QCOMPARE(leave.size(), 1);
    QVERIFY2(leave.first().startsWith(QStringLiteral("  + funds_move fid 2 (Dovolenka), day ")),
             qPrintable(leave.first()));
}

void tst_ShowChanges::changesGoToStandardOutputOnly()
{
    TalvenhrProcess program(options({QStringLiteral("--once"), QStringLiteral("--show-changes")}));
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.output().startsWith(QStringLiteral("Pass 1: ")));
    QCOMPARE(program.linesWith(QStringLiteral("changed")), QStringList());
    const QStringList outputLines = program.output().split(QLatin1Char('\n'));
    for (const QString &line : outputLines)
        QVERIFY2(line.size() <= 100, qPrintable(line));
}

void tst_ShowChanges::withoutTheOption_nothingIsShown()
{
    TalvenhrProcess program(options({QStringLiteral("--once")}));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.output(), QString());
}

void tst_ShowChanges::missingTable_endsTheRunBeforeAnyPass()
{
    sql("RENAME TABLE people_pam TO hidden");
    TalvenhrProcess program(options({QStringLiteral("--once"), QStringLiteral("--show-changes")}));
    QCOMPARE(program.finish(), 3);
    QCOMPARE(program.lastLine(),
             QStringLiteral("talvenhr: changes cannot be shown: table 'people_pam' of database "
                            "'attendance' cannot be read: Table 'attendance.people_pam' doesn't "
                            "exist"));
    QCOMPARE(program.linesWith(QStringLiteral("synchronization")), QStringList());
    sql("RENAME TABLE hidden TO people_pam");
}

/// On a database of one's own the run's user reads the changes, too.
void tst_ShowChanges::missingRight_isTold()
{
    PrivateServer server(databasePath());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    const QStringList connection {QStringLiteral("--socket"), server.socketPath(),
                                  QStringLiteral("--once"), QStringLiteral("--show-changes")};
    TalvenhrProcess refused(site.runOptions(connection));
    QCOMPARE(refused.finish(), 3);
    QVERIFY2(refused.lastLine().contains(
                 QStringLiteral("table 'term_sync' of database 'attendance' cannot be read: "
                                "SELECT command denied to user 'talvenhr'@'localhost'")),
             qPrintable(refused.lastLine()));
    sql("GRANT SELECT ON term_sync TO 'talvenhr'@'localhost'");
    TalvenhrProcess granted(site.runOptions(connection));
    QCOMPARE(granted.finish(), 0);
    QVERIFY(granted.output().startsWith(QStringLiteral("Pass 1: ")));
}

QTEST_GUILESS_MAIN(tst_ShowChanges)
#include "tst_showchanges.moc"
