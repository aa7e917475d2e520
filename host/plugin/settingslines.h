// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines of TalvenHR.ini as they stand there, before anything has been made of them.
#pragma once

#include <QString>
#include <QVector>

/// A line KEY=VALUE.
struct SettingsLine
{
    QString text; ///< the whole line
    QString key; ///< with its group in front: MES/21; none for [General]
    QString value; ///< what stands behind the "="
    QString uncommented; ///< the value up to the first semicolon outside quotes
    bool hasComment = false; ///< a semicolon outside quotes ends the value
    bool hasQuotesInside = false; ///< quotes without a backslash that do not enclose the value
    bool hasLostBackslash = false; ///< a backslash that escapes nothing
};

/// Whether a line begins a group. `prefix` gets what then stands in front of its keys: the name and
/// a "/", nothing for [General] in whatever letters.
bool beginsGroup(const QString &line, QString *prefix);

/// The lines of an INI file, in their order.
QVector<SettingsLine> settingsLines(const QByteArray &content);

/// A line that is read as this key and this value. The key is without its group.
QString settingsLine(const QString &key, const QString &value);
/// A line whose value is read as it stands, commas and semicolons included.
QString quotedSettingsLine(const QString &key, const QString &rawValue);
/// A line whose backslashes are read as such.
QString doubledSettingsLine(const QString &key, const QString &rawValue);
