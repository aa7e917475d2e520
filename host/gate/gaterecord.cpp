// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What became of one export at the gate.
#include "host/gate/gaterecord.h"

#include "host/base/ownerfile.h"
#include "host/report/jsonreport.h"
#include "host/report/report.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateRecord)
};

const QString format = QStringLiteral("talvenhr.gate/1");

struct OutcomeName
{
    GateRecord::Outcome outcome;
    const char *name;
};

const OutcomeName outcomeNames[] = {{GateRecord::Passing, "passing"},
                                    {GateRecord::Passed, "passed"},
                                    {GateRecord::Refused, "refused"},
                                    {GateRecord::Superseded, "superseded"}};

QVariant moment(const QDateTime &time)
{
    return time.isValid() ? QVariant(time.toUTC().toString(Qt::ISODateWithMs)) : QVariant();
}

QVariant rightsValue(int rights)
{
    return rights == 0 ? QVariant()
                       : QVariant(QStringLiteral("%1").arg(rights, 4, 8, QLatin1Char('0')));
}

QVariantMap exportMap(const ExportIdentity &exported)
{
    return {{QStringLiteral("file"), exported.name},
            {QStringLiteral("digest"), exported.digest},
            {QStringLiteral("size"), exported.size},
            {QStringLiteral("lines"), exported.lines}};
}

QVariantMap fatesMap(const FateCounts &fates)
{
    return {{QStringLiteral("taken"), fates.taken},
            {QStringLiteral("header"), fates.header},
            {QStringLiteral("blank"), fates.blank},
            {QStringLiteral("dropped"), fates.dropped}};
}

QVariantList findingList(const QVector<FindingCount> &findings)
{
    QVariantList list;
    for (const FindingCount &finding : findings)
        list.append(QVariantMap {{QStringLiteral("code"), finding.code},
                                 {QStringLiteral("severity"), severityName(finding.severity)},
                                 {QStringLiteral("count"), finding.count}});
    return list;
}

QVariantList limitList(const QVector<LimitOutcome> &limits)
{
    QVariantList list;
    for (const LimitOutcome &outcome : limits)
        list.append(QVariantMap {{QStringLiteral("kind"), outcome.limit.kind},
                                 {QStringLiteral("limit"), limitText(outcome.limit)},
                                 {QStringLiteral("allowed"), outcome.allowed},
                                 {QStringLiteral("found"), outcome.found}});
    return list;
}

QVariantList reasonList(const QVector<RefusalReason> &reasons)
{
    QVariantList list;
    for (const RefusalReason &reason : reasons)
        list.append(QVariantMap {{QStringLiteral("code"), reason.code},
                                 {QStringLiteral("text"), reason.text},
                                 {QStringLiteral("remedy"), textOrNull(reason.remedy)}});
    return list;
}

QVariant rehearsalValue(const std::optional<RehearsedFigures> &rehearsal)
{
    if (!rehearsal)
        return {};
    QVariantMap summary;
    for (const ChangeKind kind : changeKinds())
        summary.insert(kindName(kind), rehearsal->summary[kind]);
    return QVariantMap {{QStringLiteral("after"), rehearsal->after},
                        {QStringLiteral("people"), rehearsal->people},
                        {QStringLiteral("plan"), rehearsal->plan},
                        {QStringLiteral("summary"), summary}};
}

QVariant releaseValue(const std::optional<Release> &release)
{
    if (!release)
        return {};
    return QVariantMap {{QStringLiteral("by"), release->by},
                        {QStringLiteral("reason"), release->reason},
                        {QStringLiteral("allowed"), release->allowed}};
}

/// Reads the members of one object.
class Members
{
public:
    explicit Members(const QJsonValue &value) :
        object(value.toObject())
    { }

    QString text(const char *name) const { return object.value(QLatin1String(name)).toString(); }
    int number(const char *name) const { return object.value(QLatin1String(name)).toInt(); }
    double real(const char *name) const { return object.value(QLatin1String(name)).toDouble(); }
    qint64 big(const char *name) const
    {
        return object.value(QLatin1String(name)).toVariant().toLongLong();
    }
    QDateTime moment(const char *name) const
    {
        return QDateTime::fromString(text(name), Qt::ISODateWithMs);
    }
    bool has(const char *name) const { return object.value(QLatin1String(name)).isObject(); }
    QJsonValue value(const char *name) const { return object.value(QLatin1String(name)); }
    QJsonArray list(const char *name) const { return value(name).toArray(); }

private:
    QJsonObject object;
};

std::optional<GateRecord::Outcome> outcomeOf(const QString &name)
{
    for (const OutcomeName &known : outcomeNames) {
        if (name == QLatin1String(known.name))
            return known.outcome;
    }
    return {};
}

Finding::Severity severityOf(const QString &name)
{
    for (const Finding::Severity severity : {Finding::Error, Finding::Warning}) {
        if (severityName(severity) == name)
            return severity;
    }
    return Finding::Note;
}

RehearsedFigures rehearsalOf(const Members &members)
{
    RehearsedFigures figures {members.number("after"), members.number("people"),
                              members.text("plan"), KindCounts()};
    const QJsonObject summary = members.value("summary").toObject();
    for (const ChangeKind kind : changeKinds())
        figures.summary[kind] = summary.value(kindName(kind)).toVariant().toLongLong();
    return figures;
}

LimitOutcome limitOf(const Members &members)
{
    LimitOutcome outcome;
    // A record of a newer program may have a kind that is not known here.
    if (readLimit(members.text("kind") + QLatin1Char('=')
                      + members.text("limit").remove(QLatin1Char(' ')),
                  &outcome.limit))
        outcome.limit.kind = members.text("kind");
    outcome.allowed = members.real("allowed");
    outcome.found = members.real("found");
    return outcome;
}

void readLists(const Members &members, GateRecord *record)
{
    const QJsonArray findings = members.list("findings");
    for (const QJsonValue &value : findings) {
        const Members finding(value);
        record->findings.append(
            {finding.text("code"), severityOf(finding.text("severity")), finding.number("count")});
    }
    const QJsonArray limits = members.list("limits");
    for (const QJsonValue &value : limits)
        record->limits.append(limitOf(Members(value)));
    const QJsonArray reasons = members.list("reasons");
    for (const QJsonValue &value : reasons) {
        const Members reason(value);
        record->reasons.append({reason.text("code"), reason.text("text"), reason.text("remedy")});
    }
}

/// Empty if nothing is wrong.
QString readMembers(const Members &members, GateRecord *record)
{
    if (members.text("format") != format)
        return Text::tr("its format is not '%1'").arg(format);
    const std::optional<GateRecord::Outcome> outcome = outcomeOf(members.text("outcome"));
    if (!outcome)
        return Text::tr("'%1' is no outcome").arg(members.text("outcome"));
    record->outcome = *outcome;
    record->name = members.text("name");
    record->when = members.moment("when");
    record->fileTime = members.moment("fileTime");
    const Members exported(members.value("export"));
    record->exported = {exported.text("file"), exported.text("digest"), exported.big("size"),
                        exported.number("lines")};
    record->rights = members.text("rights").toInt(nullptr, 8);
    record->placedDigest = members.text("placedDigest");
    record->comparedWith = members.text("comparedWith");
    record->comparedWhen = members.moment("comparedWhen");
    record->replaced = members.text("replaced");
    const Members fates(members.value("fates"));
    record->fates = {fates.number("taken"), fates.number("header"), fates.number("blank"),
                     fates.number("dropped")};
    record->lost = members.number("lost");
    record->gained = members.number("gained");
    if (members.has("rehearsal"))
        record->rehearsal = rehearsalOf(Members(members.value("rehearsal")));
    readLists(members, record);
    record->mendedCells = members.number("mendedCells");
    if (members.has("release")) {
        const Members release(members.value("release"));
        record->release = Release {release.text("by"), release.text("reason"), {}};
        const QJsonArray allowed = release.list("allowed");
        for (const QJsonValue &limit : allowed)
            record->release->allowed.append(limit.toString());
    }
    record->seconds = members.number("seconds");
    record->isNothingNew = members.value("nothingNew").toBool();
    // Those who wrote none had told it.
    record->isTold = members.value("told").toBool(true);
    return {};
}

} // namespace

QString outcomeName(GateRecord::Outcome outcome)
{
    for (const OutcomeName &known : outcomeNames) {
        if (known.outcome == outcome)
            return QLatin1String(known.name);
    }
    return {};
}

bool isGood(const GateRecord &record)
{
    // Reasons that are not about what it holds.
    static const QStringList otherReasons {QStringLiteral("seen"), QStringLiteral("older"),
                                           QStringLiteral("hold"), QStringLiteral("uncompared")};
    const bool isReleased = record.release && record.release->allowed.isEmpty();
    return record.outcome == GateRecord::Passed
        && (!isReleased
            || std::all_of(
                record.reasons.cbegin(), record.reasons.cend(),
                [](const RefusalReason &reason) { return otherReasons.contains(reason.code); }));
}

QString recordEnding()
{
    return QStringLiteral(".gate.json");
}

QByteArray gateRecordJson(const GateRecord &record)
{
    const auto member = [](const char *name, const QVariant &value) {
        return qMakePair(QString::fromLatin1(name), jsonValue(value));
    };
    return jsonObject({member("format", format),
                       member("name", record.name),
                       member("outcome", outcomeName(record.outcome)),
                       member("when", moment(record.when)),
                       member("fileTime", moment(record.fileTime)),
                       member("rights", rightsValue(record.rights)),
                       member("export", exportMap(record.exported)),
                       member("placedDigest", textOrNull(record.placedDigest)),
                       member("comparedWith", textOrNull(record.comparedWith)),
                       member("comparedWhen", moment(record.comparedWhen)),
                       member("replaced", textOrNull(record.replaced)),
                       member("fates", fatesMap(record.fates)),
                       member("lost", record.lost),
                       member("gained", record.gained),
                       member("findings", findingList(record.findings)),
                       member("rehearsal", rehearsalValue(record.rehearsal)),
                       member("limits", limitList(record.limits)),
                       member("reasons", reasonList(record.reasons)),
                       member("mendedCells", record.mendedCells),
                       member("release", releaseValue(record.release)),
                       member("seconds", record.seconds),
                       member("nothingNew", record.isNothingNew),
                       member("told", record.isTold)})
        + '\n';
}

Failure writeGateRecord(const GateRecord &record, const QString &path)
{
    const QByteArray json = gateRecordJson(record);
    return writeOwnerFile(path, [&json](QIODevice *file) { file->write(json); });
}

Failure readGateRecord(const QString &path, GateRecord *record)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(path, file.errorString())};
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    *record = GateRecord();
    const QString trouble = document.isObject()
        ? readMembers(Members(document.object()), record)
        : Text::tr("it is no JSON object: %1").arg(error.errorString());
    if (trouble.isEmpty())
        return {};
    return {ExitUsage, Text::tr("'%1' is no record of the gate: %2").arg(path, trouble)};
}

QVector<GateRecord> readGateRecords(const QString &folder, QStringList *unreadable)
{
    QVector<GateRecord> records;
    const QDir directory(folder);
    const QStringList names = directory.entryList({QLatin1Char('*') + recordEnding()}, QDir::Files,
                                                  QDir::Name);
    for (const QString &name : names) {
        GateRecord record;
        if (!readGateRecord(directory.filePath(name), &record))
            records.append(record);
        else if (unreadable)
            unreadable->append(directory.filePath(name));
    }
    std::stable_sort(
        records.begin(), records.end(),
        [](const GateRecord &one, const GateRecord &other) { return one.when < other.when; });
    return records;
}
