// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a report: a page of text.
#include "host/status/statusreport.h"

#include "host/base/oneline.h"
#include "host/status/folderstatus.h"
#include "host/status/statustexts.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(StatusReport)
};

QString ago(const QDateTime &moment, const Status &status)
{
    return Text::tr("%1 (%2 ago)").arg(momentText(moment), ageText(moment, status.now));
}

/// Why one was refused stands in the head.
QString exportText(const GateRecord &record, const Status &status)
{
    return Text::tr("%1, %2: %3, %4, lines: %5")
        .arg(ago(record.when, status), outcomeText(record), oneLine(record.exported.name),
             sizeText(record.exported.size), QString::number(record.exported.lines));
}

QString placeText(const Status &status)
{
    const PlaceStatus &place = status.place;
    if (status.sources.place.isEmpty())
        return Text::tr("unknown");
    if (!place.isThere)
        return Text::tr("nothing lies in '%1'").arg(status.sources.place);
    const QString what = place.record.isEmpty() ? Text::tr("a file the gate does not know")
                                                : Text::tr("export %1").arg(place.record);
    return isUnread(status) ? Text::tr("%1, unread since %2").arg(what, ago(place.since, status))
                            : Text::tr("%1, since %2").arg(what, ago(place.since, status));
}

/// " (by code: 2006 12, other 1)"; empty without errors.
QString errorsText(const QMap<QString, int> &errors)
{
    QStringList texts;
    for (auto it = errors.begin(); it != errors.end(); ++it)
        texts.append(QStringLiteral("%1 %2").arg(it.key()).arg(it.value()));
    return texts.isEmpty()
        ? QString()
        : Text::tr(" (errors by code: %1)").arg(texts.join(QStringLiteral(", ")));
}

QString passText(const Status &status)
{
    const PassStatus &pass = status.pass;
    const QString figures = pass.summary ? figuresText(*pass.summary) : QString();
    switch (pass.source) {
    case PassStatus::FromChanges:
        return (pass.forced ? Text::tr("%1, forced: %2") : Text::tr("%1: %2"))
            .arg(ago(pass.when, status), figures + errorsText(pass.errors));
    case PassStatus::FromPlace: {
        const QString when = pass.when.isValid()
            ? Text::tr("between %1 and %2, when the export was gone")
                  .arg(momentText(pass.notBefore), ago(pass.when, status))
            : Text::tr("after %1, when the export went into place").arg(momentText(pass.notBefore));
        return figures.isEmpty() ? when : Text::tr("%1; as rehearsed: %2").arg(when, figures);
    }
    case PassStatus::Unknown:
        break;
    }
    return Text::tr("unknown");
}

QString nextText(const Status &status)
{
    const QDateTime due = nextPassDue(status);
    if (status.database && status.database->forced)
        return due.isValid()
            ? Text::tr("with the next tick, for it is forced; by %1").arg(momentText(due))
            : Text::tr("with the next tick, for it is forced");
    const QString every = status.sources.passSeconds > 0
        ? Text::tr("every %1").arg(durationText(status.sources.passSeconds))
        : QString();
    if (due >= status.now)
        return Text::tr("by %1, %2").arg(momentText(due), every);
    return every.isEmpty() ? Text::tr("unknown") : every;
}

QString foldersText(const Status &status)
{
    QStringList texts;
    for (const FolderStatus &folder : status.folders)
        texts.append(Text::tr("%1 %2 in files: %3")
                         .arg(folder.name, sizeText(folder.bytes), QString::number(folder.files)));
    return texts.join(QStringLiteral(", "));
}

/// One line for each thing that is waited for.
QString waitingText(const Status &status)
{
    QStringList texts;
    for (const NotDone::What what :
         {NotDone::Branch, NotDone::Group, NotDone::Refused, NotDone::LeaveNotAtRest,
          NotDone::LeaveCorrectedToday, NotDone::TestMode}) {
        const auto count = std::count_if(
            status.waiting.cbegin(), status.waiting.cend(),
            [what](const WaitingPerson &waiting) { return waiting.what == what; });
        if (count > 0)
            texts.append(Text::tr("for %2: %1").arg(count).arg(whatText(what)));
    }
    if (texts.isEmpty() && status.pass.source == PassStatus::Unknown)
        return Text::tr("unknown");
    return texts.isEmpty() ? Text::tr("nobody") : texts.join(QStringLiteral("; "));
}

Section headSection(const QVector<Concern> &concerns)
{
    Section section;
    section.table.columns = {{QString(), Text::tr("Status")}, {QString(), QString()}};
    if (concerns.isEmpty())
        section.table.rows.append(
            {levelName(Level::Ok), Text::tr("exports and passes are as they should be")});
    for (const Concern &concern : concerns)
        section.table.rows.append({levelName(concern.level),
                                   concern.remedy.isEmpty()
                                       ? concern.text
                                       : Text::tr("%1. Do: %2").arg(concern.text, concern.remedy)});
    return section;
}

QString moreText(int count)
{
    return Text::tr("… and %1 more; --all shows them").arg(count);
}

Section lostSection(const Status &status, PersonalTexts texts, int shownPeople)
{
    Section section;
    section.title = Text::tr("Lost by a pass");
    section.table.columns = {{QString(), Text::tr("Person")},
                             {QString(), Text::tr("Brought back by")},
                             {QString(), Text::tr("Missing")}};
    for (const LostPerson &lost : status.lost.mid(0, shownPeople)) {
        QStringList remedies;
        for (const Remedy remedy : lost.remedies)
            remedies.append(remedyText(remedy));
        section.table.rows.append({personText(lost.person, texts),
                                   remedies.join(QStringLiteral("; ")), missingText(lost, texts)});
    }
    if (status.lost.size() > shownPeople)
        section.table.rows.append(
            {QStringLiteral("…"), QString(), moreText(status.lost.size() - shownPeople)});
    return section;
}

/// Zero means little before the newest export is looked at.
QString lostText(const Status &status)
{
    if (!status.lossesAreKnown)
        return Text::tr("unknown");
    QStringList parts {Text::tr("people: %1").arg(status.lost.size())};
    if (!newestIsJudged(status))
        parts.append(Text::tr("the newest export is not looked at yet: its pass may still be to "
                              "come, or at work"));
    if (status.notJudged > 0)
        parts.append(Text::tr("exports that are not looked at, for the next one came within ten "
                              "minutes of their pass: %1")
                         .arg(status.notJudged));
    return parts.join(QStringLiteral("; "));
}

/// Those who wait for somebody.
Section waitingSection(const Status &status, PersonalTexts texts, int shownPeople)
{
    Section section;
    section.title = Text::tr("Waiting for somebody");
    section.table.columns = {{QString(), Text::tr("Person")}, {QString(), Text::tr("For")}};
    const QVector<WaitingFor> people = waitingForSomebody(status);
    for (const WaitingFor &waiting : people.mid(0, shownPeople))
        section.table.rows.append(
            {personText(waiting.person, texts), waiting.reasons.join(QStringLiteral("; "))});
    if (people.size() > shownPeople)
        section.table.rows.append({QStringLiteral("…"), moreText(people.size() - shownPeople)});
    return section;
}

} // namespace

Section statusFigures(const Status &status)
{
    Section section;
    const auto add = [&section](const QString &label, const QString &shown) {
        section.figures.append({QString(), label, QVariant(), shown});
    };
    const GateRecord *const last = lastRecord(status);
    const GateRecord *const passed = lastPassed(status.records);
    add(Text::tr("Last export"), last ? exportText(*last, status) : Text::tr("unknown"));
    if (passed && passed != last)
        add(Text::tr("Last passed"), exportText(*passed, status));
    add(Text::tr("In place"), placeText(status));
    if (!status.sources.incoming.isEmpty())
        add(Text::tr("Incoming"),
            status.gate.isAtWork
                ? Text::tr("files: %1; the gate is at work").arg(status.incomingFiles)
                : Text::tr("files: %1").arg(status.incomingFiles));
    add(Text::tr("Last pass"), passText(status));
    add(Text::tr("Waiting"), waitingText(status));
    add(Text::tr("Lost"), lostText(status));
    add(Text::tr("Next pass"), nextText(status));
    if (status.database) {
        add(Text::tr("Terminals"),
            status.database->queue ? Text::tr("news not fetched: %1").arg(*status.database->queue)
                                   : Text::tr("unknown"));
        add(Text::tr("talvenhr run"),
            status.database->run.isEmpty() ? Text::tr("nobody") : status.database->run);
    }
    if (!status.folders.isEmpty())
        add(Text::tr("Folders"), foldersText(status));
    for (const UnknownMatter &matter : status.unknown) {
        if (!matter.isTrouble)
            add(Text::tr("Not known"), Text::tr("%1: %2").arg(matter.about, matter.reason));
    }
    return section;
}

Report statusPage(const Status &status, PersonalTexts texts, int shownPeople)
{
    Report report;
    report.sections = {headSection(concernsOf(status)), statusFigures(status)};
    const Section waiting = waitingSection(status, texts, shownPeople);
    if (!waiting.table.rows.isEmpty())
        report.sections.append(waiting);
    if (!status.lost.isEmpty())
        report.sections.append(lostSection(status, texts, shownPeople));
    report.verdict.exitCode = exitCodeOf(status);
    return report;
}

QString recoveryText(const Status &status, PersonalTexts texts)
{
    const QStringList steps = recoverySteps(status, texts);
    return steps.isEmpty() ? QString()
                           : Text::tr("To bring back what is lost, in this order, in a "
                                      "shell (mariadb takes the login of an administrator of the "
                                      "server from ~/.my.cnf, or by --user and --password):\n\n"
                                      "    %1\n")
                                 .arg(steps.join(QStringLiteral("\n    ")));
}

ExitCode exitCodeOf(const Status &status)
{
    if (!status.databaseTrouble.isEmpty())
        return ExitDatabase;
    return concernsOf(status).isEmpty() ? ExitClean : ExitErrors;
}
