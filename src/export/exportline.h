// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A line of the export, from its text to its record and its fate.
#pragma once

#include "export/employeerecord.h"
#include "export/exportcells.h"

#include <QStringList>

#include <array>

/// The cells of a line that can become a record.
constexpr int exportColumnCount = 18;
/// What stands between two cells. There is no quoting.
constexpr QLatin1Char exportSeparator('|');
/// The names of the columns, in the order of the cells. Nobody compares them with the first line of
/// a file, which is a line like any other.
QStringList exportColumns();

/// What becomes of a line. A header has no key.
enum class LineFate {
    Taken, ///< it is a record
    WrongCount, ///< more or fewer cells than columns; nothing is made of them
    NoKey, ///< osobniCislo or poradoveCisloPP came to 0
    NoName ///< neither jmeno nor prijmeni
};

using ExportCells = std::array<QStringRef, exportColumnCount>;

/// A line that was read.
struct ExportLine
{
    /// The first ones, and null ones where there are fewer. They are views of the line's text,
    /// which has to outlive them.
    ExportCells cells;
    int cellCount = 0; ///< of all that the line has
    EmployeeRecord record; ///< what the cells came to, whether it is taken or not
    LineFate fate = LineFate::WrongCount;
};

/// Reads the lines of one export, one after another. It remembers what the time zone said of the
/// days: one to a reading.
class LineReader
{
public:
    /// For lines of an export, or of other ones with a cell to each of so many columns.
    explicit LineReader(int columnCount = exportColumnCount, QChar cellSeparator = exportSeparator);

    int columnCount() const { return columns; }

    /// Texts that are those of the record before, as titles and branches often are, share their
    /// memory with it.
    ExportLine read(const QString &line, const EmployeeRecord &before = EmployeeRecord());
    ExportLine read(const QString &&line, const EmployeeRecord &before = EmployeeRecord()) = delete;

private:
    const int columns;
    const QChar separator;
    DateCache dates;
};
