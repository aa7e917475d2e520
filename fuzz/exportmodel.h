// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the export file must come to, worked out without the code that is fuzzed.
#pragma once

#include "export/employeerecord.h"

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

/// The records of an export file, and the log lines that the reading of it owes.
struct ExportModel
{
    QVector<ModelledRecord> records;
    QStringList messages;
};

/// Splits lines and cells and converts the cells on its own; only the decoding of UTF-8 is Qt's.
/// The file lies at the path, cannot be removed, and is to be removed or not. The time zone must
/// be one without changes of the clock.
ExportModel modelOfExport(const QByteArray &bytes, const QString &path, int logLevel,
                          bool deleteFile);

/// Equal in all fields that can be worked out.
bool agree(const EmployeeRecord &read, const ModelledRecord &modelled);
