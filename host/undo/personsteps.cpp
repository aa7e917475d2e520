// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The steps that take back what a pass has done to one person.
#include "host/undo/personsteps.h"

#include "host/base/oneline.h"
#include "host/changes/changestext.h"
#include "host/changes/personkinds.h"
#include "host/copy/sqlnames.h"
#include "host/database/changetext.h"
#include "host/undo/rowguard.h"
#include "host/undo/sqlvalue.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PersonSteps)
};

bool isOf(const Change &change, const char *table)
{
    return change.table->name == QLatin1String(table);
}

qlonglong mark(const Change &change, const TableRow &row)
{
    return cellOf(change, row, QStringLiteral("request")).toLongLong();
}

/// Makes the steps of one person.
class PersonSteps
{
public:
    explicit PersonSteps(const PersonUndo &personUndo) :
        undo(personUndo),
        added(addedRow(undo.person)),
        origin {undo.isRehearsed, added != nullptr}
    { }

    QVector<UndoStep> make()
    {
        // Marks go before others come back: there is one supervisor at a time.
        forEachRow("admins_people", [this](const Change &change) {
            if (!getsMarkBack(change))
                takeBack(change, administratorText(change));
        });
        forEachRow("admins_people", [this](const Change &change) {
            if (getsMarkBack(change))
                giveMarkBack(change);
        });
        forEachRow("people_term", [this](const Change &change) { takeOffTerminal(change); });
        forEachRow("brape", [this](const Change &change) {
            takeBack(change, Text::tr("membership of branch %1").arg(named("bid", change)));
        });
        for (const char *table : {"groups_plan", "groups_month"})
            forEachRow(table,
                       [this](const Change &change) { takeBack(change, groupText(change)); });
        forEachRow("people_pam", [this](const Change &change) {
            takeBack(change, Text::tr("enrolment in PaM"));
        });
        for (const PamEntry &entry : undo.listed)
            takeOffList(entry);
        forEachRow("funds_move", [this](const Change &change) { takeLeaveBack(change); });
        forEachRow("people", [this](const Change &change) {
            if (added)
                endPerson();
            else
                putRowBack(change);
        });
        if (added && !steps.isEmpty())
            steps.first().statements.prepend({lockStatement(*added), UndoStatement::Beside});
        return steps;
    }

private:
    template <typename Use>
    void forEachRow(const char *table, Use use)
    {
        for (const Change &change : undo.person.rows) {
            // No pass takes a row away: where one is gone, that was somebody else.
            if (isOf(change, table) && !change.after.isEmpty()
                && isWanted(undo.selection, undo.person, change))
                use(change);
        }
    }

    /// What an id in the row stands for.
    QString named(const char *column, const Change &change) const
    {
        const QString name = QLatin1String(column);
        const qlonglong id = cellOf(change, change.after, name).toLongLong();
        const QString text = undo.names.value(name).value(id).simplified();
        return text.isEmpty() ? Text::tr("number %1").arg(id) : text;
    }

    QString administratorText(const Change &change) const
    {
        return mark(change, change.after) != mark(change, change.before)
            ? Text::tr("supervisor, administrator %1").arg(named("aid", change))
            : Text::tr("place under administrator %1").arg(named("aid", change));
    }

    QString groupText(const Change &change) const
    {
        return isOf(change, "groups_plan")
            ? Text::tr("group %1, planned from month %2 on")
                  .arg(named("gid", change),
                       cellOf(change, change.after, QStringLiteral("since")).toString())
            : Text::tr("group %1 of month %2")
                  .arg(named("gid", change),
                       cellOf(change, change.after, QStringLiteral("month")).toString());
    }

    void addStep(const Change &change, const QString &what,
                 const QVector<UndoStatement> &statements)
    {
        steps.append({undo.person.person, change.table->name, oneLine(what), statements});
    }

    /// The row goes if it has come, or gets what it held. Empty where there is nothing to do.
    QString reversal(const Change &change) const
    {
        const QString table = quotedName(change.table->name);
        if (change.before.isEmpty())
            return QStringLiteral("DELETE FROM %1 WHERE ").arg(table)
                + leftCondition(change, origin);
        const QStringList columns = restorableColumns(change);
        if (columns.isEmpty())
            return QString();
        return QStringLiteral("UPDATE %1 SET ").arg(table) + oldValues(change, columns)
            + QStringLiteral(" WHERE ") + leftCondition(change, origin);
    }

    void takeBack(const Change &change, const QString &what)
    {
        const QString statement = reversal(change);
        if (!statement.isEmpty())
            addStep(change, what, {{statement, UndoStatement::TakesBack}});
    }

    static bool getsMarkBack(const Change &change)
    {
        return !change.before.isEmpty() && mark(change, change.before) != 0
            && mark(change, change.after) == 0;
    }

    /// Unless somebody has named another supervisor since.
    void giveMarkBack(const Change &change)
    {
        QVector<UndoStatement> statements;
        if (!areMarksCounted)
            statements.append({QStringLiteral("SET @marked = (SELECT COUNT(*) FROM `admins_people` "
                                              "WHERE `uid` = %1 AND `request` <> 0)")
                                   .arg(uid()),
                               UndoStatement::Beside});
        areMarksCounted = true;
        statements.append(
            {reversal(change) + QStringLiteral(" AND @marked = 0"), UndoStatement::TakesBack});
        addStep(change,
                Text::tr("supervisor as before, administrator %1").arg(named("aid", change)),
                statements);
    }

    /// With the notice and the mark that the plugin's own repositories write for such a case.
    void takeOffTerminal(const Change &change)
    {
        if (!change.before.isEmpty())
            return;
        const QString tid = sqlValue(cellOf(change, change.after, QStringLiteral("tid")));
        addStep(change, Text::tr("place on terminal %1").arg(named("tid", change)),
                {{reversal(change), UndoStatement::TakesBack},
                 {QStringLiteral("SET @gone = ROW_COUNT()"), UndoStatement::Beside},
                 {QStringLiteral(
                      "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
                      "SELECT %1 tid, 'D' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, "
                      "UNIX_TIMESTAMP() created, 2 flags FROM people "
                      "WHERE status = 1 AND uid = %2 AND @gone > 0")
                      .arg(tid, uid()),
                  UndoStatement::Beside},
                 {QStringLiteral("UPDATE `term` SET syn = syn | 2 "
                                 "WHERE status = 1 AND tid = %1 AND @gone > 0")
                      .arg(tid),
                  UndoStatement::Beside}});
    }

    void takeOffList(const PamEntry &entry)
    {
        QString statement
            = QStringLiteral("UPDATE `vars` SET `value` = TRIM(BOTH ',' FROM REPLACE(CONCAT(',', "
                             "`value`, ','), ',%1,', ',')) WHERE `name` = %2 AND "
                             "FIND_IN_SET('%1', `value`)")
                  .arg(QString::number(entry.pid), sqlValue(entry.variable));
        if (added)
            statement += QStringLiteral(" AND @uid IS NOT NULL");
        UndoStep step {undo.person.person,
                       QStringLiteral("vars"),
                       oneLine(Text::tr("place in the list '%1'").arg(entry.variable)),
                       {{statement, UndoStatement::TakesBack}}};
        if (!entry.tidying.isEmpty())
            step.statements.append({entry.tidying, UndoStatement::Beside});
        steps.append(step);
    }

    /// On the day of the correction its row gets the value of before. Later a move of that day
    /// makes up for it, unless later corrections come to something: then the balance is that of
    /// another export, or was given back before.
    void takeLeaveBack(const Change &change)
    {
        const QString value = QStringLiteral("value");
        const QVariant now = cellOf(change, change.after, value);
        const QVariant was = change.before.isEmpty() ? QVariant(qlonglong(0))
                                                     : cellOf(change, change.before, value);
        const QString condition = leftCondition(change, origin);
        const QString day = sqlValue(cellOf(change, change.after, QStringLiteral("day")));
        const QString today = QStringLiteral("midnightFromTs(UNIX_TIMESTAMP())");
        QStringList others;
        for (const char *column : {"uid", "fid", "type"}) {
            const QString name = QLatin1String(column);
            others.append(quotedName(name) + QStringLiteral(" = ")
                          + (origin.isNewPerson && name == QLatin1String("uid")
                                 ? uid()
                                 : sqlValue(cellOf(change, change.after, name))));
        }
        const QString what = Text::tr("leave correction of %1, %2")
                                 .arg(cellText(*change.table, QStringLiteral("day"),
                                               cellOf(change, change.after, QStringLiteral("day"))),
                                      daysText(now.toLongLong() - was.toLongLong()));
        addStep(change, what,
                {{QStringLiteral("UPDATE `funds_move` SET `value` = %1 WHERE %2 AND `day` >= %3")
                      .arg(sqlValue(was), condition, today),
                  UndoStatement::TakesBack},
                 {QStringLiteral("SET @later = (SELECT COALESCE(SUM(`value`), 0) FROM "
                                 "`funds_move` WHERE %1 AND `day` > %2)")
                      .arg(others.join(QStringLiteral(" AND ")), day),
                  UndoStatement::Beside},
                 {QStringLiteral(
                      "INSERT INTO `funds_move` (type, day, month, value, fid, uid) "
                      "SELECT 3, %1, monthFromTimestamp(UNIX_TIMESTAMP()), %2 - (%3), fid, uid "
                      "FROM `funds_move` was WHERE %4 AND `day` < %1 AND @later = 0 "
                      "ON DUPLICATE KEY UPDATE `value` = `funds_move`.`value` + VALUES(`value`)")
                      .arg(today, sqlValue(was), sqlValue(now), condition),
                  UndoStatement::TakesBack}});
    }

    /// In @uid, if the row is as the pass has left it; and nobody changes it from now on.
    QString lockStatement(const Change &change) const
    {
        return QStringLiteral("SET @uid = (SELECT `uid` FROM `people` WHERE %1 FOR UPDATE)")
            .arg(leftCondition(change, origin));
    }

    QString uid() const
    {
        return origin.isNewPerson ? QStringLiteral("@uid")
                                  : QString::number(undo.person.person.uid);
    }

    /// As the plugin tells all terminals that hold a person.
    static QVector<UndoStatement> notices()
    {
        return {{QStringLiteral(
                     "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
                     "SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, @uid ref_id, "
                     "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
                     "WHERE status = 1 AND uid = @uid AND (flags & 2)"),
                 UndoStatement::Beside},
                {QStringLiteral("CALL updateTermsSync(@uid, 2)"), UndoStatement::Beside}};
    }

    void putRowBack(const Change &change)
    {
        QStringList columns;
        const QStringList restorable = restorableColumns(change);
        std::copy_if(restorable.cbegin(), restorable.cend(), std::back_inserter(columns),
                     [this](const QString &column) {
                         return isColumnWanted(undo.selection, undo.person, column);
                     });
        if (columns.isEmpty())
            return;
        addStep(change, Text::tr("own row: %1").arg(columns.join(QStringLiteral(", "))),
                QVector<UndoStatement> {
                    {lockStatement(change), UndoStatement::Beside},
                    {QStringLiteral("UPDATE `people` SET %1, `edited` = UNIX_TIMESTAMP() "
                                    "WHERE `uid` = @uid")
                         .arg(oldValues(change, columns)),
                     UndoStatement::TakesBack}}
                    + notices());
    }

    /// Whatever of their rows stays, as one that somebody has changed, refers to them, too.
    void endPerson()
    {
        const QString inactive = QStringLiteral("UPDATE `people` SET `status` = 0, "
                                                "`edited` = UNIX_TIMESTAMP() WHERE `uid` = @uid");
        QVector<UndoStatement> statements;
        if (undo.canBeRemoved) {
            QStringList found {QStringLiteral("FALSE")};
            for (const PersonReference &reference : undo.references)
                found.append(QStringLiteral("EXISTS (SELECT 1 FROM %1 WHERE %2 = @uid)")
                                 .arg(quotedName(reference.table), quotedName(reference.column)));
            const QString any = QLatin1Char('(') + found.join(QStringLiteral(" OR "))
                + QLatin1Char(')');
            statements = {{inactive + QStringLiteral(" AND ") + any, UndoStatement::MakesInactive},
                          {QStringLiteral("DELETE FROM `people` WHERE `uid` = @uid AND NOT ") + any,
                           UndoStatement::Removes}};
        } else {
            statements = {{inactive, UndoStatement::MakesInactive}};
        }
        addStep(*added, Text::tr("added person"), statements + notices());
    }

    const PersonUndo &undo;
    const Change *const added;
    const RowOrigin origin;
    QVector<UndoStep> steps;
    bool areMarksCounted = false; ///< in @marked, before the first of them comes back
};

} // namespace

QVector<UndoStep> stepsOf(const PersonUndo &undo)
{
    return PersonSteps(undo).make();
}

const Change *addedRow(const ChangedPerson &person)
{
    for (const Change &change : person.rows) {
        if (change.table->isPeople() && change.before.isEmpty())
            return &change;
    }
    return nullptr;
}
