// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows that the attendance database holds of a company.
#include "host/company/companyrows.h"

#include "host/company/sqlrows.h"

QStringList structureRows(const Company &company)
{
    SqlRows masterGroups(QStringLiteral("mastergroups (mgid, name)"));
    SqlRows groups(QStringLiteral("groups (gid, parent, calendarID, name)"));
    for (const MasterGroup &group : company.masterGroups) {
        masterGroups.add({sqlNumber(group.id), sqlText(group.name)});
        for (const uint calendar : group.calendars)
            groups.add({sqlNumber(group.groupOf(calendar)), sqlNumber(group.id),
                        sqlNumber(calendar),
                        sqlText(QStringLiteral("%1 – %2").arg(group.name).arg(calendar))});
    }
    SqlRows branches(QStringLiteral("branches (bid, number, name, mgid)"));
    for (const Branch &branch : company.branches)
        branches.add({sqlNumber(branch.id), sqlNumberOrNull(branch.number), sqlText(branch.name),
                      sqlNumberOrNull(branch.masterGroup)});
    SqlRows terminals(QStringLiteral("term (tid, name, bid, status, flags)"));
    for (const Terminal &terminal : company.terminals) {
        const Branch *branch = company.branchOf(terminal.branch);
        terminals.add({sqlNumber(terminal.id),
                       sqlText(QStringLiteral("Terminál %1").arg(terminal.id)),
                       sqlNumberOrNull(branch ? branch->id : 0), sqlNumber(terminal.status),
                       sqlNumber(terminal.flags)});
    }
    SqlRows administrators(QStringLiteral("admins (aid, personalNumber, name)"));
    SqlRows ofBranches(QStringLiteral("bradm (bid, aid)"));
    for (const Administrator &administrator : company.administrators) {
        administrators.add({sqlNumber(administrator.id), sqlNumberOrNull(administrator.number),
                            sqlText(administrator.name)});
        for (const uint number_ : administrator.branches) {
            if (const Branch *branch = company.branchOf(number_))
                ofBranches.add({sqlNumber(branch->id), sqlNumber(administrator.id)});
        }
    }
    return masterGroups.take() + groups.take() + branches.take() + terminals.take()
        + administrators.take() + ofBranches.take()
        + QStringList {
            QStringLiteral("INSERT INTO funds (fid, iid, unit, name) VALUES "
                           "(1, 1, 1, 'Nadčasy'), (2, 3, 2, 'Dovolenka'), "
                           "(3, 3, 1, 'Dovolenka v hodinách')"),
            QStringLiteral("INSERT INTO vars (name, value) VALUES "
                           "('OQS.THRWorker.forceSync', '0'), "
                           "('exportPam.1.active', '1'), ('exportPam.1.selPeople', '')")};
}

QStringList nightStatements(const QString &today)
{
    const auto daysBefore = [&](int count) {
        return QStringLiteral("UNIX_TIMESTAMP(FROM_UNIXTIME(%1) - INTERVAL %2 DAY)")
            .arg(today)
            .arg(count);
    };
    return {QStringLiteral("UPDATE people SET status = 0 WHERE end < %1")
                .arg(daysBefore(daysInExportAfterTheEnd)),
            QStringLiteral("UPDATE atten SET ok = 1 WHERE ok < 0"),
            QStringLiteral("UPDATE people SET lastCalc = %1 WHERE status = 1 AND lastCalc < %1")
                .arg(daysBefore(1)),
            QStringLiteral("INSERT IGNORE INTO atten (uid, `date`, ok) SELECT uid, %1, 1 "
                           "FROM people WHERE status = 1 AND (end IS NULL OR end > %1)")
                .arg(today)};
}

QByteArray loadingScript(const QStringList &statements)
{
    return "SET NAMES utf8mb4;\nSET unique_checks = 0, foreign_key_checks = 0;\nBEGIN;\n"
        + statements.join(QStringLiteral(";\n")).toUtf8() + ";\nCOMMIT;\n";
}
