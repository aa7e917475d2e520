// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as figures in the text format of Prometheus.
#include "host/status/metrics.h"

#include "host/base/ownerfile.h"
#include "host/status/concerns.h"

#include <QIODevice>

namespace {

const char *const gauge = "gauge";
const char *const counter = "counter";

QByteArray escaped(QString text)
{
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\""))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .toUtf8();
}

QByteArray label(const char *name, const QString &value)
{
    return QByteArray(name) + "=\"" + escaped(value) + '"';
}

/// Collects families of figures.
class Families
{
public:
    void begin(const char *name, const char *type, const char *help)
    {
        family = QByteArray("talvenhr_") + name;
        text += "# HELP " + family + ' ' + help + '\n';
        text += "# TYPE " + family + ' ' + type + '\n';
    }

    void add(qint64 value, const QByteArray &labels = QByteArray())
    {
        text += family + (labels.isEmpty() ? QByteArray() : '{' + labels + '}') + ' '
            + QByteArray::number(value) + '\n';
    }

    void single(const char *name, const char *help, qint64 value)
    {
        begin(name, gauge, help);
        add(value);
    }

    /// Left out without a moment.
    void moment(const char *name, const char *help, const QDateTime &time)
    {
        if (time.isValid())
            single(name, help, time.toSecsSinceEpoch());
    }

    QByteArray text;

private:
    QByteArray family;
};

void addCounts(const KindCounts &counts, Families *families)
{
    for (const ChangeKind kind : changeKinds())
        families->add(counts[kind], label("kind", kindName(kind)));
}

void addMap(const QMap<QString, int> &counts, const char *name, Families *families)
{
    for (auto it = counts.begin(); it != counts.end(); ++it)
        families->add(it.value(), label(name, it.key()));
}

void addLastExport(const Status &status, const GateRecord &last, Families *families)
{
    families->moment("last_export_timestamp_seconds", "When the gate last decided on an export.",
                     last.when);
    families->single("last_export_refused",
                     "1 if the last export was refused, and brought something new.",
                     isRefused(last) ? 1 : 0);
    families->single("last_export_bytes", "Size of the last export.", last.exported.size);
    families->single("gate_seconds", "How long the gate took for the last export.", last.seconds);
    families->begin("export_lines", gauge, "Lines of the last export by what becomes of them.");
    families->add(last.fates.taken, label("fate", QStringLiteral("taken")));
    families->add(last.fates.header, label("fate", QStringLiteral("header")));
    families->add(last.fates.blank, label("fate", QStringLiteral("blank")));
    families->add(last.fates.dropped, label("fate", QStringLiteral("dropped")));
    families->begin("export_people_lost", gauge,
                    "People of the last good export who are not in the last one.");
    families->add(last.lost);
    if (!last.findings.isEmpty()) {
        families->begin("export_findings", gauge, "Findings in the last export by code.");
        for (const FindingCount &finding : last.findings)
            families->add(finding.count,
                          label("code", finding.code) + ','
                              + label("severity", severityName(finding.severity)));
    }
    if (last.rehearsal) {
        families->begin("rehearsal_changes", gauge,
                        "What the last export was rehearsed to change, by kind.");
        addCounts(last.rehearsal->summary, families);
    }
    if (const GateRecord *const passed = lastPassed(status.records))
        families->moment("last_passed_export_timestamp_seconds",
                         "When an export last went through the gate.", passed->when);
}

/// Records stay for ever, so what is counted over them never shrinks.
void addTotals(const Status &status, Families *families)
{
    QMap<QString, int> outcomes;
    for (const GateRecord::Outcome outcome :
         {GateRecord::Passed, GateRecord::Refused, GateRecord::Superseded})
        outcomes.insert(outcomeName(outcome), 0);
    QMap<QString, int> reasons;
    for (const GateRecord &record : status.records) {
        if (record.outcome != GateRecord::Passing)
            ++outcomes[outcomeName(record.outcome)];
        for (const RefusalReason &reason : record.reasons) {
            if (record.outcome == GateRecord::Refused)
                ++reasons[reason.code];
        }
    }
    families->begin("gate_exports_total", counter, "Exports at the gate by outcome.");
    addMap(outcomes, "outcome", families);
    if (reasons.isEmpty())
        return;
    families->begin("gate_refusals_total", counter,
                    "Reasons of refusals: a limit, or the code of a finding.");
    addMap(reasons, "reason", families);
}

/// Beside a server that is not ours, what the pass was rehearsed to.
void addWork(const PassStatus &pass, Families *families)
{
    const bool isReal = pass.source == PassStatus::FromChanges;
    if (pass.statements >= 0 && isReal)
        families->single("pass_statements", "Statements that the last pass has run.",
                         pass.statements);
    else if (pass.statements >= 0)
        families->single("rehearsal_statements",
                         "Statements that the last pass has run in its rehearsal.",
                         pass.statements);
    if (pass.errors.isEmpty())
        return;
    if (isReal)
        families->begin("pass_errors", gauge, "Errors of the last pass by code of the database.");
    else
        families->begin("rehearsal_errors", gauge,
                        "Errors in the rehearsal of the last pass by code of the database.");
    addMap(pass.errors, "code", families);
}

void addPass(const PassStatus &pass, Families *families)
{
    families->moment("last_pass_timestamp_seconds",
                     "When the last pass that is known of ran, at the latest.", pass.when);
    const bool isReal = pass.source == PassStatus::FromChanges;
    if (isReal && pass.summary && (*pass.summary)[ChangeKind::Errors] == 0)
        families->moment("last_success_timestamp_seconds",
                         "When the last pass ran, unless it had errors.", pass.when);
    addWork(pass, families);
    if (!isReal)
        return;
    families->single("pass_seconds", "How long the last pass took with the looks around it.",
                     pass.notBefore.secsTo(pass.when));
    if (pass.summary) {
        families->begin("pass_changes", gauge, "What the last pass changed, by kind.");
        addCounts(*pass.summary, families);
    }
    if (!pass.rows.isEmpty()) {
        families->begin("pass_rows", gauge, "Rows that the last pass changed, by table.");
        addMap(pass.rows, "table", families);
    }
}

void addWaiting(const Status &status, Families *families)
{
    QMap<QString, int> counts;
    for (const NotDone::What what :
         {NotDone::Branch, NotDone::Group, NotDone::LeaveNotAtRest, NotDone::LeaveCorrectedToday,
          NotDone::TestMode, NotDone::Refused})
        counts.insert(notDoneName(what), 0);
    for (const WaitingPerson &waiting : status.waiting)
        ++counts[notDoneName(waiting.what)];
    families->begin("waiting", gauge, "What the last pass left undone, by reason.");
    addMap(counts, "reason", families);
}

void addGate(const Status &status, Families *families)
{
    if (!status.sources.state.isEmpty()) {
        families->single("gate_failed", "1 if the gate's last run failed.",
                         status.gate.failed.isValid() ? 1 : 0);
        families->single("gate_stopped", "1 if the gate was stopped midway and has not run since.",
                         status.gate.stopped.isValid() ? 1 : 0);
    }
    if (!status.sources.incoming.isEmpty())
        families->single("deliveries_waiting", "Deliveries that wait for the gate.",
                         status.gate.deliveries);
}

void addPlaces(const Status &status, Families *families)
{
    if (!status.sources.place.isEmpty())
        families->single("export_unread", "1 while an export lies in place that no pass has read.",
                         isUnread(status) ? 1 : 0);
    if (isUnread(status))
        families->moment("export_unread_since_timestamp_seconds",
                         "Since when the export in place is unread.", status.place.since);
    if (status.folders.isEmpty())
        return;
    families->begin("folder_bytes", gauge, "What the folders of the gate hold.");
    for (const FolderStatus &folder : status.folders)
        families->add(folder.bytes, label("folder", folder.name));
}

} // namespace

QByteArray metricsText(const Status &status)
{
    Families families;
    families.single("status_level",
                    "What talvenhr status comes to: 0 ok, 1 warning, 2 critical, 3 unknown.",
                    static_cast<int>(levelOf(concernsOf(status))));
    families.moment("status_timestamp_seconds", "When these figures were taken.", status.now);
    families.single("late", "1 if no export has come for longer than it should take.",
                    status.isLate ? 1 : 0);
    if (const GateRecord *const last = lastRecord(status))
        addLastExport(status, *last, &families);
    addTotals(status, &families);
    addGate(status, &families);
    if (status.pass.source != PassStatus::Unknown) {
        addPass(status.pass, &families);
        addWaiting(status, &families);
    }
    addPlaces(status, &families);
    if (status.lossesAreKnown)
        families.single("lost_people", "People who are not as the passes should have left them.",
                        status.lost.size());
    if (status.database) {
        if (status.database->queue)
            families.single("terminal_queue_rows", "News that terminals have not fetched.",
                            *status.database->queue);
        families.single("pass_is_forced", "1 while the force variable is set.",
                        status.database->forced ? 1 : 0);
    }
    return families.text;
}

Failure writeMetrics(const Status &status, const QString &path)
{
    const QByteArray text = metricsText(status);
    return writeOwnerFile(
        path, [&text](QIODevice *file) { file->write(text); }, FileReaders::Everybody);
}
