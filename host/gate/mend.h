// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Damage of an export that can be mended without knowing better than those who wrote it.
#pragma once

#include "host/base/failure.h"

#include <QString>
#include <QVector>

class QIODevice;

/// What may be mended; nothing by default.
struct MendWishes
{
    bool apostrophe = false; ///< that would break a statement: the typographic one in its place
    bool bom = false; ///< a byte order mark before the first line
    bool cr = false; ///< carriage returns right before a line end
    QString encoding; ///< of eight bits, of a file that is not UTF-8; empty for none
};

/// What was mended, at one place or of the file.
struct MendedCell
{
    enum Kind {
        Apostrophe,
        ByteOrderMark, ///< of the file
        CarriageReturn, ///< of the file: `count` line ends
        Encoding,
    };

    Kind kind = Apostrophe;
    int line = 0; ///< counts from 1; 0 for the file
    QString column; ///< the name of it; empty for the file, and in a line with other cells
    QString before; ///< the cell as the plugin would have read it; empty for the file
    QString after;
    int count = 1; ///< of apostrophes, marks and line ends; 1 for an encoding
};

/// Fails for wishes that cannot be met: an encoding that is none.
Failure checkWishes(const MendWishes &wishes);

/// Writes the export as it stands, but for what is wished. The target is for its owner only, and is
/// whole or not there. `mended` gets what differs; nothing else does. Mending what was mended
/// changes nothing.
///
/// An apostrophe is left alone where the statement runs nevertheless, or where no statement is made
/// of the line. A file is taken for one of the named encoding only if it cannot be UTF-8 with some
/// damage in it, and if each of its bytes is a sign of that encoding.
Failure mendExport(const QString &source, const QString &target, const MendWishes &wishes,
                   QVector<MendedCell> *mended);
/// The same for open devices, of which the first one can be read again from its begin.
Failure mendExport(QIODevice *source, QIODevice *target, const MendWishes &wishes,
                   QVector<MendedCell> *mended);

/// A line for each, for people. It holds names.
QByteArray mendedText(const QVector<MendedCell> &mended);
