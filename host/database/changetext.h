// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows and changes as lines for a reader.
#pragma once

#include "host/database/difference.h"

/// The changes of one person, or of nobody.
struct PersonChanges
{
    QString person; ///< "1003.1 Jiří Dvořáček", "uid 17" or "nobody"
    QStringList lines;
};

/// A cell for a reader: a moment in local time, a midnight as its date, "NULL", a number, a text as
/// it is. A moment that is 0 stays 0, for it means none.
QString cellText(const TouchedTable &table, const QString &column, const QVariant &value);

/// The same as it stands in a line: a text between apostrophes, an id with the name that belongs to
/// it.
QString cellText(const TouchedTable &table, const QString &column, const QVariant &value,
                 const IdNames &names);

/// Changes in the order of difference(), as lines that no text in the database can break:
///
///     + TABLE COLUMN VALUE, COLUMN VALUE      a row that has come
///     - TABLE COLUMN VALUE, COLUMN VALUE      a row that has gone
///     TABLE [KEY]: COLUMN VALUE -> VALUE      a cell of a row that is still there
///     TABLE KEY to VALUE, N rows: …           the same of neighbouring rows, as of days
///
/// Texts stand between apostrophes, and behind an id the name that belongs to it. Of a row that has
/// come or gone, empty cells and those that name the person are left out. Of a list of people that
/// a variable holds, a line says who was gained or lost.
QVector<PersonChanges> changeTexts(const QVector<Change> &changes, const IdNames &names);
