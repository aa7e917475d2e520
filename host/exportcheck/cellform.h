// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the columns of an export hold.
#pragma once

#include <QString>

#include <array>

struct ExportLine;

/// The columns, counted from 0.
struct ExportCell
{
    enum : int {
        Number,
        Ordinal,
        Title,
        Name,
        Surname,
        TitleAfter,
        Phone,
        Begin,
        End,
        BranchNumber,
        BranchText,
        Calendar,
        CalendarSince,
        Type,
        RelationState,
        State,
        Leave,
        Supervisor,
    };
};

enum class CellKind {
    Text,
    Number, ///< 32 bits without a sign
    Short, ///< 16 bits of such a number
    Balance,
    Date,
};

/// The name of a column, counted from 0.
const QString &exportColumn(int column);

/// By column, counted from 0.
CellKind cellKind(int column);
bool isTextColumn(int column);

/// The cells of the line are the names of the columns.
bool isHeader(const ExportLine &line);

/// The cells of the line, all words, look like names of columns, though not like ours.
bool looksLikeHeader(const ExportLine &line);
/// The first cell of such a line that is named otherwise.
QString headerFault(const ExportLine &line);

/// The cell has the form that its column asks for; an empty one has it too.
bool fitsColumn(const QStringRef &cell, int column);

/// Digits only, at most nine, without a zero in front: such a number is read as it stands there.
bool isPlainNumber(const QStringRef &cell);
