// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options that name the folders of the gate.
#include "host/cli/gatefolders.h"

#include "host/cli/options.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateFolders)
};

const int longestSpan = 100000000; // a number of seconds, minutes, hours or days

Option folderOption(const QString &name, const QString &text)
{
    return {name,      QStringLiteral("DIR"), text, QStringLiteral("gate/") + name,
            QString(), Option::Path};
}

} // namespace

OptionGroup gateFolderOptions()
{
    return {Text::tr("Gate"),
            {folderOption(QStringLiteral("incoming"),
                          Text::tr("folder into which the HR system writes its exports")),
             folderOption(QStringLiteral("archive"),
                          Text::tr("folder of the exports that went through")),
             folderOption(QStringLiteral("refused"), Text::tr("folder of those that did not")),
             folderOption(QStringLiteral("state"), Text::tr("folder of the gate's own files")),
             {QStringLiteral("place"), QStringLiteral("FILE"),
              Text::tr("the export that the plugin reads (default: importFile of TalvenHR.ini)"),
              QStringLiteral("gate/place"), QString(), Option::Path},
             {QStringLiteral("late-after"), QStringLiteral("TIME"),
              Text::tr("an export is late after so long, such as 26h or 90m (default: never)"),
              QStringLiteral("gate/late-after")}}};
}

Failure readGateFolders(const Options &options, GateFolders *folders)
{
    folders->incoming = options.value(QStringLiteral("incoming"));
    folders->archive = options.value(QStringLiteral("archive"));
    folders->refused = options.value(QStringLiteral("refused"));
    folders->state = options.value(QStringLiteral("state"));
    folders->place = options.value(QStringLiteral("place"));
    const QString name = QStringLiteral("late-after");
    const QString late = options.value(name);
    folders->lateAfter = late.isEmpty() ? 0 : secondsOf(late);
    if (folders->lateAfter >= 0)
        return {};
    return options.usageFailure(Text::tr("%1 takes a time such as 26h, 90m or 2d, not '%2'")
                                    .arg(options.placeOf(name), late));
}

qint64 secondsOf(const QString &text)
{
    const QString units = QStringLiteral("smhd");
    const qint64 lengths[] = {1, 60, 3600, 86400};
    const int unit = text.isEmpty() ? -1 : units.indexOf(text.at(text.size() - 1));
    bool ok = false;
    const qint64 number = (unit < 0 ? text : text.left(text.size() - 1)).toLongLong(&ok);
    if (!ok || number < 0 || number > longestSpan)
        return -1;
    return number * lengths[qMax(unit, 0)];
}
