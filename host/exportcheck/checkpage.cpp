// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check as a page for people.
#include "host/exportcheck/checkpage.h"

#include "host/base/oneline.h"
#include "host/report/textreport.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CheckPage)
};

const int shownOfAKind = 10;
const int indent = 2;
const int deepIndent = 4;

int shownCount(const FindingGroup &group, const CheckPageStyle &style)
{
    return style.all ? group.places.size() : qMin(group.places.size(), shownOfAKind);
}

/// A whole number with signs between its thousands.
QString grouped(int number)
{
    return QLocale(QLocale::English).toString(number);
}

/// A part of a line with a mark below the begin of the cell; the part is as wide as the page has
/// room.
QString excerpt(const QString &line, int column, int width)
{
    int start = 0;
    for (int i = 1; i < column; ++i)
        start = line.indexOf(QLatin1Char('|'), start) + 1;
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
    QString comparison() const;
    QString database() const;
    QString group(const FindingGroup &group) const;

private:
    QString heading(const FindingGroup &group) const;
    QString place(const ExportFinding &found) const;
    QString findingText(const ExportFinding &found, bool ownEffect) const;
    QString noteText(const FindingGroup &group) const;
    bool haveOneEffect(const FindingGroup &group) const;
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
                         .arg(outcome.file, grouped(fates.lines()), grouped(fates.taken),
                              grouped(fates.header), grouped(fates.blank), grouped(fates.dropped)),
                     0)
        + paragraph(Text::tr("Errors: %1, warnings: %2, notes: %3. %4")
                        .arg(grouped(outcome.count(Finding::Error)),
                             grouped(outcome.count(Finding::Warning)),
                             grouped(outcome.count(Finding::Note)), verdict(outcome)),
                    0);
}

/// How many people are new, gone or changed, and in which columns.
QString Page::comparison() const
{
    if (!outcome.comparison)
        return QString();
    const ExportComparison &compared = *outcome.comparison;
    QStringList changes;
    for (int column = 0; column < exportColumnCount; ++column) {
        const int changed = compared.columns[static_cast<size_t>(column)].changed;
        if (changed > 0)
            changes.append(
                QStringLiteral("%1 %2").arg(exportColumns().at(column), grouped(changed)));
    }
    QString text = Text::tr("Against %1: %2 people gained, %3 lost, %4 changed")
                       .arg(outcome.otherFile, grouped(compared.gained), grouped(compared.lost),
                            grouped(compared.changed));
    text += changes.isEmpty() ? QStringLiteral(".")
                              : QStringLiteral(" (%1).").arg(changes.join(QStringLiteral(", ")));
    return paragraph(text, 0);
}

QString Page::database() const
{
    if (!outcome.database)
        return QString();
    const DatabaseCounts &people = *outcome.database;
    return paragraph(
        Text::tr("Against the database: %1 people are new, %2 come back, %3 differ "
                 "(%4 of these get a last day), %5 are the same, %6 have ended and are "
                 "not there.")
            .arg(grouped(people.added), grouped(people.revived), grouped(people.updated),
                 grouped(people.ended), grouped(people.same), grouped(people.leftOut)),
        0);
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
             grouped(group.places.size()));
}

QString Page::place(const ExportFinding &found) const
{
    if (found.line == 0)
        return QString();
    if (found.lines.isEmpty())
        return Text::tr("line %1: ").arg(found.line);
    QStringList numbers;
    for (const int line : found.lines.mid(0, shownOfAKind))
        numbers.append(QString::number(line));
    const QString more = found.lines.size() > shownOfAKind ? QStringLiteral(", …") : QString();
    return Text::tr("lines %1%2: ").arg(numbers.join(QStringLiteral(", ")), more);
}

QString Page::findingText(const ExportFinding &found, bool ownEffect) const
{
    const Finding finding = told(found, outcome.texts);
    QString text = paragraph(place(found) + finding.text, indent);
    if (outcome.texts == PersonalTexts::Shown && found.line != 0 && found.column != 0
        && lines.contains(found.line))
        text += excerpt(lines.value(found.line), found.column, style.width);
    if (ownEffect && !finding.becomes.isEmpty())
        text += paragraph(Text::tr("leads to: %1").arg(finding.becomes), deepIndent);
    return text;
}

/// What follows is the same for all, and needs to be said only once.
bool Page::haveOneEffect(const FindingGroup &group) const
{
    const auto effect = [this](int place) {
        return told(outcome.findings.at(place), outcome.texts).becomes;
    };
    const QString first = effect(group.places.constFirst());
    return std::all_of(group.places.cbegin(), group.places.cbegin() + shownCount(group, style),
                       [&](int place) { return effect(place) == first; });
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
        others.append(Text::tr("and %1 more (--all shows them)").arg(grouped(more)));
    QString text = place(first) + told(first, outcome.texts).text;
    if (!others.isEmpty())
        text += Text::tr("; also in lines %1").arg(others.join(QStringLiteral(", ")));
    return paragraph(text, indent);
}

QString Page::group(const FindingGroup &group) const
{
    if (group.kind->severity() == Finding::Note)
        return heading(group) + noteText(group);
    const bool oneEffect = haveOneEffect(group);
    QString text = heading(group);
    const int shown = shownCount(group, style);
    for (int i = 0; i < shown; ++i)
        text += findingText(outcome.findings.at(group.places.at(i)), !oneEffect);
    if (shown < group.places.size())
        text += paragraph(
            Text::tr("and %1 more; --all shows them").arg(grouped(group.places.size() - shown)),
            indent);
    const Finding first = told(outcome.findings.at(group.places.constFirst()), outcome.texts);
    if (oneEffect && !first.becomes.isEmpty())
        text += paragraph(Text::tr("Leads to: %1.").arg(first.becomes), indent);
    if (!first.remedy.isEmpty())
        text += paragraph(Text::tr("Do: %1.").arg(first.remedy), indent);
    return text;
}

} // namespace

QVector<int> linesOnPage(const CheckOutcome &outcome, const CheckPageStyle &style)
{
    QVector<int> numbers;
    const QVector<FindingGroup> groups = groupsOf(outcome.findings);
    for (const FindingGroup &group : groups) {
        if (group.kind->severity() == Finding::Note)
            break;
        for (int i = 0; i < shownCount(group, style); ++i) {
            const ExportFinding &found = outcome.findings.at(group.places.at(i));
            if (found.line != 0 && found.column != 0)
                numbers.append(found.line);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

void writeCheckPage(const CheckOutcome &outcome, const CheckPageStyle &style,
                    const QHash<int, QString> &lines,
                    const std::function<void(const QString &text)> &sink)
{
    const Page page(outcome, style, lines);
    sink(page.head() + page.comparison() + page.database());
    const QVector<FindingGroup> groups = groupsOf(outcome.findings);
    for (const FindingGroup &group : groups)
        sink(page.group(group));
}
