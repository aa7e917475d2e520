// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What speaks against an export.
#include "host/gate/exportjudge.h"

#include "host/base/nearest.h"
#include "host/base/ownerfile.h"
#include "host/exportcheck/checkhtml.h"
#include "host/exportcheck/checkreport.h"
#include "host/exportcheck/checktexts.h"
#include "host/exportcheck/exportsource.h"
#include "host/exportcheck/rejects.h"
#include "host/rehearsal/verdict.h"
#include "host/report/htmlpage.h"
#include "host/report/jsonreport.h"

#include <QCoreApplication>
#include <QDir>
#include <QIODevice>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExportJudge)
};

const int shownFindings = 100; // of a kind, on a page

/// What was lost or gained, in texts of a limit.
const QString lost = QStringLiteral("lost");
const QString gained = QStringLiteral("gained");

Failure check(const JudgeSettings &settings, const JudgedFiles &files, ExportSource *source,
              CheckOutcome *outcome)
{
    StatementTrial trial(settings.stateTexts);
    ExportCheckSettings wishes;
    wishes.today = QDate::currentDate();
    wishes.trial = &trial;
    const ExportCheck check = checkExport(source->device(), wishes);
    outcome->file = source->name();
    outcome->fates = check.fates;
    outcome->findings = check.findings;
    outcome->columns = columnFigures(check.digest);
    if (files.lastGood.isEmpty())
        return {};
    ExportSource other(files.lastGood);
    if (const Failure failure = other.open())
        return failure;
    outcome->otherFile = other.name();
    outcome->comparison = compareExports(check.digest, readDigest(other.device()));
    outcome->columns = outcome->comparison->columns;
    outcome->findings = outcome->comparison->findings + outcome->findings;
    return {};
}

Failure writeCheck(const CheckOutcome &outcome, ExportSource *source, const QDir &folder)
{
    const QByteArray json = jsonReport(checkReport(outcome)) + '\n';
    if (const Failure failure = writeOwnerFile(folder.filePath(QStringLiteral("check.json")),
                                               [&json](QIODevice *file) { file->write(json); }))
        return failure;
    const bool hasRejects = outcome.count(Finding::Error) + outcome.count(Finding::Warning) > 0;
    if (hasRejects) {
        if (const Failure failure = writeRejects(folder.filePath(QStringLiteral("rejects.txt")),
                                                 source->device(), outcome.findings))
            return failure;
    }
    const QHash<int, QString> lines = source->lines(linesOfFindings(outcome, shownFindings));
    return writeHtmlPage(folder.filePath(QStringLiteral("check.html")), QStringLiteral("check"),
                         checkHtmlValues(outcome, lines, shownFindings));
}

/// The first place stands for all of them.
RefusalReason reasonOf(const CheckOutcome &outcome, const FindingGroup &group)
{
    // Without texts of people: the record outlives the export.
    const ExportFinding &first = outcome.findings.at(group.places.constFirst());
    const Finding words = told(first, PersonalTexts::Hidden);
    const int count = group.places.size();
    const QString place = placeText(first);
    const QString text = count == 1 ? place + words.text
                                    : Text::tr("%1: %2 places, the first: %3%4")
                                          .arg(findingTitle(*group.kind))
                                          .arg(count)
                                          .arg(place, words.text);
    return {words.code,
            words.becomes.isEmpty() ? text : text + QStringLiteral("; ") + words.becomes,
            words.remedy};
}

bool refuses(const JudgeSettings &settings, const FindingKind &kind)
{
    const QString code = QLatin1String(kind.code);
    return !settings.allowed.contains(code)
        && (settings.refuse.contains(severityName(kind.severity()))
            || settings.refuse.contains(code));
}

void judgeFindings(const JudgeSettings &settings, const CheckOutcome &outcome, GateRecord *record)
{
    const QVector<FindingGroup> groups = groupsOf(outcome.findings);
    for (const FindingGroup &group : groups) {
        record->findings.append(
            {QLatin1String(group.kind->code), group.kind->severity(), group.places.size()});
        if (refuses(settings, *group.kind))
            record->reasons.append(reasonOf(outcome, group));
    }
}

void judgeLimit(const LimitOutcome &outcome, GateRecord *record)
{
    record->limits.append(outcome);
    if (outcome.isExceeded())
        record->reasons.append({QStringLiteral("limit:") + outcome.limit.kind, excessText(outcome),
                                Text::tr("look at the people concerned; if it is right, raise the "
                                         "limit for this once")});
}

/// How many people have come and gone since the last good export.
void judgeComparison(const JudgeSettings &settings, const ExportComparison &comparison,
                     GateRecord *record)
{
    record->lost = comparison.lost;
    record->gained = comparison.gained;
    for (const Limit &limit : settings.limits) {
        if (!isOfExports(limit.kind))
            continue;
        const int found = limit.kind == lost ? comparison.lost : comparison.gained;
        if (const auto outcome = limitOutcome(limit, found, comparison.before))
            judgeLimit(*outcome, record);
    }
}

Failure judgeRehearsal(const JudgeSettings &settings, const JudgedFiles &files, GateRecord *record)
{
    const QDir folder(files.folder);
    Changes changes;
    if (const Failure failure = settings.rehearse(
            {files.exportFile, record->exported.name, settings.limits, files.after,
             folder.filePath(QStringLiteral("changes.json")),
             folder.filePath(QStringLiteral("rehearsal.html"))},
            &changes))
        return failure;
    record->rehearsal = RehearsedFigures {files.after.size(), tellingPeople(changes),
                                          changes.plan.hash, changes.summary};
    const QVector<LimitOutcome> outcomes = limitOutcomes(settings.limits, changes);
    for (const LimitOutcome &outcome : outcomes)
        judgeLimit(outcome, record);
    return {};
}

QStringList allCodes()
{
    QStringList codes {severityName(Finding::Error), severityName(Finding::Warning),
                       severityName(Finding::Note)};
    for (const FindingTopic &topic : findingTopics()) {
        for (const FindingKind &kind : topic.kinds)
            codes.append(QLatin1String(kind.code));
    }
    return codes;
}

} // namespace

Failure judgeExport(const JudgeSettings &settings, const JudgedFiles &files, bool isReleased,
                    GateRecord *record)
{
    ExportSource source(files.exportFile);
    CheckOutcome outcome;
    if (const Failure failure = source.open())
        return failure;
    if (const Failure failure = check(settings, files, &source, &outcome))
        return failure;
    outcome.file = record->exported.name;
    record->fates = outcome.fates;
    if (const Failure failure = writeCheck(outcome, &source, QDir(files.folder)))
        return failure;
    judgeFindings(settings, outcome, record);
    if (outcome.comparison)
        judgeComparison(settings, *outcome.comparison, record);
    const bool isRehearsed = settings.rehearse && (record->reasons.isEmpty() || isReleased);
    return isRehearsed ? judgeRehearsal(settings, files, record) : Failure();
}

bool isOfComparison(const QString &code)
{
    return code.startsWith(QLatin1String("W-AGAINST-")) && allCodes().contains(code);
}

QStringList standardRefusals()
{
    return {QStringLiteral("error"),
            QStringLiteral("W-FILE-HEADER"),
            QStringLiteral("W-LINE-HEADER"),
            QStringLiteral("W-AGAINST-EMPTY"),
            QStringLiteral("W-AGAINST-SAME"),
            QStringLiteral("W-AGAINST-CHANGED"),
            QStringLiteral("W-AGAINST-EXCHANGED")};
}

Failure checkRefusals(const QStringList &words)
{
    const QStringList codes = allCodes();
    for (const QString &word : words) {
        if (!codes.contains(word))
            return {ExitUsage,
                    Text::tr("'%1' is neither a severity (error, warning, note) nor the code of a "
                             "finding%2")
                        .arg(word, didYouMean(word, codes))};
    }
    return {};
}

QVector<Limit> standardGateLimits()
{
    QVector<Limit> limits = standardLimits();
    limits << Limit {lost, 5, true} << Limit {gained, 10, true}
           << Limit {QStringLiteral("errors"), 0, false};
    return limits;
}
