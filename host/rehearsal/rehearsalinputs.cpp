// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal reads besides the database.
#include "host/rehearsal/rehearsalinputs.h"

#include "host/base/regularfile.h"
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

/// `otherExport` may be empty in both.
QString unnamedExport(const QString &settingsFile, const QString &otherExport)
{
    if (otherExport.isEmpty())
        return Text::tr("'%1' does not say where the export lies; set importFile there")
            .arg(settingsFile);
    return Text::tr("'%1' does not say where the export lies; set importFile there, or name an "
                    "export: %2")
        .arg(settingsFile, otherExport);
}

QString missingExport(const QString &exportFile, const QString &settingsFile,
                      const QString &otherExport)
{
    if (otherExport.isEmpty())
        return Text::tr("there is no export at '%1', the importFile of '%2'; put one there")
            .arg(exportFile, settingsFile);
    return Text::tr("there is no export at '%1', the importFile of '%2'; put one there, or name "
                    "another: %3")
        .arg(exportFile, settingsFile, otherExport);
}

Failure findExport(const SettingsFile &settings, const QString &otherExport, QString *exportFile)
{
    const bool isNamed = !exportFile->isEmpty();
    if (!isNamed && settings.toString(QStringLiteral("importFile")).isEmpty())
        return {ExitUsage, unnamedExport(settings.path(), otherExport)};
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
    return {ExitUsage, missingExport(*exportFile, settings.path(), otherExport)};
}

} // namespace

Failure checkInputs(const QString &otherExport, RehearsalWishes *wishes)
{
    const SettingsFile settings(wishes->settingsFile);
    if (const Failure failure = checkSettings(settings))
        return failure;
    if (const Failure failure = PluginFile(wishes->pluginFile).check())
        return failure;
    for (const QString &path : qAsConst(wishes->after)) {
        QFile file(path);
        if (const Failure failure = openRegularFile(&file))
            return failure;
    }
    return findExport(settings, otherExport, &wishes->exportFile);
}

Failure lookAtExport(const RehearsalWishes &wishes, ExportLook *look)
{
    QFile file(wishes.exportFile);
    if (const Failure failure = openRegularFile(&file))
        return failure;
    ExportCheckSettings settings;
    settings.today = wishes.today.isValid() ? wishes.today : QDate::currentDate();
    ExportCheck check = checkExport(&file, settings);
    look->findings = glanceOf(check).findings;
    look->lines.swap(check.digest);
    return {};
}
