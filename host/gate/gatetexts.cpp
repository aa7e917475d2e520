// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the gate tells people.
#include "host/gate/gatetexts.h"

#include "host/base/zonedtext.h"
#include "host/gate/exportjudge.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <cmath>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateTexts)
};

QString passedLine(const GateRecord &record, const QString &whyNotRehearsed)
{
    QStringList parts {Text::tr("lines taken: %1").arg(record.fates.taken)};
    if (record.rehearsal)
        parts.append(figuresText(record.rehearsal->summary));
    else if (!whyNotRehearsed.isEmpty())
        parts.append(Text::tr("not rehearsed: %1").arg(whyNotRehearsed));
    const int warnings = static_cast<int>(
        std::count_if(record.findings.cbegin(), record.findings.cend(),
                      [](const FindingCount &kind) { return kind.severity == Finding::Warning; }));
    if (warnings > 0)
        parts.append(Text::tr("kinds of warnings: %1").arg(warnings));
    if (record.mendedCells > 0)
        parts.append(Text::tr("cells mended: %1").arg(record.mendedCells));
    if (record.comparedWith.isEmpty())
        parts.append(Text::tr("the first export, compared with none"));
    if (!record.replaced.isEmpty())
        parts.append(Text::tr("in place of an unread one, %1").arg(record.replaced));
    if (record.release)
        parts.append(
            Text::tr("let through by %1: %2").arg(record.release->by, record.release->reason));
    return Text::tr("passed: %1 (%2); %3")
        .arg(record.exported.name, record.name, parts.join(QStringLiteral(", ")));
}

QString refusedLine(const GateRecord &record)
{
    const RefusalReason first = record.reasons.value(0);
    const int others = record.reasons.size() - 1;
    if (record.isNothingNew)
        return Text::tr("nothing new: %1 (%2): %3")
            .arg(record.exported.name, record.name, first.text);
    const QString more = others > 0 ? Text::tr("; further reasons: %1").arg(others) : QString();
    const QString allowed = allowOptions(record);
    const QString way = allowed.isEmpty()
        ? QString()
        : Text::tr("; if that is right: talvenhr gate%1 %2 --reason \"why\"")
              .arg(allowed, record.name);
    return Text::tr("refused: %1 (%2): %3%4%5")
        .arg(record.exported.name, record.name, first.text, more, way);
}

QString reasonText(const RefusalReason &reason)
{
    const QString text = Text::tr("- %1 [%2]\n").arg(reason.text, reason.code);
    return reason.remedy.isEmpty() ? text
                                   : text + Text::tr("  What to do: %1.\n").arg(reason.remedy);
}

/// What lies beside the record, and for whom.
QString filesText(const GateRecord &record, const QString &folder)
{
    struct File
    {
        QString ending;
        QString text;
    };
    const QVector<File> files {
        {QStringLiteral(".export"), Text::tr("the export as it came")},
        {QStringLiteral(".check.html"), Text::tr("what is wrong with it, for a browser")},
        {QStringLiteral(".rejects.txt"), Text::tr("its damaged lines, to send back")},
        {QStringLiteral(".mended.txt"), Text::tr("the cells that were mended")},
        {QStringLiteral(".rehearsal.html"), Text::tr("what it would change, for a browser")}};
    QString text = Text::tr("Files:\n");
    const QDir directory(folder);
    for (const File &file : files) {
        const QString path = directory.filePath(record.name + file.ending);
        if (file.ending == QLatin1String(".export") || QFileInfo::exists(path))
            text += QStringLiteral("  %1\n    %2\n").arg(path, file.text);
    }
    return text;
}

/// Empty for one that was compared with none.
QString comparisonText(const GateRecord &record, const GateRecord *released)
{
    if (record.comparedWith.isEmpty())
        return QString();
    QString text = Text::tr("It was compared with the last good export, which went through on %1 "
                            "(%2).\n")
                       .arg(zonedText(record.comparedWhen), record.comparedWith);
    if (released)
        text += Text::tr("The one that went through since, on %1 (%2), is no measure: %3 had let "
                         "it through as it was, with the reason \"%4\".\n")
                    .arg(zonedText(released->when), released->name, released->release->by,
                         released->release->reason);
    return text + QLatin1Char('\n');
}

QString waysText(const GateRecord &record)
{
    if (!isReleasable(record))
        return Text::tr("Nobody should let it through: people would be missing. Ask for a whole "
                        "export, and deliver that.\n");
    QString text;
    const QString allowed = allowOptions(record);
    if (record.isNothingNew)
        return Text::tr("To have the plugin read it once more:\n"
                        "  talvenhr gate --release %1 --reason \"why\"\n")
            .arg(record.name);
    if (!allowed.isEmpty())
        text = Text::tr("If that is right, have it looked at again with this allowed for this "
                        "once:\n"
                        "  talvenhr gate%1 %2 --reason \"why\"\n\n")
                   .arg(allowed, record.name);
    return text
        + Text::tr("To let it through in spite of all of this, as it is, so that the next export "
                   "is not compared with it:\n"
                   "  talvenhr gate --release %1 --reason \"why\"\n")
              .arg(record.name);
}

} // namespace

QString decisionLine(const GateRecord &record, const QString &whyNotRehearsed)
{
    switch (record.outcome) {
    case GateRecord::Refused:
        return refusedLine(record);
    case GateRecord::Superseded:
        return Text::tr("superseded: %1 (%2); a newer export came")
            .arg(record.exported.name, record.name);
    case GateRecord::Passing:
    case GateRecord::Passed:
        break;
    }
    return passedLine(record, whyNotRehearsed);
}

QString refusalText(const GateRecord &record, const QString &folder, const GateRecord *released)
{
    const QString head = record.isNothingNew
        ? Text::tr("The export '%1' of %2 brought nothing new on %3. The plugin does not see it, "
                   "and has nothing to do.\n\n")
        : Text::tr("The export '%1' of %2 was refused on %3. The plugin does not see it.\n\n");
    QString text = head.arg(record.exported.name, zonedText(record.fileTime),
                            zonedText(record.when));
    text += Text::tr("Reasons:\n");
    for (const RefusalReason &reason : record.reasons)
        text += reasonText(reason);
    text += QLatin1Char('\n') + comparisonText(record, released);
    text += filesText(record, folder) + QLatin1Char('\n');
    return text + waysText(record);
}

QString allowOptions(const GateRecord &record)
{
    QString options;
    for (const RefusalReason &reason : record.reasons) {
        if (isOfComparison(reason.code))
            options += QStringLiteral(" --allow ") + reason.code;
        else if (!reason.code.startsWith(QLatin1String("limit:")))
            return QString();
    }
    for (const LimitOutcome &outcome : record.limits) {
        if (outcome.isExceeded())
            options += QStringLiteral(" --allow %1=%2")
                           .arg(outcome.limit.kind)
                           .arg(static_cast<qint64>(std::ceil(outcome.found)));
    }
    return options;
}

bool isReleasable(const GateRecord &record)
{
    return std::none_of(record.reasons.cbegin(), record.reasons.cend(),
                        [](const RefusalReason &reason) {
                            return reason.code == QLatin1String("E-FILE-CUT")
                                || reason.code == QLatin1String("E-FILE-NOTHING");
                        });
}
