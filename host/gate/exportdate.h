// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How old an export is, by its name and its file.
#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

/// A file's name, and the time of its last writing. Folders in front of the name do not count.
struct DatedFile
{
    QString name;
    QDateTime time;
};

/// The date in a file's name: 20261122, 2026-11-22 or 22.11.2026, each with or without a time
/// behind it (-1240, -124002, T12.40.02, _12-40), of the years 2000 to 2099; the last one if there
/// are several. In local time; without a time it is midnight.
std::optional<QDateTime> dateInName(const QString &fileName);

/// The order of certain files by their age: by the dates in the names if all of them have one, with
/// the times there if all have these, too; then by the times of the files.
class AgeOrder
{
public:
    explicit AgeOrder(const QVector<DatedFile> &files);

    /// Both are of the files.
    bool isOlder(const DatedFile &one, const DatedFile &other) const;

private:
    bool hasDates = true;
    bool hasTimes = true;
};

/// In the order of just these two.
bool isOlder(const DatedFile &one, const DatedFile &other);
