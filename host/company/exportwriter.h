// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The export of a company, as its HR system writes it.
#pragma once

#include "host/company/company.h"

#include <QByteArray>

/// The columns, counted from 1.
struct ExportColumn
{
    enum : int {
        Number = 1,
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

/// The names of the 18 columns, without a line end.
QByteArray headerLine();

/// One relation as 18 cells in UTF-8, without a line end. Texts stand as they are: the form knows
/// no way to quote a separator.
QByteArray exportLine(const Employment &employment, const Branch *branch);

/// The whole file: the header, and a line for each relation that is still in it.
QByteArray exportText(const Company &company);
