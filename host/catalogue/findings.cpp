// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The kinds of findings, and no others: their codes and all their texts.
#include "host/catalogue/findings.h"

#include "host/catalogue/findingtopics.h"

#include <QCoreApplication>
#include <QHash>

namespace {

QHash<QByteArray, const FindingKind *> kindsByCode()
{
    QHash<QByteArray, const FindingKind *> kinds;
    for (const FindingTopic &topic : findingTopics()) {
        for (const FindingKind &kind : topic.kinds)
            kinds.insert(kind.code, &kind);
    }
    return kinds;
}

/// The text in the reader's language with its places filled, in one go: a value that looks like a
/// place stays as it is.
QString filled(const char *text, const QStringList &values)
{
    if (!text)
        return QString();
    const QString form = QCoreApplication::translate("Findings", text);
    QString result;
    for (int i = 0; i < form.size(); ++i) {
        const int place = form.at(i) == QLatin1Char('%') && i + 1 < form.size()
            ? form.at(i + 1).digitValue()
            : -1;
        if (place < 1) {
            result += form.at(i);
            continue;
        }
        result += values.value(place - 1);
        ++i;
    }
    return result;
}

} // namespace

Finding::Severity FindingKind::severity() const
{
    switch (code[0]) {
    case 'E':
        return Finding::Error;
    case 'W':
        return Finding::Warning;
    default:
        return Finding::Note;
    }
}

const std::vector<FindingTopic> &findingTopics()
{
    static const std::vector<FindingTopic> topics {
        exportFileFindings(),     exportTextFindings(),
        exportLineFindings(),     exportCellFindings(),
        exportPeopleFindings(),   exportComparisonFindings(),
        exportDatabaseFindings(), settingFileFindings(),
        settingValueFindings(),   settingCommandFindings(),
        settingStateFindings(),   exportPlaceFindings(),
        serverKindFindings(),     serverModeFindings(),
        serverTimeFindings(),     serverLimitFindings(),
        connectionFindings(),     clusterFindings(),
        machineFindings(),        pluginFileFindings(),
        tableFindings(),          keyFindings(),
        routineFindings(),        rightsFindings(),
        variableFindings(),       branchFindings(),
        peopleFindings(),
    };
    return topics;
}

const FindingKind &findingKind(const char *code)
{
    static const QHash<QByteArray, const FindingKind *> kinds = kindsByCode();
    const FindingKind *const kind = kinds.value(QByteArray::fromRawData(code, qstrlen(code)));
    if (!kind)
        qFatal("no finding has the code %s", code);
    return *kind;
}

Finding finding(const FindingKind &kind, const QString &about, const QStringList &values)
{
    Finding made;
    made.code = QLatin1String(kind.code);
    made.severity = kind.severity();
    made.about = about;
    made.text = filled(kind.text, values);
    made.becomes = filled(kind.becomes, values);
    made.remedy = filled(kind.remedy, values);
    return made;
}

Finding finding(const char *code, const QString &about, const QStringList &values)
{
    return finding(findingKind(code), about, values);
}

QString findingTitle(const FindingKind &kind)
{
    return QCoreApplication::translate("Findings", kind.title);
}
