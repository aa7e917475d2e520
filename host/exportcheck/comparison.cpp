// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export against the last good one.
#include "host/exportcheck/comparison.h"

#include "host/exportcheck/cellform.h"

#include "export/exportfile.h"

#include <algorithm>

namespace {

// A day brings less than this, in per cent; few people may change by chance.
const int mostLost = 5;
const int mostJump = 20;
const int mostChanged = 50;
const int leastExchanged = 90;
const int fewPeople = 5;

const size_t leaveColumn = 16;

/// A person of both exports.
struct Pair
{
    const DigestLine *now;
    const DigestLine *before;
};

/// Walks both exports in the order of their relations.
class Comparison
{
public:
    Comparison(const ExportDigest &newer, const ExportDigest &older) :
        now(newer),
        before(older)
    { }

    ExportComparison compare();

private:
    void pairPeople();
    void addPair(const DigestLine &newLine, const DigestLine &oldLine);
    void lookAtLoss();
    void lookAtEmptyCells();
    void lookAtVariety();
    void lookForExchanges();
    bool areExchanged(size_t left, size_t right, int *share) const;
    void lookAtChanges();
    void add(const char *code, size_t column, const QStringList &values);

    const ExportDigest &now;
    const ExportDigest &before;
    std::vector<Pair> pairs;
    ExportComparison result;
    std::array<bool, exportColumnCount> isExplained {};
};

ExportComparison Comparison::compare()
{
    result.columns = columnFigures(now);
    const auto figuresBefore = columnFigures(before);
    for (size_t column = 0; column < exportColumnCount; ++column) {
        result.columns[column].filledBefore = figuresBefore[column].filled;
        result.columns[column].distinctBefore = figuresBefore[column].distinct;
    }
    pairPeople();
    lookAtLoss();
    lookAtEmptyCells();
    lookAtVariety();
    lookForExchanges();
    lookAtChanges();
    return result;
}

void Comparison::add(const char *code, size_t column, const QStringList &values)
{
    result.findings.append({&findingKind(code),
                            0,
                            static_cast<int>(column) + 1,
                            QStringList(exportColumn(static_cast<int>(column))) + values,
                            {}});
}

/// The last line of each relation, in their order.
std::vector<const DigestLine *> lastLines(const ExportDigest &digest)
{
    std::vector<const DigestLine *> lines;
    const std::vector<int> places = orderedByRelation(digest);
    for (const int place : places) {
        const DigestLine &line = digest[static_cast<size_t>(place)];
        if (!lines.empty() && lines.back()->relation() == line.relation())
            lines.back() = &line;
        else
            lines.push_back(&line);
    }
    return lines;
}

void Comparison::pairPeople()
{
    const std::vector<const DigestLine *> newLines = lastLines(now);
    const std::vector<const DigestLine *> oldLines = lastLines(before);
    auto older = oldLines.cbegin();
    for (const DigestLine *line : newLines) {
        while (older != oldLines.cend() && (*older)->relation() < line->relation())
            ++older;
        if (older != oldLines.cend() && (*older)->relation() == line->relation())
            addPair(*line, **older);
    }
    result.before = static_cast<int>(oldLines.size());
    result.gained = static_cast<int>(newLines.size()) - result.common;
    result.lost = result.before - result.common;
}

void Comparison::addPair(const DigestLine &newLine, const DigestLine &oldLine)
{
    ++result.common;
    pairs.push_back({&newLine, &oldLine});
    bool differs = false;
    for (size_t column = 0; column < exportColumnCount; ++column) {
        if (newLine.cells[column] == oldLine.cells[column])
            continue;
        ++result.columns[column].changed;
        differs = true;
    }
    result.changed += differs ? 1 : 0;
}

void Comparison::lookAtLoss()
{
    const int share = percent(result.lost, result.before);
    if (result.lost >= fewPeople && share >= mostLost)
        result.findings.append(
            {&findingKind("W-AGAINST-LOST"),
             0,
             0,
             {QString::number(result.lost), QString::number(result.before), QString::number(share)},
             {}});
}

void Comparison::lookAtEmptyCells()
{
    const int lines = static_cast<int>(now.size());
    const int linesBefore = static_cast<int>(before.size());
    for (size_t column = 0; column < exportColumnCount; ++column) {
        const ColumnFigures &figures = result.columns[column];
        const int empty = percent(lines - figures.filled, lines);
        const int emptyBefore = percent(linesBefore - figures.filledBefore, linesBefore);
        if (lines < fewPeople || std::abs(empty - emptyBefore) < mostJump)
            continue;
        add("W-AGAINST-EMPTY", column, {QString::number(empty), QString::number(emptyBefore)});
        isExplained[column] = true;
    }
}

/// All cells alike where they were not.
void Comparison::lookAtVariety()
{
    for (size_t column = 0; column < exportColumnCount; ++column) {
        const ColumnFigures &figures = result.columns[column];
        const bool isSame = figures.filled >= fewPeople
            && figures.filled == static_cast<int>(now.size()) && figures.distinct == 1;
        if (!isSame || figures.distinctBefore < fewPeople || isExplained[column])
            continue;
        add("W-AGAINST-SAME", column, {QString::number(figures.distinctBefore)});
        isExplained[column] = true;
    }
}

void Comparison::lookForExchanges()
{
    for (size_t left = 0; left < exportColumnCount; ++left) {
        for (size_t right = left + 1; right < exportColumnCount; ++right) {
            int share = 0;
            if (!areExchanged(left, right, &share))
                continue;
            add("W-AGAINST-EXCHANGED", left,
                {exportColumn(static_cast<int>(right)), QString::number(share)});
            isExplained[left] = isExplained[right] = true;
        }
    }
}

/// Among the people for whom that shows: neither cell is empty in both exports, and they differ.
bool Comparison::areExchanged(size_t left, size_t right, int *share) const
{
    const int changedLeft = result.columns[left].changed;
    const int changedRight = result.columns[right].changed;
    if (percent(qMin(changedLeft, changedRight), result.common) < mostJump)
        return false;
    int exchanged = 0;
    int candidates = 0;
    for (const Pair &pair : pairs) {
        const uint oldLeft = pair.before->cells[left];
        const uint oldRight = pair.before->cells[right];
        if (oldLeft == oldRight
            || (pair.now->cells[left] == oldLeft && pair.now->cells[right] == oldRight))
            continue;
        ++candidates;
        exchanged += pair.now->cells[left] == oldRight && pair.now->cells[right] == oldLeft ? 1 : 0;
    }
    *share = percent(exchanged, candidates);
    return candidates >= fewPeople && *share >= leastExchanged;
}

/// The balance may be another one for everybody, when a month ends.
void Comparison::lookAtChanges()
{
    for (size_t column = 0; column < exportColumnCount; ++column) {
        const int changed = result.columns[column].changed;
        const int share = percent(changed, result.common);
        if (column != leaveColumn && !isExplained[column] && changed >= fewPeople
            && share >= mostChanged)
            add("W-AGAINST-CHANGED", column, {QString::number(share)});
    }
}

} // namespace

int percent(int part, int whole)
{
    return whole == 0 ? 0 : static_cast<int>(100LL * part / whole);
}

ExportDigest readDigest(QIODevice *device)
{
    ExportDigest digest;
    ExportFile lines(device);
    LineReader reader;
    QString text;
    while (lines.nextLine(&text)) {
        const ExportLine line = reader.read(text);
        if (line.fate == LineFate::Taken)
            digest.push_back(digestOf(line, lines.lineNumber()));
    }
    return digest;
}

std::array<ColumnFigures, exportColumnCount> columnFigures(const ExportDigest &digest)
{
    std::array<ColumnFigures, exportColumnCount> figures;
    std::vector<uint> cells(digest.size());
    for (size_t column = 0; column < exportColumnCount; ++column) {
        std::transform(digest.cbegin(), digest.cend(), cells.begin(),
                       [column](const DigestLine &line) { return line.cells[column]; });
        std::sort(cells.begin(), cells.end());
        const auto filled = std::upper_bound(cells.begin(), cells.end(), 0U);
        figures[column].filled = static_cast<int>(cells.end() - filled);
        figures[column].distinct = static_cast<int>(std::unique(filled, cells.end()) - filled);
    }
    return figures;
}

ExportComparison compareExports(const ExportDigest &now, const ExportDigest &before)
{
    return Comparison(now, before).compare();
}
