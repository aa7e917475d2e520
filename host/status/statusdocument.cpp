// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a report: "talvenhr.status/1".
#include "host/status/statusreport.h"

#include "host/status/folderstatus.h"
#include "host/status/statustexts.h"

namespace {

QString key(const char *name)
{
    return QLatin1String(name);
}

Figure figure(const char *name, const QVariant &value)
{
    return {QLatin1String(name), QString(), value, QString()};
}

QVariant moment(const QDateTime &time)
{
    return time.isValid() ? QVariant(time.toUTC().toString(Qt::ISODate)) : QVariant();
}

QVariant countsValue(const std::optional<KindCounts> &counts)
{
    if (!counts)
        return {};
    QVariantMap map;
    for (const ChangeKind kind : changeKinds())
        map.insert(kindName(kind), (*counts)[kind]);
    return map;
}

QVariant recordValue(const GateRecord *record)
{
    if (!record)
        return {};
    QVariantList reasons;
    for (const RefusalReason &reason : record->reasons)
        reasons.append(QVariantMap {{key("code"), reason.code},
                                    {key("text"), reason.text},
                                    {key("remedy"), textOrNull(reason.remedy)}});
    return QVariantMap {{key("name"), record->name},
                        {key("outcome"), outcomeName(record->outcome)},
                        {key("when"), moment(record->when)},
                        {key("file"), record->exported.name},
                        {key("digest"), record->exported.digest},
                        {key("size"), record->exported.size},
                        {key("lines"), record->exported.lines},
                        {key("reasons"), reasons},
                        {key("released"), record->release.has_value()}};
}

/// Null where its folders are not named.
Figure gateFigure(const Status &status)
{
    const GateState &gate = status.gate;
    const StatusSources &sources = status.sources;
    if (sources.incoming.isEmpty() && sources.state.isEmpty())
        return figure("gate", {});
    return figure("gate",
                  QVariantMap {{key("atWork"), gate.isAtWork},
                               {key("stopped"), moment(gate.stopped)},
                               {key("failed"), moment(gate.failed)},
                               {key("failure"), textOrNull(gate.failure)},
                               {key("deliveries"), gate.deliveries},
                               {key("waitsSince"), moment(gate.waitsSince)}});
}

Section headSection(const Status &status, const QVector<Concern> &concerns)
{
    Section section;
    const GateRecord *const last = lastRecord(status);
    section.figures = {
        figure("when", moment(status.now)),
        figure("level", levelName(levelOf(concerns)).toLower()),
        figure("lastExport", recordValue(last)),
        figure("lastPassed", recordValue(lastPassed(status.records))),
        figure("late", status.isLate),
        figure("incoming",
               status.sources.incoming.isEmpty() ? QVariant() : QVariant(status.incomingFiles)),
        gateFigure(status),
        figure("nextPass", moment(nextPassDue(status)))};
    return section;
}

Section concernsSection(const QVector<Concern> &concerns)
{
    Section section;
    section.name = key("concerns");
    section.table.columns = {{key("level"), {}}, {key("text"), {}}, {key("remedy"), {}}};
    for (const Concern &concern : concerns)
        section.table.rows.append(
            {levelName(concern.level).toLower(), concern.text, textOrNull(concern.remedy)});
    return section;
}

Section placeSection(const Status &status)
{
    const PlaceStatus &place = status.place;
    Section section;
    section.name = key("place");
    section.figures = {figure("path", textOrNull(status.sources.place)),
                       figure("isThere", place.isThere),
                       figure("isUnread", isUnread(status)),
                       figure("since", moment(place.since)),
                       figure("size", place.size),
                       figure("record", textOrNull(place.record))};
    return section;
}

QVariant sourceValue(PassStatus::Source source)
{
    switch (source) {
    case PassStatus::FromChanges:
        return key("changes");
    case PassStatus::FromPlace:
        return key("place");
    case PassStatus::Unknown:
        break;
    }
    return {};
}

QVariantMap countMap(const QMap<QString, int> &counts)
{
    QVariantMap map;
    for (auto it = counts.begin(); it != counts.end(); ++it)
        map.insert(it.key(), it.value());
    return map;
}

Section passSection(const PassStatus &pass)
{
    Section section;
    section.name = key("lastPass");
    section.figures = {
        figure("source", sourceValue(pass.source)),
        figure("notBefore", moment(pass.notBefore)),
        figure("when", moment(pass.when)),
        figure("forced", pass.forced),
        figure("file", textOrNull(pass.file)),
        figure("digest", textOrNull(pass.exported.digest)),
        figure("summary", countsValue(pass.summary)),
        figure("errors", countMap(pass.errors)),
        figure("rows", countMap(pass.rows)),
        figure("statements", pass.statements < 0 ? QVariant() : QVariant(pass.statements))};
    return section;
}

QVariant nameValue(const Person &person, PersonalTexts texts)
{
    return texts == PersonalTexts::Hidden ? QVariant() : textOrNull(person.name);
}

Section waitingSection(const Status &status, PersonalTexts texts)
{
    Section section;
    section.name = key("waiting");
    section.table.columns = {
        {key("pamId"), {}}, {key("name"), {}}, {key("what"), {}}, {key("text"), {}}};
    for (const WaitingPerson &waiting : status.waiting)
        section.table.rows.append(
            {textOrNull(waiting.person.pamId), nameValue(waiting.person, texts),
             notDoneName(waiting.what),
             texts == PersonalTexts::Hidden ? QVariant() : textOrNull(waiting.text)});
    return section;
}

Section lostSection(const Status &status, PersonalTexts texts)
{
    Section section;
    section.name = key("lost");
    section.table.columns = {{key("pamId"), {}}, {key("name"), {}},     {key("record"), {}},
                             {key("words"), {}}, {key("remedies"), {}}, {key("uncertain"), {}}};
    for (const LostPerson &lost : status.lost) {
        QStringList remedies;
        for (const Remedy remedy : lost.remedies)
            remedies.append(remedyName(remedy));
        section.table.rows.append({textOrNull(lost.person.pamId), nameValue(lost.person, texts),
                                   lost.record, QVariant(missingWords(lost, texts)).toList(),
                                   QVariant(remedies).toList(), QVariant(lost.uncertain).toList()});
    }
    return section;
}

/// Null without a database.
Figure databaseFigure(const std::optional<DatabaseStatus> &database)
{
    if (!database)
        return figure("database", {});
    return figure(
        "database",
        QVariantMap {{key("forced"), database->forced},
                     {key("queue"), database->queue ? QVariant(*database->queue) : QVariant()},
                     {key("run"), textOrNull(database->run)}});
}

Section endSection(const Status &status, PersonalTexts texts)
{
    Section section;
    section.figures = {figure("lossesAreKnown", status.lossesAreKnown),
                       figure("newestIsJudged", newestIsJudged(status)),
                       figure("notJudged", status.notJudged),
                       figure("recovery", QVariant(recoverySteps(status, texts)).toList()),
                       databaseFigure(status.database)};
    return section;
}

Section foldersSection(const Status &status)
{
    Section section;
    section.name = key("folders");
    section.table.columns = {
        {key("name"), {}}, {key("path"), {}}, {key("files"), {}}, {key("bytes"), {}}};
    for (const FolderStatus &folder : status.folders)
        section.table.rows.append({folder.name, folder.path, folder.files, folder.bytes});
    return section;
}

Section unknownSection(const Status &status)
{
    Section section;
    section.name = key("unknown");
    section.table.columns = {{key("about"), {}}, {key("reason"), {}}};
    for (const UnknownMatter &matter : status.unknown)
        section.table.rows.append({matter.about, matter.reason});
    return section;
}

} // namespace

Report statusDocument(const Status &status, PersonalTexts texts)
{
    const QVector<Concern> concerns = concernsOf(status);
    Report report;
    report.format = key("talvenhr.status/1");
    report.sections = {
        headSection(status, concerns), concernsSection(concerns),     placeSection(status),
        passSection(status.pass),      waitingSection(status, texts), lostSection(status, texts),
        endSection(status, texts),     foldersSection(status),        unknownSection(status)};
    report.verdict.exitCode = exitCodeOf(status);
    return report;
}
