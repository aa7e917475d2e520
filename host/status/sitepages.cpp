// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The pages of a site as values for their templates: an export or a pass.
#include "host/status/sitepages.h"

#include "host/changes/changeshtml.h"
#include "host/changes/changesjson.h"
#include "host/status/passfacts.h"
#include "host/status/statustexts.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SitePages)
};

const int mostPeople = 1000; // on a page

QString key(const char *name)
{
    return QLatin1String(name);
}

void addFigure(const QString &label, const QString &text, QVariantList *figures)
{
    if (!text.isEmpty())
        figures->append(QVariantHash {{key("label"), label}, {key("text"), text}});
}

QVariantList kindValues(const KindCounts &summary)
{
    qint64 most = 1;
    // Beside notices nothing else would show.
    for (const ChangeKind kind : changeKinds()) {
        if (countsPeople(kind))
            most = qMax(most, summary[kind]);
    }
    QVariantList values;
    for (const ChangeKind kind : changeKinds()) {
        if (summary[kind] != 0)
            values.append(
                QVariantHash {{key("name"), kindName(kind)},
                              {key("count"), summary[kind]},
                              {key("share"), qMin(100 * summary[kind] / most, Q_INT64_C(100))}});
    }
    return values;
}

QVariantList reasonValues(const GateRecord &record)
{
    QVariantList values;
    for (const RefusalReason &reason : record.reasons)
        values.append(QVariantHash {{key("code"), reason.code},
                                    {key("text"), reason.text},
                                    {key("remedy"), reason.remedy}});
    return values;
}

QVariantList findingValues(const GateRecord &record)
{
    QVariantList values;
    for (const FindingCount &finding : record.findings)
        values.append(QVariantHash {{key("code"), finding.code},
                                    {key("severity"), severityName(finding.severity)},
                                    {key("count"), finding.count}});
    return values;
}

QVariantList limitValues(const GateRecord &record)
{
    QVariantList values;
    for (const LimitOutcome &limit : record.limits)
        values.append(QVariantHash {{key("kind"), limit.limit.kind},
                                    {key("limit"), limitText(limit.limit)},
                                    {key("allowed"), limit.allowed},
                                    {key("found"), limit.found},
                                    {key("exceeded"), limit.isExceeded()}});
    return values;
}

QString severityOf(const GateRecord &record)
{
    switch (record.outcome) {
    case GateRecord::Refused:
        return isRefused(record) ? key("error") : key("good");
    case GateRecord::Superseded:
        return QString();
    case GateRecord::Passed:
    case GateRecord::Passing:
        break;
    }
    const bool hasErrors = record.rehearsal && record.rehearsal->summary[ChangeKind::Errors] > 0;
    return hasErrors || record.fates.dropped > 0 ? key("warning") : key("good");
}

/// The reason may name people.
QString releaseText(const Release &release, PersonalTexts texts)
{
    return texts == PersonalTexts::Hidden ? Text::tr("by %1").arg(release.by)
                                          : Text::tr("by %1: %2").arg(release.by, release.reason);
}

void tellRecord(const GateRecord &record, PersonalTexts texts, SitePage *page)
{
    page->note.severity = severityOf(record);
    page->note.what = record.exported.name;
    page->note.outcome = outcomeText(record);
    page->note.people = record.rehearsal ? record.rehearsal->people : 0;
    QVariantList figures;
    addFigure(Text::tr("Export"),
              Text::tr("%1, %2, lines: %3")
                  .arg(record.exported.name, sizeText(record.exported.size),
                       QString::number(record.exported.lines)),
              &figures);
    addFigure(Text::tr("Decided"),
              Text::tr("%1, in %2").arg(momentText(record.when), durationText(record.seconds)),
              &figures);
    addFigure(Text::tr("Name at the gate"), record.name, &figures);
    addFigure(Text::tr("SHA-256"), record.exported.digest, &figures);
    addFigure(Text::tr("Lines"),
              Text::tr("taken %1, header %2, blank %3, dropped %4")
                  .arg(record.fates.taken)
                  .arg(record.fates.header)
                  .arg(record.fates.blank)
                  .arg(record.fates.dropped),
              &figures);
    addFigure(Text::tr("Compared with"), record.comparedWith, &figures);
    if (!record.comparedWith.isEmpty())
        addFigure(Text::tr("People"),
                  Text::tr("gained %1, lost %2").arg(record.gained).arg(record.lost), &figures);
    if (record.mendedCells > 0)
        addFigure(Text::tr("Mended cells"), QString::number(record.mendedCells), &figures);
    if (record.release)
        addFigure(Text::tr("Let through"), releaseText(*record.release, texts), &figures);
    QVariantHash &values = page->values;
    values.insert(key("title"), Text::tr("Export of %1").arg(momentText(record.when)));
    values.insert(key("verdict"), outcomeText(record));
    values.insert(key("figures"), figures);
    values.insert(key("reasons"), reasonValues(record));
    values.insert(key("findings"), findingValues(record));
    values.insert(key("limits"), limitValues(record));
    if (record.rehearsal)
        values.insert(key("kinds"), kindValues(record.rehearsal->summary));
}

void tellPass(const Changes &changes, SitePage *page)
{
    const ChangesHeader &header = changes.header;
    const qint64 errors = changes.summary[ChangeKind::Errors];
    page->note.severity = errors > 0 || changes.summary[ChangeKind::Dropped] > 0 ? key("warning")
                                                                                 : key("good");
    page->note.what = header.forced ? Text::tr("forced pass") : Text::tr("pass");
    page->note.outcome = figuresText(changes.summary);
    page->note.people = changes.people.size();
    QVariantList figures;
    addFigure(Text::tr("Export"),
              header.exported.digest.isEmpty()
                  ? Text::tr("none")
                  : Text::tr("%1, %2, lines: %3")
                        .arg(header.exported.name, sizeText(header.exported.size),
                             QString::number(header.exported.lines)),
              &figures);
    addFigure(Text::tr("SHA-256"), header.exported.digest, &figures);
    addFigure(Text::tr("Plugin"), header.plugin, &figures);
    const QMap<QString, int> codes = errorsOf(changes);
    for (auto code = codes.begin(); code != codes.end(); ++code)
        addFigure(Text::tr("Errors with the code %1").arg(code.key()),
                  QString::number(code.value()), &figures);
    QVariantHash &values = page->values;
    values.insert(key("title"), Text::tr("Pass of %1").arg(momentText(header.when)));
    values.insert(key("verdict"), figuresText(changes.summary));
    values.insert(key("figures"), figures);
    values.insert(key("kinds"), kindValues(changes.summary));
}

void tellPeople(const Changes &changes, PersonalTexts texts, QVariantHash *values)
{
    QVariantList people = texts == PersonalTexts::Shown ? peopleHtmlValues(changes)
                                                        : peopleNumbersHtmlValues(changes);
    if (people.size() > mostPeople) {
        values->insert(key("morePeople"), people.size() - mostPeople);
        people = people.mid(0, mostPeople);
    }
    values->insert(key("hasPeople"), true);
    values->insert(key("people"), people);
}

} // namespace

QString checkPageName(const SiteEntry &entry)
{
    return entry.page.section(QLatin1Char('.'), 0, 0) + QStringLiteral(".check.html");
}

SitePage sitePage(const SiteEntry &entry, PersonalTexts texts)
{
    SitePage page;
    Changes changes;
    const bool isRead = !entry.changesFile.isEmpty()
        && !readChangesFile(entry.changesFile, &changes);
    if (entry.record) {
        tellRecord(*entry.record, texts, &page);
    } else if (isRead) {
        tellPass(changes, &page);
    } else {
        page.note.severity = key("warning");
        page.note.what = Text::tr("pass");
        page.note.outcome = Text::tr("its changes cannot be read");
        page.values.insert(key("title"), Text::tr("Pass of %1").arg(momentText(entry.when)));
        page.values.insert(key("verdict"), page.note.outcome);
    }
    if (isRead)
        tellPeople(changes, texts, &page.values);
    if (!entry.checkPage.isEmpty())
        page.values.insert(key("check"), checkPageName(entry));
    page.values.insert(key("severity"), page.note.severity);
    page.note.madeOf = entry.madeOf;
    return page;
}
