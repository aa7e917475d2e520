// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the export file must come to, worked out without the code that is fuzzed.
#pragma once

#include "export/exportline.h"

#include <QByteArray>
#include <QStringList>
#include <QVector>

/// One record, and which of its cells Qt reads more kindly than can be told here.
struct ModelledRecord
{
    EmployeeRecord record;
    bool balanceIsPlain = true; ///< written in digits that can be worked out here
    bool datesArePlain = true; ///< no sign or blank stands for a digit in a date
};

/// A line that is not blank.
struct ModelledLine
{
    int number = 0; ///< among all lines, from 1
    int cellCount = 0;
    LineFate fate = LineFate::WrongCount;
    ModelledRecord record;
};

/// The lines of an export file, and the log lines that the reading of it owes.
struct ExportModel
{
    QVector<ModelledLine> lines;
    int lineCount = 0; ///< blank ones, too
    QVector<ModelledRecord> records; ///< of the lines that are taken
    QStringList messages;
};

/// Splits lines and cells and converts the cells on its own; only the decoding of UTF-8 is Qt's.
/// The file lies at the path, cannot be removed, and is to be removed or not. The time zone must
/// be one without changes of the clock.
ExportModel modelOfExport(const QByteArray &bytes, const QString &path, int logLevel,
                          bool deleteFile);

/// Equal in all fields that can be worked out.
bool agree(const EmployeeRecord &read, const ModelledRecord &modelled);
