// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the columns of an export hold.
#include "host/exportcheck/cellform.h"

#include "export/exportline.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CellForm)
};

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

} // namespace

const QString &exportColumn(int column)
{
    static const QStringList names = exportColumns();
    return names.at(column);
}

CellKind cellKind(int column)
{
    switch (column) {
    case 0:
    case 1:
    case 9:
    case 11:
    case 17:
        return CellKind::Number;
    case 7:
    case 8:
    case 12:
        return CellKind::Date;
    case 13:
    case 14:
    case 15:
        return CellKind::Short;
    case 16:
        return CellKind::Balance;
    default:
        return CellKind::Text;
    }
}

bool isTextColumn(int column)
{
    return cellKind(column) == CellKind::Text;
}

bool isHeader(const ExportLine &line)
{
    // Numbers and dates do not stand in a header: most lines are told by their first cell.
    if (line.cellCount != exportColumnCount || line.fate == LineFate::Taken)
        return false;
    const QStringList names = exportColumns();
    return std::equal(names.cbegin(), names.cend(), line.cells.cbegin(),
                      [](const QString &name, const QStringRef &cell) { return cell == name; });
}

bool looksLikeHeader(const ExportLine &line)
{
    if (line.cellCount != exportColumnCount || line.fate == LineFate::Taken)
        return false;
    // No number and no date where an ordinary line has them; words everywhere.
    const QRegularExpression word(QStringLiteral("^\\s*\\p{L}[\\p{L}\\d _.-]*\\s*$"),
                                  QRegularExpression::UseUnicodePropertiesOption);
    return std::all_of(line.cells.cbegin(), line.cells.cend(), [&word](const QStringRef &cell) {
        return word.match(cell.toString()).hasMatch();
    });
}

QString headerFault(const ExportLine &line)
{
    for (int column = 0; column < exportColumnCount; ++column) {
        const QStringRef &cell = line.cells[static_cast<size_t>(column)];
        if (cell != exportColumn(column))
            return Text::tr("column %1 is named '%2' in place of '%3'")
                .arg(column + 1)
                .arg(cell.toString(), exportColumn(column));
    }
    return QString();
}

bool fitsColumn(const QStringRef &cell, int column)
{
    if (cell.isEmpty())
        return true;
    bool ok = true;
    switch (cellKind(column)) {
    case CellKind::Text:
        break;
    case CellKind::Number:
    case CellKind::Short:
        cell.toUInt(&ok);
        break;
    case CellKind::Balance:
        cell.toDouble(&ok);
        break;
    case CellKind::Date: {
        DateCache cache;
        return dateFromCell(cell, &cache).isValid();
    }
    }
    return ok;
}

bool isPlainNumber(const QStringRef &cell)
{
    return !cell.isEmpty() && cell.size() <= 9
        && (cell.size() == 1 || cell.at(0) != QLatin1Char('0'))
        && std::all_of(cell.begin(), cell.end(), isDigit);
}
