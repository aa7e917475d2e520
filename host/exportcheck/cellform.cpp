// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What stands in a cell, beside what the plugin's reader makes of it.
#include "host/exportcheck/cellform.h"

#include "export/exportline.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CellForm)
};

enum class Kind {
    Text,
    Number, ///< 32 bits
    Short, ///< 16 bits
    Balance,
    Date,
};

Kind kindOf(int column)
{
    switch (column) {
    case 0:
    case 1:
    case 9:
    case 11:
    case 17:
        return Kind::Number;
    case 7:
    case 8:
    case 12:
        return Kind::Date;
    case 13:
    case 14:
    case 15:
        return Kind::Short;
    case 16:
        return Kind::Balance;
    default:
        return Kind::Text;
    }
}

QDate dateOf(const EmployeeRecord &record, int column)
{
    if (column == 7)
        return record.datumNastupu;
    return column == 8 ? record.datumVystupu : record.kalendarPlatnostOd;
}

bool isNumber(const QStringRef &cell)
{
    bool ok = false;
    cell.toUInt(&ok);
    return ok;
}

} // namespace

bool isHeader(const ExportLine &line)
{
    const QStringList names = exportColumns();
    return line.cellCount == names.size()
        && std::equal(names.cbegin(), names.cend(), line.cells.cbegin(),
                      [](const QString &name, const QStringRef &cell) { return cell == name; });
}

bool isDateColumn(int column)
{
    return kindOf(column) == Kind::Date;
}

bool isLost(const ExportLine &line, int column)
{
    const QStringRef &cell = line.cells[static_cast<size_t>(column)];
    if (cell.isEmpty())
        return false;
    switch (kindOf(column)) {
    case Kind::Text:
        return false;
    case Kind::Number:
        return !isNumber(cell);
    case Kind::Short:
        return !isNumber(cell) || cell.toUInt() > 65535;
    case Kind::Balance: {
        bool ok = false;
        cell.toDouble(&ok);
        return !ok;
    }
    case Kind::Date:
        break;
    }
    return !dateOf(line.record, column).isValid();
}

QString separatorFault(const QString &line)
{
    if (line.count(QLatin1Char(';')) >= 10)
        return Text::tr("its cells are separated by semicolons, not by '|'");
    if (line.count(QLatin1Char('\t')) >= 10)
        return Text::tr("its cells are separated by tabs, not by '|'");
    if (line.count(QLatin1Char(',')) >= 10)
        return Text::tr("its cells are separated by commas, not by '|'");
    return QString();
}
