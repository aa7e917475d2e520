// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The letters of a line, from its bytes.
#pragma once

#include "host/exportcheck/exportfinding.h"

#include <QByteArray>

struct ExportLine;

/// Appends what is wrong with the encoding of a line: of each cell if it was taken, else only what
/// keeps it from being read. `bytes` is the line as it stands in the file. Quick for plain letters.
void checkLetters(const QByteArray &bytes, const ExportLine &line, int lineNumber,
                  ExportFindings *findings);

/// The encoding in which bytes that are no UTF-8 make the best Czech or Slovak: "Windows-1250" or
/// "ISO-8859-2".
QString likelyEncoding(const QByteArray &bytes);
/// The bytes read in an encoding that likelyEncoding() gave.
QString decoded(const QByteArray &bytes, const QString &encoding);
