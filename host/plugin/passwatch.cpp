// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a run has done, taken from the plugin's own messages.
#include "host/plugin/passwatch.h"

namespace {

bool begins(const QString &text, const char *beginning)
{
    return text.startsWith(QLatin1String(beginning));
}

/// The number behind the last blank, without a closing bracket.
int lastNumber(const QString &text)
{
    QString number = text.section(QLatin1Char(' '), -1);
    number.remove(QLatin1Char(')'));
    return number.toInt();
}

} // namespace

PassWatch::Event PassWatch::see(QtMsgType type, const QString &text)
{
    switch (type) {
    case QtDebugMsg:
        return seeDebug(text);
    case QtWarningMsg:
        return seeWarning(text);
    case QtCriticalMsg:
        seePersonTrouble(text, QStringLiteral(") - SQL ERROR: "));
        return Nothing;
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

PassWatch::Event PassWatch::seeDebug(const QString &text)
{
    if (begins(text, "THRWorker::doSyncRecord(")) {
        ++begunRecords;
        return RecordBegan;
    }
    if (begins(text, "THRWorker::dbAddPerson(")) {
        ++runFigures.added;
    } else if (begins(text, "THRWorker::dbUpdatePerson(")) {
        ++runFigures.updated;
    } else if (begins(text, "THRWorker::doSync() - stack count: ")) {
        passRecords = lastNumber(text);
        runFigures.records += passRecords;
        exportMissing = false;
    } else if (begins(text, "THRWorker: BEGIN synchronization #")) {
        passRunning = true;
        passRecords = 0;
        begunRecords = 0;
        return PassBegan;
    } else if (begins(text, "THRWorker: END synchronization #")) {
        passRunning = false;
        ++runFigures.passes;
        runFigures.waiting = lastNumber(text);
        return PassEnded;
    }
    return Nothing;
}

PassWatch::Event PassWatch::seeWarning(const QString &text)
{
    if (text == QLatin1String("TalvenHR is DISABLED"))
        return PluginDisabled;
    if (text == QLatin1String("THRWorker::checkSync() - database not open!"))
        return DatabaseNotOpen;
    if (begins(text, "THRWorker::loadAndParseData() - file '")
        && text.endsWith(QLatin1String("' NOT found!"))) {
        const bool isNews = !exportMissing;
        exportMissing = true;
        return isNews ? ExportMissing : Nothing;
    }
    seePersonTrouble(text, QStringLiteral(") - Testing mode is active, "));
    return Nothing;
}

/// An attempt that came to nothing, as told after the attempt itself.
void PassWatch::seePersonTrouble(const QString &text, const QString &trouble)
{
    if (!text.contains(trouble))
        return;
    if (begins(text, "THRWorker::dbAddPerson("))
        --runFigures.added;
    else if (begins(text, "THRWorker::dbUpdatePerson("))
        --runFigures.updated;
}
