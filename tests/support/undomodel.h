// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a database holds once a pass is taken back, worked out without any SQL.
#pragma once

#include "host/changes/changes.h"

#include <QMap>

/// Takes the changes back in memory, row by row, as people are told that it happens.
class UndoModel
{
public:
    /// `now`: what the database holds just before; `moment`: when it is taken back, `today` the
    /// first second of that day, and its month.
    UndoModel(const Snapshot &now, qint64 moment, qint64 today, int month);

    void takeBack(const Changes &changes);

    /// All rows of all tables, a line each; the ids of notices are left out.
    QStringList lines() const;
    /// Steps that were left alone, and all.
    int leftAlone() const { return left; }
    int steps() const { return all; }

    static QStringList lines(const Snapshot &snapshot);

private:
    using Rows = QMap<QString, TableRow>;

    struct Table
    {
        const TouchedTable *table = nullptr;
        QStringList columns;
        Rows rows;
    };

    static QVector<Table> tablesOf(const Snapshot &snapshot);
    static QStringList linesOf(const QVector<Table> &tables);
    Table &table(const QString &name);
    QString keyOf(const Change &change) const;
    bool isAsLeft(const Change &change);
    void takePersonBack(const ChangedPerson &person, const QVector<Change> &others);
    void step(bool isTaken);
    void revert(const Change &change);
    void giveMarkBack(const Change &change, qlonglong uid);
    void takeOffTerminal(const Change &change, qlonglong uid);
    void takeOffLists(const ChangedPerson &person, const QVector<Change> &others);
    void takeLeaveBack(const Change &change);
    void putRowBack(const Change &change);
    void endPerson(qlonglong uid);
    bool isReferredTo(qlonglong uid);
    void tellTerminals(qlonglong uid);
    void queue(qlonglong tid, const char *type, const char *ref, qlonglong uid);
    TableRow &rowOfTerminal(qlonglong tid);
    QVariant &cell(Table &of, TableRow &row, const char *column);

    QVector<Table> tables;
    const qint64 moment;
    const qint64 today;
    const int month;
    bool isPersonLeft = false; ///< somebody new whose own row was changed since
    int left = 0;
    int all = 0;
    int queued = 0;
};
