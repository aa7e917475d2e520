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
#include "host/undo/undostatements.h"

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

    /// Why rows of somebody new stay that are as the pass has left them.
    QString whereIsPerson() const
    {
        return added ? Text::tr("their own row is not as the pass has left it") : QString();
    }

    UndoStep &addStep(const Change &change, const QString &what,
                      const QVector<UndoStatement> &statements)
    {
        const QStringList columns = restorableColumns(change);
        LeftRow row {change.table,
                     placeCondition(change, origin, foundUid()),
                     change.before.isEmpty() ? QStringLiteral("FALSE")
                                             : backCondition(change, columns),
                     change.before.isEmpty(),
                     leftCells(change, origin, undo.names),
                     whereIsPerson()};
        steps.append(
            {undo.person.person, change.table->name, oneLine(what), QString(), statements, row});
        return steps.last();
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
        UndoStep &step = addStep(
            change, Text::tr("supervisor as before, administrator %1").arg(named("aid", change)),
            statements);
        if (!added)
            step.row.otherwise = Text::tr("there is another supervisor");
    }

    void takeOffTerminal(const Change &change)
    {
        if (!change.before.isEmpty())
            return;
        const QString tid = sqlValue(cellOf(change, change.after, QStringLiteral("tid")));
        addStep(change, Text::tr("place on terminal %1").arg(named("tid", change)),
                terminalStatements(reversal(change), tid, uid()));
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
        const QString isGone = QStringLiteral("COALESCE(FIND_IN_SET('%1', `value`), 0) = 0")
                                   .arg(QString::number(entry.pid));
        UndoStep step {undo.person.person,
                       QStringLiteral("vars"),
                       oneLine(Text::tr("place in the list '%1'").arg(entry.variable)),
                       QString(),
                       {{statement, UndoStatement::TakesBack}},
                       {entry.table,
                        QStringLiteral("`name` = ") + sqlValue(entry.variable),
                        isGone,
                        true,
                        {},
                        whereIsPerson()}};
        if (!entry.tidying.isEmpty())
            step.statements.append({entry.tidying, UndoStatement::Beside});
        steps.append(step);
    }

    void takeLeaveBack(const Change &change)
    {
        const auto cell = [&](const char *column) {
            return cellOf(change, change.after, QLatin1String(column));
        };
        const QVariant was = change.before.isEmpty()
            ? QVariant(qlonglong(0))
            : cellOf(change, change.before, QStringLiteral("value"));
        const LeaveCorrection correction {leftCondition(change, origin), sqlValue(cell("day")),
                                          sqlValue(was), sqlValue(cell("value"))};
        const auto laterOf = [&](const QString &who) {
            return QStringLiteral("SELECT COALESCE(SUM(`value`), 0) FROM `funds_move` WHERE `uid` "
                                  "= %1 AND `fid` = %2 AND `type` = %3 AND `day` > %4")
                .arg(who, sqlValue(cell("fid")), sqlValue(cell("type")), correction.day);
        };
        UndoStep &step = addStep(
            change,
            Text::tr("leave correction of %1, %2")
                .arg(cellText(*change.table, QStringLiteral("day"), cell("day")),
                     correctionText(cell("value").toLongLong() - was.toLongLong())),
            leaveStatements(correction, laterOf(uid())));
        // A correction that was taken back stays, with the value of before.
        step.row.hasCome = false;
        step.row.isBack = QStringLiteral("`value` <=> %1 OR (%2) = %1 - (%3)")
                              .arg(correction.was, laterOf(foundUid()), correction.now);
        if (!added)
            step.row.otherwise = Text::tr("leave was corrected again on a later day");
    }

    /// In @uid, if the row is as the pass has left it; and nobody changes it from now on.
    QString lockStatement(const Change &change) const
    {
        return QStringLiteral("SET @uid = (SELECT `uid` FROM `people` WHERE %1 FOR UPDATE)")
            .arg(leftCondition(change, origin));
    }

    /// Also where the row of somebody new is not as the pass has left it.
    QString foundUid() const
    {
        if (!origin.isNewPerson || !origin.isRehearsed)
            return QString::number(undo.person.person.uid);
        return QStringLiteral("(SELECT `uid` FROM `people` WHERE `pid` = %1 LIMIT 1)")
            .arg(sqlValue(cellOf(*added, added->after, QStringLiteral("pid"))));
    }

    QString uid() const
    {
        return origin.isNewPerson ? QStringLiteral("@uid")
                                  : QString::number(undo.person.person.uid);
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
        UndoStep &step = addStep(
            change, Text::tr("own row"),
            QVector<UndoStatement> {
                {lockStatement(change), UndoStatement::Beside},
                {QStringLiteral("UPDATE `people` SET %1, `edited` = UNIX_TIMESTAMP() "
                                "WHERE `uid` = @uid")
                     .arg(oldValues(change, columns)),
                 UndoStatement::TakesBack}}
                + noticeStatements());
        step.columns = columns.join(QStringLiteral(", "));
        step.row.isBack = backCondition(change, columns);
    }

    /// Whatever of their rows stays, as one that somebody has changed, refers to them, too.
    void endPerson()
    {
        UndoStep &step = addStep(*added, Text::tr("added person"),
                                 endStatements(undo.canBeRemoved ? &undo.references : nullptr)
                                     + noticeStatements());
        QStringList isInactive {QStringLiteral("`status` <=> 0")};
        for (const LeftCell &cell : qAsConst(step.row.cells)) {
            if (cell.column != QLatin1String("status"))
                isInactive.append(cell.condition);
        }
        step.row.isBack = isInactive.join(QStringLiteral(" AND "));
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
