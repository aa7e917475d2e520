// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a run has done, taken from the plugin's own messages.
#include "host/plugin/passwatch.h"

#include "host/catalogue/messages.h"

PassWatch::Event PassWatch::see(QtMsgType type, const QString &text)
{
    const PluginMessage *const message = findMessage(type, text);
    if (!message)
        return Nothing;
    countPerson(message->event);

    switch (message->event) {
    case MessageEvent::PluginDisabled:
        return PluginDisabled;
    case MessageEvent::DatabaseNotOpen:
        return DatabaseNotOpen;
    case MessageEvent::TickBegins:
        lastTick = {valuesIn(*message, text).last().toUInt(), QDateTime::currentDateTime()};
        return Nothing;
    case MessageEvent::PassBegins:
        passRunning = true;
        passTick = lastTick;
        passRecords = 0;
        begunRecords = 0;
        errorsBefore = runFigures.errors;
        return Nothing;
    case MessageEvent::PassEnds:
        passRunning = false;
        passUnclosed = true;
        ++runFigures.passes;
        runFigures.lastPassErrors = runFigures.errors - errorsBefore;
        runFigures.waiting = valuesIn(*message, text).last().toInt();
        return PassEnded;
    case MessageEvent::ConnectionTurns: {
        const bool isOver = passUnclosed;
        passUnclosed = false;
        return isOver ? PassOver : Nothing;
    }
    case MessageEvent::CommandFailed:
        ++runFigures.commandFailures;
        return Nothing;
    case MessageEvent::ExportReading:
        return ExportReading;
    case MessageEvent::ExportMissing: {
        const bool isNews = !exportMissing;
        exportMissing = true;
        ++runFigures.missingExports;
        return isNews ? ExportMissing : Nothing;
    }
    case MessageEvent::RecordsCounted:
        passRecords = valuesIn(*message, text).last().toInt();
        runFigures.records += passRecords;
        exportMissing = false;
        return Nothing;
    case MessageEvent::RecordBegins:
        ++begunRecords;
        return RecordBegan;
    default:
        return Nothing;
    }
}

void PassWatch::countShown(QtMsgType type)
{
    if (type == QtWarningMsg)
        ++runFigures.warnings;
    else if (type == QtCriticalMsg)
        ++runFigures.errors;
}

/// Who was counted by the attempt is taken off again by what tells that it came to nothing.
void PassWatch::countPerson(MessageEvent event)
{
    runFigures.added += event == MessageEvent::PersonAdded;
    runFigures.added -= event == MessageEvent::PersonNotAdded;
    runFigures.updated += event == MessageEvent::PersonUpdated;
    runFigures.updated -= event == MessageEvent::PersonNotUpdated;
}
