// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines of an export that are about one person.
#pragma once

#include "export/exportline.h"
#include "host/explain/personchoice.h"

#include <QByteArray>
#include <QStringList>
#include <QVector>

class QIODevice;

/// A line, and what the plugin's own reader makes of it.
struct PersonLine
{
    int number = 0; ///< from 1 on
    QByteArray bytes; ///< as it stands in the file, without its line end
    LineFate fate = LineFate::Taken;
    EmployeeRecord record; ///< of a line that is dropped: what its cells came to
    QStringList cells;
    uint pid = 0; ///< of a dropped line: what its first two cells would come to
    bool isHeader = false; ///< the first line, with the names of the columns
};

/// Which lines are looked for.
struct WantedLines
{
    QSet<uint> pids;
    QSet<uint> orphans; ///< personal numbers of lines that have no ordinal
    QString number; ///< the personal number of lines whatever their ordinal; empty for none
};

/// The header, if there is one, and the lines that are wanted, in the order of the file.
QVector<PersonLine> readPersonLines(QIODevice *device, const WantedLines &wanted);

/// Who the lines are about.
QVector<LinePerson> peopleOf(const QVector<PersonLine> &lines);
/// The lines of the person, and the header.
QVector<PersonLine> linesOf(const QVector<PersonLine> &lines, const ChosenPerson &person);
/// An export with nothing but these lines, byte for byte.
QByteArray exportOf(const QVector<PersonLine> &lines);
