// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the export can be found, read and removed where the settings say that it is.
#include "host/doctor/placecheck.h"

#include "host/base/shellword.h"
#include "host/catalogue/findings.h"
#include "host/doctor/folderrights.h"
#include "host/plugin/settingsfile.h"
#include "host/plugin/settingslines.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PlaceCheck)
};

Finding placeFinding(const char *code, const QStringList &values)
{
    return finding(code, QStringLiteral("importFile"), values);
}

/// `better` is the line that names a folder of its own.
QVector<Finding> folderFindings(const QFileInfo &folder, bool removes, const QString &better)
{
    const QString path = folder.filePath();
    if (!folder.exists())
        return {placeFinding("E-PLACE-FOLDER", {path, shellWord(path)})};
    if (!folder.isExecutable())
        return {placeFinding("E-PLACE-CLOSED", {path, userName(), shellWord(path)})};
    QVector<Finding> findings;
    if (removes && !folder.isWritable())
        findings.append(placeFinding("E-PLACE-KEPT", {path, userName(), shellWord(path)}));
    if (isForEverybody(path))
        findings.append(placeFinding("E-PLACE-SHARED", {path, better}));
    else if (everybodyMay(path, QFile::WriteOther))
        findings.append(placeFinding("E-PLACE-OPEN", {path, shellWord(path)}));
    return findings;
}

/// Of an export that is there; without one there is nothing to say.
QVector<Finding> fileFindings(const QFileInfo &file)
{
    const QString path = file.filePath();
    if (!file.exists() && file.isSymLink())
        return {placeFinding(
            "W-PLACE-KIND",
            {path, Text::tr("a link to '%1', which is not there").arg(file.symLinkTarget())})};
    if (!file.exists())
        return {};
    if (!file.isFile())
        return {
            placeFinding("W-PLACE-KIND",
                         {path, file.isDir() ? Text::tr("a folder") : Text::tr("a special file")})};
    if (!file.isReadable())
        return {placeFinding("E-PLACE-READ", {path, userName(), shellWord(path)})};
    QVector<Finding> findings;
    if (everybodyMay(path, QFile::WriteOther))
        findings.append(placeFinding("E-PLACE-OPEN", {path, shellWord(path)}));
    if (everybodyMay(path, QFile::ReadOther))
        findings.append(placeFinding("W-PLACE-SEEN", {path, shellWord(path)}));
    return findings;
}

} // namespace

Diagnosis placeDiagnosis(const SettingsFile &settings)
{
    Diagnosis diagnosis;
    const QString name = QStringLiteral("importFile");
    const QString path = settings.toString(name);
    if (path.isEmpty()) {
        if (!settings.holds(name))
            diagnosis.findings.append(placeFinding(
                "W-PLACE-RELATIVE",
                {QStringLiteral("ron.data"),
                 settingsLine(name, settings.folder() + QStringLiteral("/ron.data"))}));
        diagnosis.unknown.append(
            {Text::tr("place of the export"), Text::tr("importFile is empty")});
        return diagnosis;
    }
    if (QFileInfo(path).isRelative()) {
        const bool isOfWindows = path.contains(QLatin1Char('\\'));
        const QString here = isOfWindows ? path.section(QLatin1Char('\\'), -1)
                                         : QFileInfo(path).fileName();
        diagnosis.findings.append(
            placeFinding(isOfWindows ? "W-PLACE-WINDOWS" : "W-PLACE-RELATIVE",
                         {path, settingsLine(name, settings.folder() + QLatin1Char('/') + here)}));
        diagnosis.unknown.append(
            {Text::tr("place of the export"),
             Text::tr("it counts from the working directory of the attendance server")});
        return diagnosis;
    }
    const bool removes = settings.toBool(QStringLiteral("deleteFile"));
    const QFileInfo file(path);
    const QString better = settingsLine(name,
                                        settings.folder() + QLatin1Char('/') + file.fileName());
    diagnosis.findings = folderFindings(QFileInfo(file.path()), removes, better)
        + fileFindings(file);
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("place of the export"));
    return diagnosis;
}
