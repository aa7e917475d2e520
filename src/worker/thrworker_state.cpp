// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: evidence states, their texts and the interval for which they hold.
#include "worker/thrworker.h"

namespace {

struct BuiltInText
{
    ushort state;
    const char *text;
};

const BuiltInText builtInTexts[] = {
    {0, QT_TRANSLATE_NOOP("THRWorker", "aktívny právny vzťah")},
    {1, QT_TRANSLATE_NOOP("THRWorker", "v skúšobnej dobe")},
    {2, QT_TRANSLATE_NOOP("THRWorker", "vo výpovednej dobe")},
    {3, QT_TRANSLATE_NOOP("THRWorker", "skončený právny vzťah")},
    {21, QT_TRANSLATE_NOOP("THRWorker", "materská dovolenka")},
    {22, QT_TRANSLATE_NOOP("THRWorker", "rodičovská dovolenka")},
    {24, QT_TRANSLATE_NOOP("THRWorker", "rodičovská dovolenka (nad 3r)")},
    {53, QT_TRANSLATE_NOOP("THRWorker", "výkon trestu")},
    {71, QT_TRANSLATE_NOOP("THRWorker", "neplatené voľno")},
    {560, QT_TRANSLATE_NOOP("THRWorker", "dlhodobé platené voľno")},
};

} // namespace

// Deliberate: the built-in texts never reach `people.rsText`, for an interval is given a text only
// when the settings hold its state. Pinned by tst_State::builtInTextsNeverReachRsText().
QString THRWorker::stateText(ushort state) const
{
    const auto fromSettings = mes.constFind(state);
    if (fromSettings != mes.constEnd())
        return *fromSettings;
    for (const BuiltInText &builtIn : builtInTexts) {
        if (builtIn.state == state)
            return tr(builtIn.text);
    }
    return QString();
}

QString THRWorker::stateTextOf(const EmployeeRecord &record) const
{
    return stateText(record.evidencniStav);
}

bool THRWorker::stateKnown(ushort state) const
{
    return mes.contains(state);
}

void THRWorker::applyStateValidity(EmployeeRecord &record, const EmployeeRecord &oldRecord) const
{
    const QDate today = QDate::currentDate();
    const bool oldEndIsAhead = oldRecord.rsEnd.isValid() && oldRecord.rsEnd > today;

    if (stateKnown(record.evidencniStav)) {
        // An interval that has begun and still runs goes on; in every other case a new one opens.
        const bool oldRuns = oldRecord.rsBegin.isValid() && oldRecord.rsBegin < today
            && (!oldRecord.rsEnd.isValid() || oldEndIsAhead);
        record.rsBegin = oldRuns ? oldRecord.rsBegin : today;
        record.rsEnd = oldEndIsAhead ? oldRecord.rsEnd : QDate();
        record.rsText = stateText(record.evidencniStav);
        return;
    }

    // No state to show: the old interval keeps its text and is closed on the day this is noticed.
    const bool oldIsClosed = oldRecord.rsEnd.isValid() && oldRecord.rsEnd >= oldRecord.rsBegin;
    record.rsBegin = oldRecord.rsBegin;
    if (!oldRecord.rsBegin.isValid())
        record.rsEnd = QDate();
    else
        record.rsEnd = oldIsClosed ? oldRecord.rsEnd : today;
    record.rsText = oldRecord.rsText;
}

EmployeeRecord THRWorker::withStateValidity(const EmployeeRecord &record,
                                            const EmployeeRecord &oldRecord) const
{
    EmployeeRecord result = record;
    applyStateValidity(result, oldRecord);
    return result;
}
