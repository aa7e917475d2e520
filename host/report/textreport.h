// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A report for people.
#pragma once

#include <QString>
#include <QStringList>

struct Report;

/// The report in lines of at most `width` characters, but for words that are longer. Its texts may
/// hold anything: what would move a terminal's cursor shows in its visible form.
QString textReport(const Report &report, int width);

/// The words of the text in lines of at most `width` characters; the lines after the first begin
/// with `indent` blanks.
QString wrapped(const QString &text, int width, int indent);
/// The same of words that must not be broken, such as cells with blanks.
QString wrapped(const QStringList &words, int width, int indent);
