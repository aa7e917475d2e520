// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is wrong with a line that has too few cells or too many.
#include "host/exportcheck/linefault.h"

#include "export/exportline.h"
#include "host/exportcheck/cellform.h"

#include <QCoreApplication>
#include <QVector>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(LineFault)
};

using Cells = QVector<QStringRef>;

/// How well the cell stands in its column: a number or date where one is asked for says much, an
/// empty cell a little, a text nothing.
int fitness(const QStringRef &cell, int column)
{
    if (cell.isEmpty())
        return 1;
    if (isTextColumn(column)) {
        const bool looksLikeDate = fitsColumn(cell, 7);
        return looksLikeDate || isPlainNumber(cell) ? -2 : 1;
    }
    return fitsColumn(cell, column) ? 3 : -3;
}

/// The columns, counted from 0, between which a change makes the line fit best.
struct BestPlaces
{
    int score = -1000;
    int first = 0;
    int last = 0;

    void look(int newScore, int place)
    {
        if (newScore > score)
            *this = {newScore, place, place};
        else if (newScore == score)
            last = place;
    }
};

/// A text of one line has no '|': two cells of a text joined are a text.
int scoreWithoutBar(const Cells &cells, int place)
{
    int score = 0;
    for (int column = 0; column < exportColumnCount; ++column) {
        if (column == place)
            score += isTextColumn(column) ? 1 : -3;
        else
            score += fitness(cells.at(column < place ? column : column + 1), column);
    }
    return score;
}

/// The cell at the place holds what belongs into two.
int scoreWithBar(const Cells &cells, int place)
{
    int score = 0;
    for (int column = 0; column < exportColumnCount; ++column) {
        if (column == place || column == place + 1)
            score += cells.at(place).isEmpty() ? 1 : 0;
        else
            score += fitness(cells.at(column < place ? column : column - 1), column);
    }
    return score;
}

QString between(const BestPlaces &best, const QString &one, const QString &several)
{
    const QStringList names = exportColumns();
    return best.first == best.last ? one.arg(names.at(best.first))
                                   : several.arg(names.at(best.first), names.at(best.last));
}

QString tooManyBars(const Cells &cells)
{
    BestPlaces best;
    for (int place = 0; place < exportColumnCount; ++place)
        best.look(scoreWithoutBar(cells, place), place);
    return between(best, Text::tr("one '|' too many seems to be in %1"),
                   Text::tr("one '|' too many seems to be between %1 and %2"));
}

QString missingBar(const Cells &cells)
{
    BestPlaces best;
    for (int place = 0; place < cells.size(); ++place)
        best.look(scoreWithBar(cells, place), place);
    return between(best, Text::tr("a '|' seems to be missing in or behind %1"),
                   Text::tr("a '|' seems to be missing between %1 and %2"));
}

} // namespace

QString lineFault(const QString &line)
{
    const Cells cells = line.splitRef(exportSeparator);
    if (cells.size() == exportColumnCount + 1)
        return tooManyBars(cells);
    if (cells.size() == exportColumnCount - 1)
        return missingBar(cells);
    if (cells.size() == 2 * exportColumnCount - 1 || cells.size() == 2 * exportColumnCount)
        return Text::tr("it seems to be two lines without a line end between them");
    return separatorFault(line);
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

QString foreignKind(const QByteArray &begin)
{
    if (begin.startsWith("\x1f\x8b"))
        return Text::tr("it is compressed (gzip)");
    if (begin.startsWith("PK\x03\x04"))
        return Text::tr("it is a ZIP archive or a spreadsheet");
    if (begin.startsWith('<'))
        return Text::tr("it looks like HTML or XML");
    return begin.left(2).contains('\0') ? Text::tr("it looks like UTF-16") : QString();
}
