// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass without any one of the rights that the plugin's user is granted.
#include "support/faults/faultround.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace {

/// What a pass cannot do without a right of database/grants/plugin.sql: the ids of the calls that
/// fail. A right that is not here is for other users of the library.
struct Need
{
    const char *right;
    const char *calls;
};

// An upsert takes UPDATE on every column that it inserts; those that it only sets in a row which is
// there already are not asked for.
const char inserts[] = "A.insert C.insert";
const char insertsAndUpdate[] = "A.insert C.insert B.update";
const char marks[] = "A.planMarked B.planMarked B.marked";
const char terminals[] = "31.people 32.people 33.people";
const char plans[] = "A.planned B.planned";
const char months[] = "A.months B.months";
const char pamRows[] = "A.pamRow C.pamRow";

const Need needs[] = {
    // Without the people nothing is done at all.
    {"SELECT ON people", "people"},
    {"SELECT ON branches", "people"},
    {"INSERT ON people", inserts},
    {"UPDATE (pid) ON people", inserts},
    {"UPDATE (pamId) ON people", insertsAndUpdate},
    {"UPDATE (title) ON people", insertsAndUpdate},
    {"UPDATE (name) ON people", insertsAndUpdate},
    {"UPDATE (surname) ON people", insertsAndUpdate},
    {"UPDATE (title2) ON people", insertsAndUpdate},
    {"UPDATE (phone) ON people", insertsAndUpdate},
    {"UPDATE (begin) ON people", insertsAndUpdate},
    {"UPDATE (end) ON people", insertsAndUpdate},
    {"UPDATE (rsBegin) ON people", insertsAndUpdate},
    {"UPDATE (rsEnd) ON people", insertsAndUpdate},
    {"UPDATE (rsText) ON people", insertsAndUpdate},
    {"UPDATE (type) ON people", insertsAndUpdate},
    {"UPDATE (did) ON people", insertsAndUpdate},
    {"UPDATE (bid) ON people", insertsAndUpdate},
    {"UPDATE (calendarID) ON people", insertsAndUpdate},
    {"UPDATE (edited) ON people", "B.update"},
    {"UPDATE (created) ON people", inserts},
    {"UPDATE (editor) ON people", "B.update"},
    {"UPDATE (lastCalc) ON people", "B.update A.planMarked B.planMarked B.marked"},
    {"UPDATE (calc) ON people", marks},
    {"SELECT ON people_pam", pamRows},
    {"INSERT ON people_pam", pamRows},
    {"UPDATE ON people_pam", pamRows},
    {"SELECT ON mastergroups", "A.group B.group"},
    {"SELECT ON groups", "A.group B.group"},
    {"SELECT ON brape", "A.member B.member 1.join 2.join"},
    {"INSERT ON brape", "1.join 2.join"},
    {"UPDATE ON brape", "1.join 2.join"},
    {"SELECT (aid) ON admins", "A.admin B.admin"},
    {"SELECT (personalNumber) ON admins", "A.admin B.admin"},
    {"SELECT ON bradm", "1.admins 2.admins"},
    {"SELECT ON admins_people", "A.reset B.reset 1.underAdmins"},
    {"INSERT ON admins_people", "A.set B.set 1.underAdmins"},
    {"UPDATE ON admins_people", "A.reset B.reset A.set B.set 1.underAdmins"},
    {"SELECT ON term", "B.news 1.terminals 2.terminals 31.mark 32.mark 33.mark"},
    {"UPDATE (syn) ON term", "31.mark 32.mark 33.mark"},
    {"SELECT ON people_term", "B.news 31.people 32.people 33.people"},
    {"INSERT ON people_term", terminals},
    {"UPDATE ON people_term", terminals},
    {"INSERT ON term_sync", "B.news 31.queue 32.queue 33.queue"},
    {"SELECT ON atten",
     "A.attendance B.attendance C.attendance B.open A.months B.months A.planReopened "
     "B.planReopened B.reopened"},
    {"UPDATE (ok) ON atten", "A.planReopened B.planReopened B.reopened"},
    {"SELECT ON groups_plan", "A.plan B.plan A.planned B.planned"},
    {"INSERT ON groups_plan", plans},
    {"UPDATE ON groups_plan", plans},
    {"SELECT ON groups_month", months},
    {"INSERT ON groups_month", months},
    {"UPDATE ON groups_month", months},
    {"SELECT ON funds", "fund"},
    {"SELECT ON funds_move", "A.move B.move C.move B.before B.corrections B.correction"},
    {"INSERT ON funds_move", "B.correction"},
    {"UPDATE ON funds_move", "B.correction"},
    {"SELECT ON vars", "force A.blocks C.blocks"},
    {"INSERT ON vars", "A.prepare C.prepare prepare"},
    {"UPDATE ON vars", "A.prepare C.prepare prepare"},
    {"EXECUTE ON FUNCTION midnightFromTs", "A.move B.move C.move B.open B.corrections"},
    {"EXECUTE ON FUNCTION monthFromTimestamp", "B.correction A.months B.months"},
    {"EXECUTE ON FUNCTION getCurrentGid", months},
    {"EXECUTE ON PROCEDURE updateTermsSync", "B.call"},
};

QString grants()
{
    QFile file(QStringLiteral(TALVENHR_DATABASE_FOLDER) + QStringLiteral("/grants/plugin.sql"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    QString text = QString::fromUtf8(file.readAll());
    return text.remove(QRegularExpression(QStringLiteral("--[^\n]*"))).simplified();
}

/// Each right of the file by itself, such as "UPDATE (pid) ON people".
QStringList singleRights()
{
    QStringList rights;
    auto grant = QRegularExpression(QStringLiteral("GRANT (.*?) ON ([^;]*?) TO "))
                     .globalMatch(grants());
    while (grant.hasNext()) {
        const QRegularExpressionMatch one = grant.next();
        const QString object = QStringLiteral(" ON ") + one.captured(2);
        auto privilege = QRegularExpression(QStringLiteral("([A-Z ]*[A-Z])(?: \\(([^)]*)\\))?"))
                             .globalMatch(one.captured(1));
        while (privilege.hasNext()) {
            const QRegularExpressionMatch match = privilege.next();
            const QString name = match.captured(1).trimmed();
            if (match.captured(2).isEmpty()) {
                rights.append(name + object);
                continue;
            }
            const QStringList columns = match.captured(2).split(QStringLiteral(", "));
            for (const QString &column : columns)
                rights.append(name + QStringLiteral(" (%1)").arg(column) + object);
        }
    }
    return rights;
}

} // namespace

class tst_MissingRights : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void needs_areGranted();
    void rightTakenAway_data();
    void rightTakenAway();
};

/// Nothing of the table is idle, and the file was read to its end.
void tst_MissingRights::needs_areGranted()
{
    const QStringList rights = singleRights();
    for (const Need &need : needs)
        QVERIFY2(rights.contains(QString::fromLatin1(need.right)), need.right);
    QCOMPARE(rights.first(), QStringLiteral("SELECT ON people"));
    QCOMPARE(rights.last(), QStringLiteral("EXECUTE ON PROCEDURE updateTermsSync"));
    QCOMPARE(rights.filter(QRegularExpression(QStringLiteral("ON (people|branches)$"))).size(),
             24 + 21);
}

void tst_MissingRights::rightTakenAway_data()
{
    QTest::addColumn<QString>("right");
    QTest::addColumn<QStringList>("calls");
    const QStringList rights = singleRights();
    for (const QString &right : rights) {
        QString calls;
        for (const Need &need : needs) {
            if (right == QLatin1String(need.right))
                calls = QString::fromLatin1(need.calls);
        }
        QTest::newRow(qPrintable(right))
            << right << calls.split(QLatin1Char(' '), QString::SkipEmptyParts);
    }
}

void tst_MissingRights::rightTakenAway()
{
    QFETCH(QString, right);
    QFETCH(QStringList, calls);
    FaultRound round(*database);
    database->execute(QStringLiteral("REVOKE %1 FROM 'talvenhr'@'localhost'").arg(right));
    const Refusal refusal {QStringLiteral("(1142|1143|1370)"),
                           QStringLiteral("[A-Za-z]+ command denied to user "
                                          "'talvenhr'@'localhost' for (table|column|routine) .*")};
    round.comparePass(*undisturbed, only(calls), refusal, [&] {
        database->execute(QStringLiteral("GRANT %1 TO 'talvenhr'@'localhost'").arg(right));
    });
}

QTEST_GUILESS_MAIN(tst_MissingRights)
#include "tst_missingrights.moc"
