// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options by which a command is told how much a pass may change.
#include "host/commands/limitoptions.h"

#include "host/cli/options.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(LimitOptions)
};

const QString section = QStringLiteral("limits/");
const QString limitName = QStringLiteral("limit");
const QString allowName = QStringLiteral("allow");
const QString noLimitsName = QStringLiteral("no-limits");

/// Only the gate has an export before this one, and it takes its limits from the file.
Failure checkKinds(const Options &options, const QVector<Limit> &limits)
{
    for (const Limit &limit : limits) {
        if (isOfExports(limit.kind))
            return options.usageFailure(
                Text::tr("the limit '%1' compares two exports, and holds for 'talvenhr gate' only; "
                         "set it in [limits] of talvenhr.conf")
                    .arg(limit.kind));
    }
    return {};
}

Failure setLimits(const Options &options, const QStringList &texts, QVector<Limit> *limits)
{
    for (const QString &text : texts) {
        Limit limit;
        if (const Failure failure = readLimit(text, &limit))
            return options.usageFailure(failure.text);
        setLimit(limit, limits);
    }
    return {};
}

} // namespace

OptionGroup limitOptions()
{
    return {Text::tr("Limits"),
            {{limitName, QStringLiteral("KIND=N"),
              Text::tr("at most so many of a kind, or N% of the active people; may be repeated")},
             {noLimitsName, QString(),
              Text::tr("without the default limits and those of talvenhr.conf")},
             {allowName, QStringLiteral("KIND=N"),
              Text::tr("let so many through this once; may be repeated")}}};
}

QStringList limitSettings()
{
    QStringList settings;
    const QStringList kinds = limitKinds();
    for (const QString &kind : kinds)
        settings.append(section + kind);
    return settings << section + QStringLiteral("changed:*");
}

Failure readLimitsOfFile(const Options &options, QVector<Limit> *limits)
{
    QStringList texts;
    const QStringList settings = options.fileOnlySettings();
    for (const QString &setting : settings) {
        if (setting.startsWith(section))
            texts.append(setting.mid(section.size()) + QLatin1Char('=')
                         + options.configuration().entry(setting).value);
    }
    return setLimits(options, texts, limits);
}

Failure readLimits(const Options &options, QVector<Limit> *limits)
{
    if (!options.isSet(noLimitsName)) {
        *limits = standardLimits();
        if (const Failure failure = readLimitsOfFile(options, limits))
            return failure;
    }
    QVector<Limit> named;
    Failure failure = setLimits(options, options.values(limitName) + options.values(allowName),
                                &named);
    if (!failure)
        failure = checkKinds(options, named);
    for (const Limit &limit : qAsConst(named))
        setLimit(limit, limits);
    return failure;
}
