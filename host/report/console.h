// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Standard output.
#pragma once

#include <QByteArray>
#include <QString>

struct Report;

enum class ReportForm {
    Text,
    Json,
};

/// Writes the report to standard output: as text no wider than the terminal, or than 100 columns
/// where there is none, or as one JSON document with a line end.
void printReport(const Report &report, ReportForm form);

/// The columns of a line on standard output: those of the terminal, or 100.
int outputWidth();
/// Standard output is a terminal, and NO_COLOR is not set.
bool outputTakesColour();

/// Why something that was printed has not arrived, in the system's words; empty if all has.
QString outputTrouble();

/// Takes the parts of a document to standard output. The last one is followed by flushOutput().
void printBytes(const QByteArray &bytes);
void flushOutput();

/// Writes a text to standard output as it is, and at once.
void printText(const QString &text);
