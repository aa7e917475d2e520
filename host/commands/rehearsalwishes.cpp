// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options of all commands that rehearse.
#include "host/commands/rehearsalwishes.h"

#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/plugin/datadirectory.h"
#include "host/rehearsal/pretendedday.h"
#include "host/rehearsal/rehearsalinputs.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalWishes)
};

Failure readDay(const Options &options, QDate *day)
{
    const QString name = QStringLiteral("today");
    if (!options.isSet(name))
        return {};
    *day = QDate::fromString(options.value(name), Qt::ISODate);
    if (!day->isValid())
        return options.usageFailure(
            Text::tr("--today takes a day such as 2027-01-01, not '%1'").arg(options.value(name)));
    if (canBePretended(*day))
        return {};
    return options.usageFailure(
        Text::tr("--today takes a day from %1 to %2, for the clock of the database knows no others")
            .arg(firstPretendedDay().toString(Qt::ISODate),
                 lastPretendedDay().toString(Qt::ISODate)));
}

} // namespace

QVector<Option> passOptions()
{
    return {{QStringLiteral("export"), QStringLiteral("FILE"),
             Text::tr("the export (default: importFile of TalvenHR.ini)")},
            {QStringLiteral("force"), QString(), Text::tr("rehearse a forced pass")},
            {QStringLiteral("today"), QStringLiteral("DAY"),
             Text::tr("rehearse the pass of another day, such as 2027-01-01")}};
}

Failure readWishes(const Options &options, const QString &otherExport, RehearsalWishes *wishes)
{
    QString directory;
    if (const Failure failure = readDataDirectory(options, &directory))
        return failure;
    wishes->pluginFile = pluginFile(options);
    wishes->settingsFile = DataDirectory(directory).iniFile();
    wishes->exportFile = options.value(QStringLiteral("export"));
    wishes->force = options.isSet(QStringLiteral("force"));
    if (const Failure failure = readDay(options, &wishes->today))
        return failure;
    return checkInputs(otherExport, wishes);
}

QVector<Option> copyOptions()
{
    return {{QStringLiteral("whole"), QString(),
             Text::tr("copy closed days of attendance and all moves of funds, too")},
            {QStringLiteral("without-triggers"), QString(),
             Text::tr("go on where triggers cannot be seen")},
            {QStringLiteral("without-routines"), QString(),
             Text::tr("go on where the bodies of routines cannot be read")}};
}

CopyWishes readCopyWishes(const Options &options)
{
    CopyWishes wishes;
    wishes.whole = options.isSet(QStringLiteral("whole"));
    wishes.withoutTriggers = options.isSet(QStringLiteral("without-triggers"));
    wishes.withoutRoutines = options.isSet(QStringLiteral("without-routines"));
    return wishes;
}
