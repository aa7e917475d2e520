// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check as a page for a browser.
#include "host/exportcheck/checkhtml.h"

#include "host/exportcheck/cellform.h"
#include "host/exportcheck/checktexts.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CheckHtml)
};

const int lettersBeside = 60; // of a cell, on each side

QString key(const char *name)
{
    return QLatin1String(name);
}

/// The cell and what stands beside it.
void addExcerpt(const QString &line, int column, QVariantHash *finding)
{
    const int start = cellStart(line, column);
    const int bar = line.indexOf(QLatin1Char('|'), start);
    const int end = bar < 0 ? line.size() : bar;
    const QString before = line.left(start);
    const QString after = line.mid(end);
    const QString ellipsis = QStringLiteral("…");
    finding->insert(key("before"),
                    before.size() > lettersBeside ? ellipsis + before.right(lettersBeside)
                                                  : before);
    // An empty cell is to be seen too.
    finding->insert(key("cell"), start == end ? QStringLiteral(" ") : line.mid(start, end - start));
    finding->insert(key("after"),
                    after.size() > lettersBeside ? after.left(lettersBeside) + ellipsis : after);
}

QVariantHash findingValues(const CheckOutcome &outcome, const ExportFinding &found,
                           const QHash<int, QString> &lines, bool ownEffect)
{
    const Finding finding = told(found, outcome.texts);
    QVariantHash values {{key("place"), placeText(found)}, {key("text"), finding.text}};
    if (ownEffect)
        values.insert(key("becomes"), finding.becomes);
    if (outcome.texts == PersonalTexts::Shown && found.column != 0 && lines.contains(found.line))
        addExcerpt(lines.value(found.line), found.column, &values);
    return values;
}

QVariantHash groupValues(const CheckOutcome &outcome, const FindingGroup &group,
                         const QHash<int, QString> &lines, int shown)
{
    const int count = qMin(group.places.size(), shown);
    const bool oneEffect = haveOneEffect(outcome, group, count);
    QVariantList findings;
    for (int i = 0; i < count; ++i)
        findings.append(
            findingValues(outcome, outcome.findings.at(group.places.at(i)), lines, !oneEffect));
    const Finding first = told(outcome.findings.at(group.places.constFirst()), outcome.texts);
    QVariantHash values {{key("severity"), severityName(first.severity)},
                         {key("code"), first.code},
                         {key("title"), findingTitle(*group.kind)},
                         {key("count"), groupedNumber(group.places.size())},
                         {key("findings"), findings},
                         {key("remedy"), first.remedy}};
    if (oneEffect)
        values.insert(key("becomes"), first.becomes);
    if (count < group.places.size())
        values.insert(key("more"), groupedNumber(group.places.size() - count));
    return values;
}

QVariantList columnValues(const CheckOutcome &outcome)
{
    QVariantList columns;
    const int before = outcome.comparison ? outcome.comparison->before : 0;
    for (int i = 0; i < exportColumnCount; ++i) {
        const ColumnFigures &figures = outcome.columns[static_cast<size_t>(i)];
        const bool isMarked = std::any_of(
            outcome.findings.cbegin(), outcome.findings.cend(),
            [i](const ExportFinding &found) { return found.line == 0 && found.column == i + 1; });
        QVariantHash column {{key("name"), exportColumn(i)},
                             {key("filled"), groupedNumber(figures.filled)},
                             {key("filledShare"), percent(figures.filled, outcome.fates.taken)},
                             {key("distinct"), groupedNumber(figures.distinct)},
                             {key("marked"), isMarked}};
        if (outcome.comparison) {
            column.insert(key("filledShareBefore"),
                          qMin(percent(figures.filledBefore, before), 100));
            column.insert(key("changed"), groupedNumber(figures.changed));
            column.insert(key("changedShare"),
                          percent(figures.changed, outcome.comparison->common));
        }
        columns.append(column);
    }
    return columns;
}

QVariantList fateValues(const FateCounts &fates)
{
    const QVector<QPair<QString, int>> counts {{Text::tr("lines"), fates.lines()},
                                               {Text::tr("taken"), fates.taken},
                                               {Text::tr("header"), fates.header},
                                               {Text::tr("blank"), fates.blank},
                                               {Text::tr("dropped"), fates.dropped}};
    QVariantList values;
    for (const auto &count : counts)
        values.append(
            QVariantHash {{key("name"), count.first}, {key("count"), groupedNumber(count.second)}});
    return values;
}

} // namespace

QVariantHash checkHtmlValues(const CheckOutcome &outcome, const QHash<int, QString> &lines,
                             int shown)
{
    QVariantList groups;
    const QVector<FindingGroup> findingGroups = groupsOf(outcome.findings);
    for (const FindingGroup &group : findingGroups)
        groups.append(groupValues(outcome, group, lines, shown));
    QVariantList comparisons;
    for (const QString &text : {comparisonText(outcome), databaseText(outcome)}) {
        if (!text.isEmpty())
            comparisons.append(text);
    }
    const int errors = outcome.count(Finding::Error);
    const int warnings = outcome.count(Finding::Warning);
    return {{key("title"), outcome.file},
            {key("verdict"), verdict(outcome)},
            {key("severity"),
             key(errors > 0         ? "error"
                     : warnings > 0 ? "warning"
                                    : "good")},
            {key("fates"), fateValues(outcome.fates)},
            {key("comparisons"), comparisons},
            {key("counts"),
             QVariantHash {{key("errors"), groupedNumber(errors)},
                           {key("warnings"), groupedNumber(warnings)},
                           {key("notes"), groupedNumber(outcome.count(Finding::Note))}}},
            {key("groups"), groups},
            {key("compared"), outcome.comparison.has_value()},
            {key("columns"), columnValues(outcome)}};
}
