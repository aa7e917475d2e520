// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts that all pages of a status have.
#include "host/status/statustexts.h"

#include "host/base/oneline.h"
#include "host/changes/changestext.h"
#include "host/gate/gatetexts.h"

#include <QCoreApplication>
#include <QHash>
#include <QLocale>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(StatusTexts)
};

} // namespace

QString momentText(const QDateTime &moment)
{
    return moment.isValid() ? moment.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                            : QString();
}

QString durationText(qint64 seconds)
{
    const qint64 minutes = seconds / 60;
    const qint64 hours = minutes / 60;
    if (hours >= 48)
        return Text::tr("%1 days").arg(hours / 24);
    if (hours > 0)
        return Text::tr("%1 h %2 min").arg(hours).arg(minutes % 60);
    return minutes > 0 ? Text::tr("%1 min").arg(minutes) : Text::tr("%1 s").arg(seconds);
}

QString ageText(const QDateTime &since, const QDateTime &now)
{
    return durationText(qMax(since.secsTo(now), Q_INT64_C(0)));
}

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

QString reasonText(const GateRecord &record)
{
    if (record.outcome != GateRecord::Refused)
        return QString();
    QStringList texts;
    for (const RefusalReason &reason : record.reasons)
        texts.append(oneLine(reason.text));
    return texts.isEmpty() ? Text::tr("its record gives no reason")
                           : texts.join(QStringLiteral("; "));
}

QString refusalRemedy(const GateRecord &record)
{
    QStringList texts;
    const QString first = oneLine(record.reasons.value(0).remedy);
    if (!first.isEmpty())
        texts.append(first);
    texts.append(Text::tr("see %1.txt in the folder of refused exports").arg(record.name));
    const QString allowed = allowOptions(record);
    if (!allowed.isEmpty())
        texts.append(Text::tr("'talvenhr gate%1 %2 --reason TEXT' allows that for this once")
                         .arg(allowed, record.name));
    if (isReleasable(record))
        texts.append(Text::tr("'talvenhr gate --release %1 --reason TEXT' lets it through as it is")
                         .arg(record.name));
    return texts.join(QStringLiteral("; "));
}

QString outcomeText(const GateRecord &record)
{
    switch (record.outcome) {
    case GateRecord::Passing:
        return Text::tr("on its way");
    case GateRecord::Passed:
        return record.release ? Text::tr("let through by %1").arg(oneLine(record.release->by))
                              : Text::tr("passed");
    case GateRecord::Refused:
        return isRefused(record) ? Text::tr("refused")
                                 : Text::tr("nothing new since the last one that passed");
    case GateRecord::Superseded:
        break;
    }
    return Text::tr("superseded by a newer one");
}

QString whatText(NotDone::What what)
{
    switch (what) {
    case NotDone::Branch:
        return Text::tr("a branch with the number of the export");
    case NotDone::Group:
        return Text::tr("a group of the branch that carries the calendar");
    case NotDone::LeaveNotAtRest:
        return Text::tr("attendance to be calculated, before leave is corrected");
    case NotDone::LeaveCorrectedToday:
        return Text::tr("another day, for leave was corrected today");
    case NotDone::TestMode:
        return Text::tr("the end of test mode");
    case NotDone::Refused:
        break;
    }
    return Text::tr("recovery, as the database did not take it");
}

QString personText(const Person &person, PersonalTexts texts)
{
    const QString number = person.pamId.isEmpty() ? Text::tr("uid %1").arg(person.uid)
                                                  : oneLine(person.pamId);
    return texts == PersonalTexts::Hidden || person.name.isEmpty()
        ? number
        : QStringLiteral("%1 %2").arg(number, oneLine(person.name));
}

QVector<WaitingFor> waitingForSomebody(const Status &status)
{
    QVector<WaitingFor> people;
    QHash<QString, int> places;
    for (const WaitingPerson &waiting : status.waiting) {
        if (!waitsForSomebody(waiting))
            continue;
        const QString key = personText(waiting.person, PersonalTexts::Hidden);
        if (!places.contains(key)) {
            places.insert(key, people.size());
            people.append({waiting.person, {}});
        }
        QStringList &reasons = people[places.value(key)].reasons;
        if (!reasons.contains(whatText(waiting.what)))
            reasons.append(whatText(waiting.what));
    }
    return people;
}

QStringList missingWords(const LostPerson &lost, PersonalTexts texts)
{
    if (texts == PersonalTexts::Shown) {
        const QStringList words = personWords(lost.missing, lost.names);
        if (!words.isEmpty())
            return words;
    }
    QStringList kinds;
    for (const ChangeKind kind : changeKinds()) {
        if (lost.missing.kinds.has(kind))
            kinds.append(kindName(kind));
    }
    return kinds;
}

QString missingText(const LostPerson &lost, PersonalTexts texts)
{
    QStringList words = missingWords(lost, texts);
    if (!lost.uncertain.isEmpty())
        words.append(Text::tr("not certain: %1").arg(lost.uncertain.join(QLatin1Char(' '))));
    return words.join(QStringLiteral("; "));
}

QString remedyText(Remedy remedy)
{
    switch (remedy) {
    case Remedy::Force:
        return Text::tr("a forced pass");
    case Remedy::Restart:
        return Text::tr("a restart of the plugin");
    case Remedy::Rejoin:
        return Text::tr("a forced pass without the row of brape");
    case Remedy::Replan:
        return Text::tr("a forced pass without the row of groups_plan");
    case Remedy::ByHand:
        break;
    }
    return Text::tr("enrolment in PaM by hand");
}
