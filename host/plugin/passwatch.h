// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a run has done, taken from the plugin's own messages.
#pragma once

#include "host/plugin/runfigures.h"

#include <QDateTime>
#include <QString>
#include <QtGlobal>

enum class MessageEvent;

/// A tick of the plugin's timer.
struct Tick
{
    uint number = 0; ///< from 1; 0: there was none yet
    QDateTime moment;
};

/// Follows the passes through the messages of a plugin that runs at log level 2 at least.
///
/// A plain object without a lock, part of MessageLog.
class PassWatch
{
public:
    enum Event {
        Nothing,
        RecordBegan, ///< only at log level 3
        PassEnded, ///< by its last line; the force variable is still to be cleared
        PassOver, ///< all is written, and the connection closes
        ExportReading, ///< is about to begin, on this thread
        ExportMissing, ///< where the pass before had records, or there was none before
        DatabaseNotOpen, ///< a tick was lost
        PluginDisabled,
    };

    Event see(QtMsgType type, const QString &text);
    void countShown(QtMsgType type);

    const RunFigures &figures() const { return runFigures; }
    bool isPassRunning() const { return passRunning; }
    /// With which the last pass began.
    const Tick &tickOfPass() const { return passTick; }
    int recordsOfPass() const { return passRecords; }
    int recordsBegun() const { return begunRecords; }

private:
    void countPerson(MessageEvent event);

    RunFigures runFigures;
    Tick lastTick;
    Tick passTick;
    bool passRunning = false;
    bool passUnclosed = false; ///< between PassEnded and PassOver
    bool exportMissing = false;
    int passRecords = 0;
    int begunRecords = 0;
    int errorsBefore = 0; ///< the pass
};
