// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check as a page for people.
#include "host/exportcheck/checkpage.h"

#include "host/base/oneline.h"
#include "host/exportcheck/checktexts.h"
#include "host/report/textreport.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CheckPage)
};

const int indent = 2;
const int deepIndent = 4;

/// What stands in nearly every line has one cause.
bool isEverywhere(const FindingGroup &group, const CheckOutcome &outcome)
{
    return group.places.size() >= 20 && group.places.size() >= outcome.fates.lines() / 10 * 9;
}

int shownCount(const FindingGroup &group, const CheckPageStyle &style)
{
    return qMin(group.places.size(), style.shown);
}

/// A part of a line with a mark below the begin of the cell; the part is as wide as the page has
/// room.
QString excerpt(const QString &line, int column, int width)
{
    const int start = cellStart(line, column);
    QString shown = oneLine(line);
    int mark = oneLine(line.left(start)).size();
    const int room = qMax(width - deepIndent, 20);
    if (mark > room / 2 && shown.size() > room) {
        const int cut = qMin(mark - room / 4, shown.size() - room + 1);
        shown = QStringLiteral("…") + shown.mid(cut);
        mark += 1 - cut;
    }
    if (shown.size() > room)
        shown = shown.left(room - 1) + QStringLiteral("…");
    const QString margin(deepIndent, QLatin1Char(' '));
    return margin + shown + QLatin1Char('\n') + margin + QString(mark, QLatin1Char(' '))
        + QStringLiteral("^\n");
}

/// Writes one page.
class Page
{
public:
    Page(const CheckOutcome &shown, const CheckPageStyle &pageStyle,
         const QHash<int, QString> &shownLines) :
        outcome(shown),
        style(pageStyle),
        lines(shownLines)
    { }

    QString head() const;
    QString comparisons() const;
    QString group(const FindingGroup &group) const;

private:
    QString heading(const FindingGroup &group) const;
    QString findingText(const ExportFinding &found, bool ownEffect) const;
    QString noteText(const FindingGroup &group) const;
    QString paragraph(const QString &text, int margin) const;

    const CheckOutcome &outcome;
    const CheckPageStyle &style;
    const QHash<int, QString> &lines;
};

QString Page::paragraph(const QString &text, int margin) const
{
    return QString(margin, QLatin1Char(' ')) + wrapped(oneLine(text), style.width - margin, margin)
        + QLatin1Char('\n');
}

QString Page::head() const
{
    const FateCounts &fates = outcome.fates;
    return paragraph(Text::tr("%1: %2 lines. Taken: %3, header: %4, blank: %5, dropped: %6.")
                         .arg(outcome.file, groupedNumber(fates.lines()),
                              groupedNumber(fates.taken), groupedNumber(fates.header),
                              groupedNumber(fates.blank), groupedNumber(fates.dropped)),
                     0)
        + paragraph(Text::tr("Errors: %1, warnings: %2, notes: %3. %4")
                        .arg(groupedNumber(outcome.count(Finding::Error)),
                             groupedNumber(outcome.count(Finding::Warning)),
                             groupedNumber(outcome.count(Finding::Note)), verdict(outcome)),
                    0);
}

QString Page::comparisons() const
{
    QString text;
    for (const QString &comparison : {comparisonText(outcome), databaseText(outcome)}) {
        if (!comparison.isEmpty())
            text += paragraph(comparison, 0);
    }
    return text;
}

QString Page::heading(const FindingGroup &group) const
{
    static const char *const colours[] = {"", "\033[33m", "\033[31m"};
    const Finding::Severity severity = group.kind->severity();
    const QString word = severityName(severity).toUpper();
    const QString shown = style.colour && severity != Finding::Note
        ? QLatin1String(colours[severity]) + word + QStringLiteral("\033[0m")
        : word;
    return QStringLiteral("\n%1 %2: %3 (%4)\n")
        .arg(shown, QLatin1String(group.kind->code), findingTitle(*group.kind),
             groupedNumber(group.places.size()));
}

QString Page::findingText(const ExportFinding &found, bool ownEffect) const
{
    const Finding finding = told(found, outcome.texts);
    QString text = paragraph(placeText(found) + finding.text, indent);
    if (outcome.texts == PersonalTexts::Shown && found.line != 0 && found.column != 0
        && lines.contains(found.line))
        text += excerpt(lines.value(found.line), found.column, style.width);
    if (ownEffect && !finding.becomes.isEmpty())
        text += paragraph(Text::tr("leads to: %1").arg(finding.becomes), deepIndent);
    return text;
}

/// Of notes the first one is told, and of the others where they are.
QString Page::noteText(const FindingGroup &group) const
{
    const ExportFinding &first = outcome.findings.at(group.places.constFirst());
    QStringList others;
    for (int i = 1; i < shownCount(group, style); ++i)
        others.append(QString::number(outcome.findings.at(group.places.at(i)).line));
    const int more = group.places.size() - shownCount(group, style);
    if (more > 0)
        others.append(Text::tr("and %1 more (--all shows them)").arg(groupedNumber(more)));
    QString text = placeText(first) + told(first, outcome.texts).text;
    if (!others.isEmpty())
        text += Text::tr("; further lines: %1").arg(others.join(QStringLiteral(", ")));
    return paragraph(text, indent);
}

QString Page::group(const FindingGroup &group) const
{
    if (group.kind->severity() == Finding::Note)
        return heading(group) + noteText(group);
    const bool everywhere = isEverywhere(group, outcome);
    const bool oneEffect = haveOneEffect(outcome, group, shownCount(group, style));
    QString text = heading(group);
    const int shown = shownCount(group, style);
    for (int i = 0; i < shown; ++i)
        text += findingText(outcome.findings.at(group.places.at(i)), !oneEffect);
    if (shown < group.places.size())
        text += paragraph(Text::tr("and %1 more; --all shows them")
                              .arg(groupedNumber(group.places.size() - shown)),
                          indent);
    const Finding first = told(outcome.findings.at(group.places.constFirst()), outcome.texts);
    if (everywhere)
        text += paragraph(Text::tr("This stands in nearly every line: look for one cause."),
                          indent);
    if (oneEffect && !first.becomes.isEmpty())
        text += paragraph(Text::tr("Leads to: %1.").arg(first.becomes), indent);
    if (!first.remedy.isEmpty())
        text += paragraph(Text::tr("Do: %1.").arg(first.remedy), indent);
    return text;
}

} // namespace

void writeCheckPage(const CheckOutcome &outcome, const CheckPageStyle &style,
                    const QHash<int, QString> &lines,
                    const std::function<void(const QString &text)> &sink)
{
    const Page page(outcome, style, lines);
    if (style.headOnly) {
        sink(page.head());
        return;
    }
    sink(page.head() + page.comparisons());
    const QVector<FindingGroup> groups = groupsOf(outcome.findings);
    for (const FindingGroup &group : groups)
        sink(page.group(group));
}
