// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who may do what with a file.
#pragma once

#include <QFile>
#include <QString>

/// Every user of the machine may read or write there: the file says so, and all folders above let
/// everybody through.
bool everybodyMay(const QString &path, QFile::Permission permission);

/// A folder for everybody's files, where nobody may remove those of others, such as /tmp.
bool isForEverybody(const QString &folder);

/// The user of this process, by name or, without one, by number.
QString userName();
