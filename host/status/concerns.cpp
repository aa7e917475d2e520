// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What somebody has to look at.
#include "host/status/concerns.h"

#include "host/base/oneline.h"
#include "host/status/statustexts.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Concerns)
};

const qint64 graceSeconds = 600;
const qint64 unknownInterval = 86400; // seconds that an export may lie in place or be delivered

/// Collects what is to be said, by topic.
class Concerns
{
public:
    explicit Concerns(const Status &wholeStatus) :
        status(wholeStatus)
    { }

    QVector<Concern> all()
    {
        tellGate();
        tellExports();
        tellPlace();
        tellPass();
        tellLosses();
        tellUnknown();
        std::stable_sort(concerns.begin(), concerns.end(),
                         [](const Concern &one, const Concern &other) {
                             return rank(one.level) < rank(other.level);
                         });
        return concerns;
    }

private:
    static int rank(Level level)
    {
        switch (level) {
        case Level::Critical:
            return 0;
        case Level::Warning:
            return 1;
        case Level::Unknown:
            return 2;
        case Level::Ok:
            break;
        }
        return 3;
    }

    void add(Level level, const QString &text, const QString &remedy = QString())
    {
        concerns.append({level, text, remedy});
    }

    void tellGate()
    {
        const GateState &gate = status.gate;
        if (gate.failed.isValid())
            // What waits, or has nowhere to come to, is an export that the plugin does not get.
            add(gate.deliveries > 0 || gate.isWithoutIncoming ? Level::Critical : Level::Warning,
                Text::tr("the gate failed on %1: %2; deliveries that wait: %3")
                    .arg(momentText(gate.failed), oneLine(gate.failure),
                         QString::number(gate.deliveries)),
                Text::tr("mend what it names, and run 'talvenhr gate' again"));
        const GateRecord *const last = lastRecord(status);
        if (last && last->outcome == GateRecord::Passing
            && last->when.secsTo(status.now) > graceSeconds)
            add(Level::Warning,
                Text::tr("the gate was stopped while it put an export in place, %1 ago")
                    .arg(ageText(last->when, status.now)),
                Text::tr("run 'talvenhr gate', which ends its road"));
        else if (gate.stopped.isValid())
            add(Level::Warning,
                Text::tr("the gate was stopped midway, %1 ago; deliveries that wait: %2")
                    .arg(ageText(gate.stopped, status.now), QString::number(gate.deliveries)),
                Text::tr("run 'talvenhr gate', which begins anew"));
        tellDeliveries();
    }

    void tellDeliveries()
    {
        const GateState &gate = status.gate;
        const qint64 patience = status.sources.lateAfter > 0 ? status.sources.lateAfter
                                                             : unknownInterval;
        if (gate.waitsSince.isValid() && gate.waitsSince.secsTo(status.now) > patience)
            add(Level::Warning,
                Text::tr("deliveries that wait for the gate: %1, the oldest for %2")
                    .arg(QString::number(gate.deliveries), ageText(gate.waitsSince, status.now)),
                Text::tr("see whether 'talvenhr gate' is called, and what it says"));
    }

    void tellExports()
    {
        const GateRecord *const last = lastRecord(status);
        if (status.isLate)
            add(Level::Critical,
                last ? Text::tr("no export has come for %1").arg(ageText(last->when, status.now))
                     : Text::tr("no export has come yet, and one is late"),
                Text::tr("ask whoever runs the HR system"));
        if (!last)
            return;
        if (isRefused(*last))
            add(Level::Critical, Text::tr("the last export was refused: %1").arg(reasonText(*last)),
                refusalRemedy(*last));
        const GateRecord *const passed = lastPassed(status.records);
        if (passed && passed->fates.dropped > 0)
            add(Level::Warning,
                Text::tr("lines of the last export that passed, which come to nothing: %1")
                    .arg(passed->fates.dropped),
                Text::tr("see %1.check.html in the archive").arg(passed->name));
    }

    void tellPlace()
    {
        if (!isUnread(status))
            return;
        if (status.place.record.isEmpty() && !status.records.isEmpty())
            add(Level::Warning, Text::tr("what lies in place has not come through the gate"),
                Text::tr("see who writes '%1'").arg(status.sources.place));
        const qint64 interval = status.sources.passSeconds > 0
            ? 2 * status.sources.passSeconds + graceSeconds
            : unknownInterval;
        if (status.place.since.secsTo(status.now) > interval)
            add(Level::Critical,
                Text::tr("the export in place has not been read for %1")
                    .arg(ageText(status.place.since, status.now)),
                Text::tr("see whether the attendance server runs with the plugin enabled, and "
                         "reaches its database"));
    }

    void tellPass()
    {
        const PassStatus &pass = status.pass;
        const qint64 errors = pass.summary ? (*pass.summary)[ChangeKind::Errors] : 0;
        const bool isRehearsed = pass.source == PassStatus::FromPlace;
        if (errors > 0)
            add(Level::Critical,
                isRehearsed ? Text::tr("errors in the rehearsal of the last pass: %1").arg(errors)
                            : Text::tr("errors of the last pass: %1").arg(errors),
                Text::tr("docs/recovery.md tells what each of them costs"));
        const int waiting = waitingForSomebody(status).size();
        if (waiting > 0)
            add(Level::Warning,
                Text::tr("people of whom the last pass has left something undone: %1").arg(waiting),
                Text::tr("see below who waits, and for what"));
        const bool isOwn = pass.source == PassStatus::FromChanges;
        const qint64 interval = status.sources.passSeconds;
        if (isOwn && interval > 0 && pass.when.secsTo(status.now) > 2 * interval + graceSeconds)
            add(Level::Critical, Text::tr("no pass for %1").arg(ageText(pass.when, status.now)),
                Text::tr("see whether 'talvenhr run' or the attendance server is at work"));
    }

    void tellLosses()
    {
        const auto certain = std::count_if(
            status.lost.cbegin(), status.lost.cend(),
            [](const LostPerson &lost) { return lost.uncertain.isEmpty(); });
        const QString remedy = Text::tr("see below who they are and what brings it back");
        if (certain > 0)
            add(Level::Critical, Text::tr("people whom a pass has lost: %1").arg(certain), remedy);
        else if (!status.lost.isEmpty())
            add(Level::Warning,
                Text::tr("people whom a pass may have lost: %1").arg(status.lost.size()), remedy);
    }

    void tellUnknown()
    {
        if (!status.databaseTrouble.isEmpty())
            add(Level::Unknown, status.databaseTrouble);
        for (const UnknownMatter &matter : status.unknown) {
            if (matter.isTrouble)
                add(Level::Unknown, Text::tr("%1: %2").arg(matter.about, matter.reason));
        }
        if (!status.records.isEmpty() || status.pass.source != PassStatus::Unknown)
            return;
        if (status.gate.isNew)
            add(Level::Unknown,
                Text::tr("the gate has decided on nothing yet; deliveries that wait: %1")
                    .arg(status.gate.deliveries),
                Text::tr("run 'talvenhr gate' once an export was delivered"));
        else if (status.sources.archive.isEmpty())
            add(Level::Unknown, Text::tr("nothing is known of any export or pass"),
                Text::tr("name the folders of the gate, or with --changes those of passes"));
        else
            add(Level::Unknown, Text::tr("nothing is known of any export or pass"));
    }

    const Status &status;
    QVector<Concern> concerns;
};

} // namespace

QString levelName(Level level)
{
    switch (level) {
    case Level::Ok:
        return QStringLiteral("OK");
    case Level::Warning:
        return QStringLiteral("WARNING");
    case Level::Critical:
        return QStringLiteral("CRITICAL");
    case Level::Unknown:
        break;
    }
    return QStringLiteral("UNKNOWN");
}

QVector<Concern> concernsOf(const Status &status)
{
    return Concerns(status).all();
}

Level levelOf(const QVector<Concern> &concerns)
{
    return concerns.isEmpty() ? Level::Ok : concerns.constFirst().level;
}

QString verdictOf(const QVector<Concern> &concerns)
{
    QStringList texts;
    for (const Concern &concern : concerns)
        texts.append(concern.text);
    const QString text = texts.isEmpty() ? Text::tr("exports and passes are as they should be")
                                         : texts.join(QStringLiteral("; "));
    return QStringLiteral("%1 - %2").arg(levelName(levelOf(concerns)), text);
}
