// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The values of the gate that stand for themselves.
#include "host/commands/gatevalues.h"

#include "host/base/nearest.h"
#include "host/cli/options.h"
#include "host/commands/gatefolders.h"
#include "host/commands/gateoptions.h"
#include "host/commands/limitoptions.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateValues)
};

const int mostDays = 36500;
const int longestLimit = 86400; // seconds

/// A word out of a few.
Failure readWord(const Options &options, const char *name, const QStringList &words, int *place)
{
    const QString option = QLatin1String(name);
    *place = words.indexOf(options.value(option));
    if (*place >= 0)
        return {};
    return options.usageFailure(Text::tr("%1 takes one of %2, not '%3'%4")
                                    .arg(options.placeOf(option), words.join(QStringLiteral(", ")),
                                         options.value(option),
                                         didYouMean(options.value(option), words)));
}

Failure readPattern(const Options &options, IncomingWishes *incoming)
{
    incoming->pattern = options.value(QStringLiteral("pattern"));
    if (QRegExp(incoming->pattern, Qt::CaseSensitive, QRegExp::Wildcard).isValid())
        return {};
    return options.usageFailure(
        Text::tr("%1 takes a name with * and ?, not '%2'")
            .arg(options.placeOf(QStringLiteral("pattern")), incoming->pattern));
}

Failure readCompleteness(const Options &options, Completeness *complete)
{
    int place = 0;
    const Failure failure = readWord(
        options, "complete",
        {QStringLiteral("rename"), QStringLiteral("done"), QStringLiteral("still")}, &place);
    if (!failure)
        *complete = static_cast<Completeness>(place);
    return failure;
}

Failure readFirst(const Options &options, bool *isHeld)
{
    int place = 0;
    const Failure failure = readWord(options, "first",
                                     {QStringLiteral("pass"), QStringLiteral("hold")}, &place);
    *isHeld = place == 1;
    return failure;
}

Failure readRehearsal(const Options &options, GateRehearsal *rehearsal)
{
    const QString option = QStringLiteral("rehearse");
    if (const std::optional<bool> isWished = readYesOrNo(options.value(option))) {
        *rehearsal = *isWished ? GateRehearsal::Yes : GateRehearsal::No;
        return {};
    }
    int place = 0;
    return readWord(options, "rehearse",
                    {QStringLiteral("auto"), QStringLiteral("yes"), QStringLiteral("no")}, &place);
}

Failure readRefusals(const Options &options, JudgeSettings *judge)
{
    const QString option = QStringLiteral("refuse");
    judge->refuse = standardRefusals();
    if (!options.isGiven(option))
        return {};
    judge->refuse = options.value(option).split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (QString &word : judge->refuse)
        word = word.trimmed();
    const Failure failure = checkRefusals(judge->refuse);
    return failure ? options.usageFailure(
               Text::tr("%1 cannot be taken: %2").arg(options.placeOf(option), failure.text))
                   : Failure();
}

Failure readEncoding(const Options &options, MendWishes *mend)
{
    const Configuration::Entry entry = options.configuration().entry(
        QStringLiteral("mend/encoding"));
    mend->encoding = entry.value;
    const Failure failure = checkWishes(*mend);
    return failure ? Failure {failure.exitCode,
                              Text::tr("'encoding' in %1, line %2, cannot be taken: %3")
                                  .arg(options.configuration().path())
                                  .arg(entry.line)
                                  .arg(failure.text)}
                   : Failure();
}

QVector<Failure> readMend(const Options &options, MendWishes *mend)
{
    return {options.yesOrNo(QStringLiteral("mend/apostrophe"), &mend->apostrophe),
            options.yesOrNo(QStringLiteral("mend/bom"), &mend->bom),
            options.yesOrNo(QStringLiteral("mend/cr"), &mend->cr), readEncoding(options, mend)};
}

} // namespace

QVector<Failure> readGateValues(const Options &options, GateOptions *gate)
{
    GateSettings &settings = gate->settings;
    settings.judge.limits = standardGateLimits();
    QVector<Failure> failures {
        readPattern(options, &settings.incoming),
        readCompleteness(options, &settings.incoming.complete),
        readFirst(options, &settings.holdsFirst),
        readRehearsal(options, &gate->rehearsal),
        options.number(QStringLiteral("still-for"), 0, longestLimit, &settings.incoming.stillFor),
        readLateness(options, &settings.lateAfter),
        options.number(QStringLiteral("time-limit"), 1, longestLimit, &gate->timeLimit),
        options.number(QStringLiteral("keep-days"), 1, mostDays, &settings.keepDays),
        readRefusals(options, &settings.judge),
        readLimitsOfFile(options, &settings.judge.limits)};
    return failures += readMend(options, &settings.mend);
}
