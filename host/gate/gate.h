// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The road of an export from its delivery to the place where the plugin finds it.
#pragma once

#include "host/base/failure.h"
#include "host/gate/exportjudge.h"
#include "host/gate/gatearchive.h"
#include "host/gate/gatelock.h"
#include "host/gate/gatework.h"
#include "host/gate/incoming.h"
#include "host/gate/mend.h"
#include "host/gate/placement.h"

#include <functional>

/// The settings of the gate.
struct GateSettings
{
    IncomingWishes incoming;
    QString place; ///< the plugin's importFile
    bool isRemovedWhenRead = true; ///< the plugin's deleteFile
    QString archive; ///< folder
    QString refused; ///< folder
    QString state; ///< folder
    int keepDays = 90;
    bool holdsFirst = false; ///< the first export waits for a person
    JudgeSettings judge;
    /// When the server began whose export command this is: what went through since then is what it
    /// remembers. Nothing for a freshly started one.
    std::optional<QDateTime> serverSince;
    MendWishes mend;
    QString passedHook; ///< command lines; empty: none
    QString refusedHook;
    QString lateHook;
    int lateAfter = 0; ///< hours without a delivery; 0: never late
};

/// One export that a person lets through.
struct ReleaseWish
{
    QString what; ///< the name of a refused one or of a file about it, or the path of a delivery
    Release release;
    bool replacesNewer = false; ///< also a newer one that lies in place unread
};

/// What a gate has come to.
struct GateResult
{
    QVector<GateRecord> decided; ///< in their order
    QStringList waiting; ///< deliveries that are not whole yet
    QStringList news; ///< what was finished that another gate had begun
    QStringList warnings;
    bool isLate = false;

    bool hasRefused() const;
};

/// The gate. Whatever happens to it at any moment, the plugin finds a sound export or none, and no
/// delivery is lost: it is removed from where it was delivered only when all else is done.
///
/// Owned by a command and used on its thread.
class Gate
{
public:
    explicit Gate(const GateSettings &gateSettings);
    ~Gate();

    /// Told before each step, by a name of its own; for tests.
    void setStepWatch(const std::function<void(const char *step)> &watch) { atStep = watch; }

    /// Decides about all that was delivered: the newest that is sound goes through. Fails where
    /// nothing could be decided; the delivery stays then, for the next time.
    Failure run(GateResult *result);
    /// Lets one export through in spite of what is found.
    Failure release(const ReleaseWish &wish, GateResult *result);

private:
    // gate.cpp
    Failure open(GateResult *result);
    void lookAtPlace(GateResult *result) const;
    Failure recover(GateResult *result);
    Failure refuseForeign(GateResult *result);
    bool isStillThere(const GateRecord &record) const;
    Failure takeDeliveries(GateResult *result);
    Failure removeLeftOver(GateResult *result);
    void step(const char *name) const;

    // gate_release.cpp
    const GateRecord *recordOf(const QString &what) const;
    bool isThroughAlready(const QString &digest, const ReleaseWish &wish, GateResult *result) const;
    Failure findKept(const GateRecord &record, Delivery *delivery) const;
    Failure findDelivered(const QString &path, Delivery *delivery) const;
    Failure checkWhole(const Delivery &delivery) const;
    Failure checkReplaced(const Delivery &delivery) const;
    static Failure checkReleased(const GateRecord &record);

    // gate_decision.cpp
    Failure decide(const Delivery &delivery, const std::optional<Release> &release,
                   GateResult *result);
    Failure takeIn(const Delivery &delivery, GateRecord *record);
    Failure judge(const std::optional<Release> &release, GateRecord *record, GateResult *result);
    bool followsNewer(const GateRecord &record) const;
    void judgeAge(GateRecord *record) const;
    const GateRecord *releasedSince(const GateRecord &record) const;
    Failure unpackLastGood(const GateRecord &good, JudgedFiles *files, GateRecord *record) const;
    Failure unpackTaken(QStringList *files, GateResult *result) const;

    // gate_filing.cpp
    Failure letThrough(GateRecord *record);
    Failure checkPlace() const;
    Failure supersede(GateRecord *record);
    Failure refuse(GateRecord *record);
    Failure fileReports(const GateRecord &record);

    // gate_telling.cpp
    Failure finish(const Delivery &delivery, GateRecord record, GateResult *result);
    Failure finishAgain(const Delivery &delivery, const GateRecord &record, GateResult *result);
    Failure remove(const Delivery &delivery);
    void tell(GateRecord *record, GateResult *result);
    void tellAgain(GateResult *result);
    void runHook(const QString &command, const QByteArray &json, GateResult *result) const;
    void lookForLateness(GateResult *result);

    const GateSettings settings;
    GateArchive archive;
    Placement placement;
    const GateWork work;
    GateLock lock;
    /// This gate has let one through, or seen that there is no news: what is older is superseded.
    bool newestIsKnown = false;
    std::function<void(const char *step)> atStep;
};
