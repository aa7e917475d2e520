// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass has come to, from its changes, or from the export that it has read.
#include "host/status/passfacts.h"

#include <QRegularExpression>

namespace {

void countErrors(const QVector<PassMessage> &messages, QMap<QString, int> *errors)
{
    static const QRegularExpression code(QStringLiteral("\\[(\\d{3,5})\\]"));
    for (const PassMessage &message : messages) {
        if (!message.isError)
            continue;
        const QString number = code.match(message.text).captured(1);
        ++(*errors)[number.isEmpty() ? QStringLiteral("other") : number];
    }
}

void countRows(const QVector<Change> &changes, QMap<QString, int> *rows)
{
    for (const Change &change : changes)
        ++(*rows)[change.table->name];
}

} // namespace

PassStatus passOfChanges(const Changes &changes, const QString &file)
{
    PassStatus pass;
    pass.source = PassStatus::FromChanges;
    pass.notBefore = changes.header.since;
    pass.when = changes.header.when;
    pass.forced = changes.header.forced;
    pass.file = file;
    pass.exported = changes.header.exported;
    pass.summary = changes.summary;
    pass.errors = errorsOf(changes);
    pass.statements = changes.totals.statements;
    for (const ChangedPerson &person : changes.people)
        countRows(person.rows, &pass.rows);
    countRows(changes.others, &pass.rows);
    return pass;
}

PassStatus passOfRecord(const GateRecord &record, const Status &status)
{
    PassStatus pass;
    pass.source = PassStatus::FromPlace;
    const PlaceStay *stay = stayOf(status.place.stays, record.name);
    const bool wasSeen = stay && stay->seen.isValid() && !status.sources.staysInPlace;
    pass.notBefore = wasSeen ? qMax(record.when, stay->seen) : record.when;
    // A pass removes the export as soon as it has read it.
    const QDateTime gone = goneBy(status, record.name);
    if (!status.sources.staysInPlace && !status.place.isThere && gone >= pass.notBefore)
        pass.when = gone;
    pass.file = record.name;
    pass.exported = record.exported;
    if (record.rehearsal)
        pass.summary = record.rehearsal->summary;
    return pass;
}

QVector<WaitingPerson> waitingOf(const Changes &changes)
{
    QVector<WaitingPerson> waiting;
    for (const ChangedPerson &person : changes.people) {
        for (const NotDone &notDone : person.notDone)
            waiting.append({person.person, notDone.what,
                            notDone.text.isEmpty() ? notDone.error : notDone.text});
    }
    return waiting;
}

QMap<QString, int> errorsOf(const Changes &changes)
{
    QMap<QString, int> errors;
    countErrors(changes.messages, &errors);
    for (const ChangedPerson &person : changes.people)
        countErrors(person.messages, &errors);
    return errors;
}
