// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What `talvenhr doctor` tells: its diagnosis as a report.
#include "host/commands/doctorreport.h"

#include "host/catalogue/findings.h"

#include <QCoreApplication>
#include <QHash>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DoctorCommand)
};

QVector<Finding> ofSeverity(const QVector<Finding> &findings, Finding::Severity severity)
{
    QVector<Finding> found;
    for (const Finding &finding : findings) {
        if (finding.severity == severity)
            found.append(finding);
    }
    return found;
}

/// The codes on the left, and beside each what is wrong, what follows and what to do.
Section severitySection(const QVector<Finding> &findings, const QString &title)
{
    Section section;
    section.title = title;
    section.table.columns = {{QString(), Text::tr("Code")}, {QString(), Text::tr("Finding")}};
    for (const Finding &finding : findings) {
        section.table.rows.append({finding.code, finding.text});
        if (!finding.becomes.isEmpty())
            section.table.rows.append({QString(), Text::tr("Leads to: %1").arg(finding.becomes)});
        if (!finding.remedy.isEmpty())
            section.table.rows.append({QString(), Text::tr("Do: %1").arg(finding.remedy)});
    }
    return section;
}

QString layerText(SettingLayer::Layer layer, bool forPeople)
{
    switch (layer) {
    case SettingLayer::File:
        return forPeople ? Text::tr("file") : QStringLiteral("file");
    case SettingLayer::Environment:
        return forPeople ? Text::tr("environment") : QStringLiteral("environment");
    case SettingLayer::Default:
        break;
    }
    return forPeople ? Text::tr("default") : QStringLiteral("default");
}

Section settingsSection(const DoctorResult &result, bool forPeople)
{
    Section section;
    section.name = QStringLiteral("settings");
    section.table.columns = {{QStringLiteral("key"), Text::tr("Setting")},
                             {QStringLiteral("origin"), Text::tr("From")},
                             {QStringLiteral("value"), Text::tr("Value")}};
    for (const SettingLayer &layer : result.settings)
        section.table.rows.append({layer.key, layerText(layer.layer, forPeople), layer.value});
    return section;
}

Section unknownSection(const QVector<Unseen> &unknown)
{
    Section section;
    section.name = QStringLiteral("unknown");
    section.title = Text::tr("Cannot be known");
    section.table.columns = {{QStringLiteral("about"), Text::tr("What")},
                             {QStringLiteral("reason"), Text::tr("Because")}};
    for (const Unseen &unseen : unknown)
        section.table.rows.append({unseen.about, unseen.reason});
    return section;
}

QVector<Figure> placeFigures(const DoctorResult &result)
{
    return {{QStringLiteral("dataDirectory"), Text::tr("Data directory"), result.dataDirectory, {}},
            {QStringLiteral("dataDirectoryReason"),
             Text::tr("Found by"),
             result.dataDirectoryReason,
             {}},
            {QStringLiteral("database"), Text::tr("Database"), result.database, {}}};
}

QString judgement(const DoctorResult &result)
{
    if (result.diagnosis.hasErrors())
        return Text::tr("a pass cannot work, or does harm");
    return result.databaseWasSeen
        ? Text::tr("nothing keeps a pass from working")
        : Text::tr("cannot tell whether a pass works here, for the database was not seen");
}

QString verdictText(const DoctorResult &result)
{
    const Diagnosis &diagnosis = result.diagnosis;
    return Text::tr("%1: errors %2, warnings %3, notes %4; not known %5")
        .arg(judgement(result))
        .arg(ofSeverity(diagnosis.findings, Finding::Error).size())
        .arg(ofSeverity(diagnosis.findings, Finding::Warning).size())
        .arg(ofSeverity(diagnosis.findings, Finding::Note).size())
        .arg(diagnosis.unknown.size());
}

Report pageForPeople(const DoctorResult &result)
{
    const Diagnosis &diagnosis = result.diagnosis;
    const auto errors = ofSeverity(diagnosis.findings, Finding::Error);
    const auto warnings = ofSeverity(diagnosis.findings, Finding::Warning);
    const auto notes = ofSeverity(diagnosis.findings, Finding::Note);
    Report report;
    if (!errors.isEmpty())
        report.sections.append(severitySection(errors, Text::tr("Errors (red)")));
    if (!warnings.isEmpty())
        report.sections.append(severitySection(warnings, Text::tr("Warnings (yellow)")));
    if (!notes.isEmpty())
        report.sections.append(severitySection(notes, Text::tr("Notes")));
    Section well;
    if (!diagnosis.passed.isEmpty())
        well.figures.append({QStringLiteral("well"),
                             Text::tr("Well (green)"),
                             diagnosis.passed.join(QStringLiteral(", ")),
                             {}});
    well.figures += placeFigures(result);
    report.sections.append(well);
    if (!diagnosis.unknown.isEmpty())
        report.sections.append(unknownSection(diagnosis.unknown));
    if (!result.settings.isEmpty())
        report.sections.append(settingsSection(result, true));
    report.verdict.text = verdictText(result);
    return report;
}

Section countsSection(const QVector<Finding> &findings)
{
    Section section;
    section.name = QStringLiteral("counts");
    const auto add = [&](const char *name, Finding::Severity severity) {
        section.figures.append(
            {QLatin1String(name), QString(), ofSeverity(findings, severity).size(), {}});
    };
    add("errors", Finding::Error);
    add("warnings", Finding::Warning);
    add("notes", Finding::Note);
    return section;
}

Report documentForMachines(const DoctorResult &result)
{
    Report report;
    report.format = QStringLiteral("talvenhr.doctor/1");
    Section findings;
    findings.name = QStringLiteral("findings");
    for (const char *field : {"code", "severity", "about", "text", "becomes", "remedy"})
        findings.table.columns.append({QLatin1String(field), QString()});
    for (const Finding &finding : result.diagnosis.findings)
        findings.table.rows.append({finding.code, severityName(finding.severity), finding.about,
                                    finding.text, textOrNull(finding.becomes),
                                    textOrNull(finding.remedy)});
    Section passed;
    passed.name = QStringLiteral("passed");
    passed.table.columns = {{QStringLiteral("about"), QString()}};
    for (const QString &about : result.diagnosis.passed)
        passed.table.rows.append({about});
    Section places;
    places.figures = placeFigures(result);
    report.sections = {places,   countsSection(result.diagnosis.findings),
                       findings, unknownSection(result.diagnosis.unknown),
                       passed,   settingsSection(result, false)};
    return report;
}

QString key(const char *name)
{
    return QLatin1String(name);
}

/// Findings of one code below one heading, in the order in which they were found.
QVariantList groupValues(const QVector<Finding> &findings, Finding::Severity severity)
{
    QStringList codes;
    QHash<QString, QVariantList> byCode;
    for (const Finding &finding : findings) {
        if (finding.severity != severity)
            continue;
        if (!byCode.contains(finding.code))
            codes.append(finding.code);
        QString effect = finding.becomes;
        if (!finding.remedy.isEmpty())
            effect += (effect.isEmpty() ? QString() : QStringLiteral("; "))
                + Text::tr("do: %1").arg(finding.remedy);
        byCode[finding.code].append(
            QVariantHash {{key("text"), finding.text}, {key("becomes"), effect}});
    }
    QVariantList groups;
    for (const QString &code : qAsConst(codes)) {
        const QVariantList found = byCode.value(code);
        groups.append(
            QVariantHash {{key("severity"), severityName(severity)},
                          {key("code"), code},
                          {key("title"), findingTitle(findingKind(code.toLatin1().constData()))},
                          {key("count"), found.size()},
                          {key("findings"), found}});
    }
    return groups;
}

} // namespace

Report doctorReport(const DoctorResult &result, bool forPeople)
{
    return forPeople ? pageForPeople(result) : documentForMachines(result);
}

QString doctorVerdict(const DoctorResult &result)
{
    return verdictText(result);
}

QVariantHash doctorHtmlValues(const DoctorResult &result)
{
    const Diagnosis &diagnosis = result.diagnosis;
    QVariantList places;
    const QVector<Figure> figures = placeFigures(result);
    for (const Figure &figure : figures)
        places.append(QVariantHash {{key("name"), figure.label}, {key("value"), figure.value}});
    QVariantList unknown;
    for (const Unseen &unseen : diagnosis.unknown)
        unknown.append(QVariantHash {{key("about"), unseen.about}, {key("reason"), unseen.reason}});
    QVariantList settings;
    for (const SettingLayer &layer : result.settings)
        settings.append(QVariantHash {{key("key"), layer.key},
                                      {key("origin"), layerText(layer.layer, true)},
                                      {key("value"), layer.value}});
    const int warnings = ofSeverity(diagnosis.findings, Finding::Warning).size();
    return {{key("title"), Text::tr("Can a pass work here?")},
            {key("verdict"), verdictText(result)},
            {key("severity"),
             key(diagnosis.hasErrors()                         ? "error"
                     : warnings > 0 || !result.databaseWasSeen ? "warning"
                                                               : "good")},
            {key("places"), places},
            {key("counts"),
             QVariantHash {{key("errors"), ofSeverity(diagnosis.findings, Finding::Error).size()},
                           {key("warnings"), warnings},
                           {key("notes"), ofSeverity(diagnosis.findings, Finding::Note).size()}}},
            {key("groups"),
             groupValues(diagnosis.findings, Finding::Error)
                 + groupValues(diagnosis.findings, Finding::Warning)
                 + groupValues(diagnosis.findings, Finding::Note)},
            {key("unknown"), unknown},
            {key("passed"), QVariant(diagnosis.passed).toList()},
            {key("settings"), settings}};
}
