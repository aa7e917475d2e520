// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of lines, of people and of the whole file of an export.
#pragma once

#include "host/company/exportsheet.h"
#include "host/company/hurt.h"

/// What a damage has left, and where it hurts.
struct HurtText
{
    QByteArray text;
    QVector<Hurt> hurts;
};

/// A flaw of a line or more, or of the file.
struct SheetDamage
{
    const char *name;
    const char *meaning;
    const char *finding; ///< the code that it is owed; empty for none
    HurtText (*change)(ExportSheet *sheet, Draw *draw);
};

/// In the order in which they are shown: of the form of lines, of people, and of the file.
const QVector<SheetDamage> &lineDamages();
const QVector<SheetDamage> &personDamages();
const QVector<SheetDamage> &fileDamages();
