// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines of the export file.
#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

/// Gives the lines of an export that hold anything, up to its end or up to where it can no longer
/// be read: what came until then counts as the file.
///
/// The device is the caller's: open, and there for as long as this is. It is read ahead, in blocks.
class ExportFile
{
public:
    explicit ExportFile(QIODevice *source);

    /// The next line up to its first NUL byte, without the white space around it, unless nothing is
    /// left of it then. False when there is none.
    bool nextLine(QString *line);

    /// The number of the line given last; the first line of the file has 1, and those that nothing
    /// is left of count. Behind the last line it is the number of all lines.
    int lineNumber() const { return number; }
    /// The line given last as it stands in the file, with what a NUL byte hides, but without the
    /// line feed. A view, until the next line is asked for; empty behind the last one.
    QByteArray lineBytes() const;

private:
    bool findLine();
    int findEnd(int from) const;
    bool readOn();

    QIODevice *const device;
    QByteArray buffer;
    int start = 0; ///< where the next line begins
    int lineStart = 0;
    int lineSize = 0;
    int number = 0;
};
