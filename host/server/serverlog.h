// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the log of a MariaDB server tells of a failure.
#pragma once

#include <QByteArray>
#include <QString>

/// The one line that tells why a server, or the making of its data, failed: without time and level,
/// with the system's word for an error that is told by number only. Empty when no line tells it.
///
/// The first complaint is the cause; what follows it are consequences and advice.
QString decisiveLine(const QByteArray &log);

/// The server has stopped until there is room on its disk. It looks again once a minute, for ever.
bool waitsForSpace(const QByteArray &log);

/// The complaint, and what to do if it is of a disk, or of the part of it that a user may fill,
/// without room.
QString withRemedy(const QString &complaint);

/// What a log has got since the object was made.
class LogSection
{
public:
    explicit LogSection(const QString &path);

    QString path() const { return name; }
    /// At most the first megabyte.
    QByteArray text() const;

private:
    QString name;
    qint64 begin;
};
