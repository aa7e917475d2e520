// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal knows beside the changes in their file, both ways.
#include "host/changes/rehearsaljson.h"

#include "host/changes/headerjson.h"
#include "host/report/jsonreport.h"

#include <QByteArrayList>
#include <QJsonArray>
#include <QJsonObject>

namespace {

QByteArray outcomeJson(const LimitOutcome &outcome)
{
    const Limit &limit = outcome.limit;
    return jsonObject({{QStringLiteral("kind"), jsonValue(limit.kind)},
                       {QStringLiteral("percent"),
                        limit.isPercent ? jsonValue(limit.number) : QByteArray("null")},
                       {QStringLiteral("allowed"), jsonValue(outcome.allowed)},
                       {QStringLiteral("found"), jsonValue(outcome.found)},
                       {QStringLiteral("exceeded"), jsonValue(outcome.isExceeded())}});
}

LimitOutcome outcomeOf(const QJsonObject &object)
{
    const QJsonValue percent = object.value(QStringLiteral("percent"));
    const double allowed = object.value(QStringLiteral("allowed")).toDouble();
    const bool isPercent = percent.isDouble();
    return {{object.value(QStringLiteral("kind")).toString(),
             isPercent ? percent.toInt() : static_cast<int>(allowed), isPercent},
            allowed,
            object.value(QStringLiteral("found")).toDouble()};
}

Finding findingOf(const QJsonObject &object)
{
    const auto text = [&object](const char *name) {
        return object.value(QLatin1String(name)).toString();
    };
    Finding finding;
    finding.code = text("code");
    for (const Finding::Severity severity : {Finding::Warning, Finding::Error}) {
        if (text("severity") == severityName(severity))
            finding.severity = severity;
    }
    finding.text = text("text");
    finding.becomes = text("becomes");
    finding.remedy = text("remedy");
    return finding;
}

} // namespace

QByteArray rehearsalJson(const RehearsalFacts &facts)
{
    QByteArrayList limits;
    for (const LimitOutcome &outcome : facts.limits)
        limits.append(outcomeJson(outcome));
    QByteArrayList findings;
    for (const Finding &finding : facts.findings)
        findings.append(findingJson(finding));
    return jsonObject({{QStringLiteral("limits"), '[' + limits.join(',') + ']'},
                       {QStringLiteral("leftOut"), jsonValue(facts.leftOut)},
                       {QStringLiteral("warnings"), jsonValue(facts.warnings)},
                       {QStringLiteral("findings"), '[' + findings.join(',') + ']'}});
}

QByteArray findingJson(const Finding &finding)
{
    return jsonObject({{QStringLiteral("code"), jsonValue(finding.code)},
                       {QStringLiteral("severity"), jsonValue(severityName(finding.severity))},
                       {QStringLiteral("text"), jsonValue(finding.text)},
                       {QStringLiteral("becomes"), jsonText(finding.becomes)},
                       {QStringLiteral("remedy"), jsonText(finding.remedy)}});
}

RehearsalFacts rehearsalIn(const QJsonObject &object)
{
    RehearsalFacts facts;
    const QJsonArray limits = object.value(QStringLiteral("limits")).toArray();
    for (const QJsonValue &limit : limits)
        facts.limits.append(outcomeOf(limit.toObject()));
    facts.leftOut = textsIn(object.value(QStringLiteral("leftOut")));
    facts.warnings = textsIn(object.value(QStringLiteral("warnings")));
    const QJsonArray findings = object.value(QStringLiteral("findings")).toArray();
    for (const QJsonValue &finding : findings)
        facts.findings.append(findingOf(finding.toObject()));
    return facts;
}
