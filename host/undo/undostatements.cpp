// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Statements of an undo that do more than put a row back.
#include "host/undo/undostatements.h"

#include "host/copy/sqlnames.h"

QVector<UndoStatement> leaveStatements(const LeaveCorrection &correction, const QString &later)
{
    const QString today = QStringLiteral("midnightFromTs(UNIX_TIMESTAMP())");
    return {
        {QStringLiteral("UPDATE `funds_move` SET `value` = %1 WHERE %2 AND `day` >= %3")
             .arg(correction.was, correction.condition, today),
         UndoStatement::TakesBack},
        {QStringLiteral("SET @later = (%1)").arg(later), UndoStatement::Beside},
        {QStringLiteral("INSERT INTO `funds_move` (type, day, month, value, fid, uid) "
                        "SELECT 3, %1, monthFromTimestamp(UNIX_TIMESTAMP()), %2 - (%3), fid, uid "
                        "FROM `funds_move` was WHERE %4 AND `day` < %1 AND @later = 0 "
                        "ON DUPLICATE KEY UPDATE `value` = `funds_move`.`value` + VALUES(`value`)")
             .arg(today, correction.was, correction.now, correction.condition),
         UndoStatement::TakesBack}};
}

QVector<UndoStatement> terminalStatements(const QString &removal, const QString &tid,
                                          const QString &uid)
{
    return {
        {removal, UndoStatement::TakesBack},
        {QStringLiteral("SET @gone = ROW_COUNT()"), UndoStatement::Beside},
        {QStringLiteral("INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
                        "SELECT %1 tid, 'D' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, "
                        "UNIX_TIMESTAMP() created, 2 flags FROM people "
                        "WHERE status = 1 AND uid = %2 AND @gone > 0")
             .arg(tid, uid),
         UndoStatement::Beside},
        {QStringLiteral("UPDATE `term` SET syn = syn | 2 "
                        "WHERE status = 1 AND tid = %1 AND @gone > 0")
             .arg(tid),
         UndoStatement::Beside}};
}

QVector<UndoStatement> noticeStatements()
{
    return {
        {QStringLiteral("INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
                        "SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, @uid ref_id, "
                        "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
                        "WHERE status = 1 AND uid = @uid AND (flags & 2)"),
         UndoStatement::Beside},
        {QStringLiteral("CALL updateTermsSync(@uid, 2)"), UndoStatement::Beside}};
}

QVector<UndoStatement> endStatements(const QVector<PersonReference> *references)
{
    const QString inactive = QStringLiteral("UPDATE `people` SET `status` = 0, "
                                            "`edited` = UNIX_TIMESTAMP() WHERE `uid` = @uid");
    if (!references)
        return {{inactive, UndoStatement::MakesInactive}};
    QStringList found {QStringLiteral("FALSE")};
    for (const PersonReference &reference : *references)
        found.append(QStringLiteral("EXISTS (SELECT 1 FROM %1 WHERE %2 = @uid)")
                         .arg(quotedName(reference.table), quotedName(reference.column)));
    const QString any = QLatin1Char('(') + found.join(QStringLiteral(" OR ")) + QLatin1Char(')');
    return {{inactive + QStringLiteral(" AND ") + any, UndoStatement::MakesInactive},
            {QStringLiteral("DELETE FROM `people` WHERE `uid` = @uid AND NOT ") + any,
             UndoStatement::Removes}};
}
