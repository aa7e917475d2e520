// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Time zone, letters and folders of the machine.
#include "host/doctor/machinecheck.h"

#include "host/base/shellword.h"
#include "host/catalogue/findings.h"
#include "host/doctor/folderrights.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(MachineCheck)
};

/// The C library takes the name of a file, there or among the zones, or a rule such as CET-1CEST.
bool isZone(const QString &zone)
{
    const QString name = zone.startsWith(QLatin1Char(':')) ? zone.mid(1) : zone;
    if (name.startsWith(QLatin1Char('/')))
        return QFileInfo(name).isFile();
    static const QRegularExpression rule(
        QStringLiteral("^([A-Za-z]{3,}|<[A-Za-z0-9+-]+>)[+-]?\\d"));
    return rule.match(name).hasMatch()
        || (!name.isEmpty() && QFileInfo(QStringLiteral("/usr/share/zoneinfo/") + name).isFile());
}

} // namespace

bool localeKeepsLetters()
{
    const QString letters = QStringLiteral("Ľř");
    return QString::fromLocal8Bit(letters.toLocal8Bit()) == letters;
}

Diagnosis zoneDiagnosis(const QByteArray &zone)
{
    Diagnosis diagnosis;
    const QString name = QString::fromLocal8Bit(zone);
    if (zone.isNull())
        diagnosis.findings.append(finding("N-MACHINE-ZONE", QStringLiteral("TZ")));
    else if (!isZone(name))
        diagnosis.findings.append(finding("E-MACHINE-ZONE", QStringLiteral("TZ"), {name}));
    else
        diagnosis.passed.append(Text::tr("time zone of the machine"));
    return diagnosis;
}

Diagnosis folderDiagnosis(const QString &dataDirectory)
{
    Diagnosis diagnosis;
    if (!QFileInfo(dataDirectory).isDir()) {
        diagnosis.findings.append(
            finding("E-MACHINE-FOLDER", dataDirectory, {dataDirectory, shellWord(dataDirectory)}));
        return diagnosis;
    }
    const QString settings = dataDirectory + QStringLiteral("/TalvenHR.ini");
    for (const QString &path : {dataDirectory, settings}) {
        // Where nobody may replace the file of another, one that is there is safe.
        const bool isSafe = path != settings && isForEverybody(path) && QFileInfo::exists(settings);
        if (!isSafe && everybodyMay(path, QFile::WriteOther))
            diagnosis.findings.append(
                finding("E-MACHINE-OPEN", path, {path, QFileInfo(path).owner(), shellWord(path)}));
    }
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("data directory"));
    return diagnosis;
}

Diagnosis machineDiagnosis(const QString &dataDirectory)
{
    Diagnosis diagnosis = folderDiagnosis(dataDirectory);
    diagnosis += zoneDiagnosis(qgetenv("TZ"));
    if (localeKeepsLetters())
        diagnosis.passed.append(Text::tr("locale"));
    else
        diagnosis.findings.append(finding("W-MACHINE-LOCALE", QStringLiteral("LC_ALL")));
    return diagnosis;
}
