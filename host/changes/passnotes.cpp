// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is told of a pass while it runs, kept for its changes.
#include "host/changes/passnotes.h"

#include "host/catalogue/messages.h"
#include "host/catalogue/statements.h"
#include "host/database/databasecall.h"
#include "host/database/errortext.h"
#include "host/database/recordingdriver.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

namespace {

bool isComplaint(QtMsgType type)
{
    return type == QtWarningMsg || type == QtCriticalMsg;
}

AboutPeople aboutIn(const PluginMessage &known, const QString &text)
{
    AboutPeople about;
    about.named = peopleIn(known, text);
    if (known.named.naming == Naming::PamId)
        about.pamId
            = valuesIn(known, text).value(known.named.place).section(QLatin1Char(' '), 0, 0);
    return about;
}

void append(const PassTold &pass, PassTold *all)
{
    all->exported = pass.exported;
    all->forced = all->forced || pass.forced;
    all->waiting = pass.waiting;
    all->dropped += pass.dropped;
    if (pass.statements >= 0)
        all->statements = qMax(all->statements, 0) + pass.statements;
    all->messages += pass.messages;
    all->leave += pass.leave;
    all->refused += pass.refused;
}

} // namespace

void PassNotes::message(QtMsgType type, const QString &text)
{
    const PluginMessage *const known = findMessage(type, text);
    const QMutexLocker locker(&mutex);
    if (known) {
        if (known->event == MessageEvent::PassBegins)
            beginPass(valuesIn(*known, text).last() == QLatin1String("YES"));
        if (known->event == MessageEvent::PassEnds) {
            current.waiting = valuesIn(*known, text).last().toInt();
            currentIsOver = true;
            naming = nullptr;
        }
        if (known->named.naming != Naming::Nobody) {
            naming = known;
            namingText = text;
            noteLeave(*known, text);
        }
    }
    if (!isComplaint(type))
        return;
    ToldMessage told;
    told.message = {type == QtCriticalMsg, QDateTime::currentDateTime(), text};
    told.known = known;
    told.about = aboutNow();
    current.messages.append(told);
}

void PassNotes::call(const DatabaseCall &call, const CallOutcome &outcome)
{
    const bool isRun = call.kind == DatabaseCall::Exec || call.kind == DatabaseCall::Run;
    countStatement(call);
    if (outcome.done || (!isRun && call.kind != DatabaseCall::Prepare))
        return;
    QVariantList bound;
    for (const DatabaseCall::Value &value : call.values)
        bound.append(value.value);
    RefusedStatement refused;
    const ClassifiedStatement statement = classifyStatement(call.statement, bound);
    refused.statement = call.statement;
    refused.error = errorText(outcome.error);
    const QMutexLocker locker(&mutex);
    refused.about.named = peopleIn(statement);
    if (refused.about.named.key == NamedPeople::Nobody)
        refused.about = aboutNow();
    current.refused.append(refused);
}

void PassNotes::countStatement(const DatabaseCall &call)
{
    const bool isRun = call.kind == DatabaseCall::Exec || call.kind == DatabaseCall::Run;
    const QMutexLocker locker(&mutex);
    if (isRun && current.statements >= 0 && !currentIsOver)
        ++current.statements;
}

void PassNotes::exportRead(const ExportIdentity &exported)
{
    const QMutexLocker locker(&mutex);
    current.exported = exported;
}

void PassNotes::linesDropped(int lines)
{
    const QMutexLocker locker(&mutex);
    current.dropped += lines;
}

PassTold PassNotes::take()
{
    const QMutexLocker locker(&mutex);
    if (currentIsOver)
        beginPass(false);
    PassTold taken;
    qSwap(taken, over);
    return taken;
}

/// To be called with the lock.
AboutPeople PassNotes::aboutNow() const
{
    return naming ? aboutIn(*naming, namingText) : AboutPeople();
}

/// The two checks that come before a balance is looked at.
void PassNotes::noteLeave(const PluginMessage &known, const QString &text)
{
    const QLatin1String form(known.text);
    const bool isMove = form == QLatin1String("THRWorker::dbCheckFundMove(pid: %u): %s");
    const bool isRest = form == QLatin1String("THRWorker::dbCheckAttendance(pid: %u): %s");
    if (!isMove && !isRest)
        return;
    const QStringList values = valuesIn(known, text);
    const QString answer = values.last();
    if (answer.startsWith(QLatin1String("OK")))
        return;
    current.leave.append({values.first().toUInt(),
                          isMove ? NotDone::LeaveCorrectedToday : NotDone::LeaveNotAtRest, text});
}

/// What came since the pass before belongs to that one.
void PassNotes::beginPass(bool forced)
{
    if (currentIsOver) {
        append(current, &over);
        current = {};
    }
    currentIsOver = false;
    current.forced = forced;
    current.statements = 0;
    naming = nullptr;
}

ExportIdentity identityOf(const QString &exportFile)
{
    ExportIdentity identity;
    identity.name = QFileInfo(exportFile).fileName();
    QFile file(exportFile);
    if (!file.open(QIODevice::ReadOnly))
        return identity;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray part;
    char last = '\n';
    while (!(part = file.read(1 << 16)).isEmpty()) {
        hash.addData(part);
        identity.size += part.size();
        identity.lines += part.count('\n');
        last = part.at(part.size() - 1);
    }
    identity.lines += last != '\n';
    if (file.error() == QFileDevice::NoError)
        identity.digest = QString::fromLatin1(hash.result().toHex());
    return identity;
}
