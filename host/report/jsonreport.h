// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A report for machines.
#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

struct Report;

/// Members of a JSON object in the given order, which QJsonObject would not keep.
using JsonMembers = QVector<QPair<QString, QByteArray>>;

/// A value of JSON: null, number, boolean, text, or a list or map of these.
QByteArray jsonValue(const QVariant &value);
/// An object in one line.
QByteArray jsonObject(const JsonMembers &members);

/// Takes the bytes of a report, part by part.
using ByteSink = std::function<void(const QByteArray &bytes)>;

/// The report as one object in one line: its format, its figures in the open, and a member for each
/// section with a name, which is an object of figures or an array of rows.
void writeJsonReport(const Report &report, const ByteSink &sink);
/// The same as a whole.
QByteArray jsonReport(const Report &report);
