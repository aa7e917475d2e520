// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal reads besides the database.
#include "host/rehearsal/rehearsalinputs.h"

#include "host/plugin/pluginfile.h"
#include "host/plugin/settingscheck.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalInputs)
};

Failure checkSettings(const SettingsFile &settings)
{
    if (const Failure failure = settings.check())
        return failure;
    const QVector<Finding> findings = settingsFindings(settings);
    for (const Finding &finding : findings) {
        if (finding.severity == Finding::Error)
            return {ExitUsage, codedLine(finding)};
    }
    return {};
}

Failure findExport(const SettingsFile &settings, QString *exportFile)
{
    const bool isNamed = !exportFile->isEmpty();
    if (!isNamed && settings.toString(QStringLiteral("importFile")).isEmpty())
        return {ExitUsage,
                Text::tr("'%1' does not say where the export lies; set importFile there, or name "
                         "an export: talvenhr rehearse --export FILE")
                    .arg(settings.path())};
    if (!isNamed)
        *exportFile = settings.values().importFile;
    const QFileInfo info(*exportFile);
    if (info.exists() && !info.isFile())
        return {ExitUsage,
                Text::tr("the export '%1' is no regular file; the plugin reads no others")
                    .arg(*exportFile)};
    if (info.exists())
        return {};
    if (isNamed)
        return {ExitUsage, Text::tr("there is no export '%1'; correct --export").arg(*exportFile)};
    return {ExitUsage,
            Text::tr("there is no export at '%1', the importFile of '%2'; put one there, or name "
                     "another: talvenhr rehearse --export FILE")
                .arg(*exportFile, settings.path())};
}

} // namespace

Failure checkInputs(RehearsalWishes *wishes)
{
    const SettingsFile settings(wishes->settingsFile);
    if (const Failure failure = checkSettings(settings))
        return failure;
    if (const Failure failure = PluginFile(wishes->pluginFile).check())
        return failure;
    return findExport(settings, &wishes->exportFile);
}

Failure lookAtExport(const RehearsalWishes &wishes, ExportLook *look)
{
    QFile file(wishes.exportFile);
    if (!file.open(QIODevice::ReadOnly))
        return {ExitUsage,
                Text::tr("the export '%1' cannot be read: %2")
                    .arg(wishes.exportFile, file.errorString())};
    ExportCheckSettings settings;
    settings.today = wishes.today.isValid() ? wishes.today : QDate::currentDate();
    ExportCheck check = checkExport(&file, settings);
    look->findings = glanceOf(check).findings;
    look->lines.swap(check.digest);
    return {};
}
