// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How old an export is.
#pragma once

#include <QDateTime>
#include <QString>

/// A file's name, and the time of its last writing.
struct DatedFile
{
    QString name;
    QDateTime time;
};

inline bool isOlder(const DatedFile &one, const DatedFile &other)
{
    return one.time < other.time;
}
