// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin's settings: what is wrong with them, and where each value comes from.
#include "host/doctor/settingsdiagnosis.h"

#include "environment/envirosettings.h"
#include "host/catalogue/findings.h"
#include "host/doctor/placecheck.h"
#include "host/plugin/settingkeys.h"
#include "host/plugin/settingscheck.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SettingsDiagnosis)
};

SettingLayer layerOf(const SettingsFile &settings, const QString &key)
{
    SettingLayer layer;
    layer.key = key;
    layer.value = settings.value(key).toString();
    const EnviroSettings names(QString(), QSettings::IniFormat);
    if (settings.holds(key))
        layer.layer = SettingLayer::File;
    else if (qEnvironmentVariableIsSet(names.envKey(key).toLocal8Bit().constData()))
        layer.layer = SettingLayer::Environment;
    return layer;
}

} // namespace

Diagnosis settingsDiagnosis(const SettingsFile &settings)
{
    Diagnosis diagnosis;
    if (const Failure failure = settings.check()) {
        diagnosis.findings.append(finding("E-SET-FILE", settings.path(), {failure.text}));
        diagnosis.unknown.append(
            {Text::tr("values of the settings"), Text::tr("the file cannot be used")});
        return diagnosis;
    }
    diagnosis.findings = settingsFindings(settings);
    const bool isSound = std::all_of(
        diagnosis.findings.cbegin(), diagnosis.findings.cend(),
        [](const Finding &finding) { return finding.severity == Finding::Note; });
    if (isSound)
        diagnosis.passed.append(Text::tr("settings"));
    return diagnosis += placeDiagnosis(settings);
}

QVector<SettingLayer> settingLayers(const SettingsFile &settings)
{
    QVector<SettingLayer> layers;
    for (const SettingKey &key : settingKeys())
        layers.append(layerOf(settings, key.name));
    const QStringList keys = settings.keys();
    for (const QString &key : keys) {
        if (key.startsWith(QLatin1String("MES/")))
            layers.append(layerOf(settings, key));
    }
    return layers;
}

/// In the order of dataDir(), which tells the folder and not the reason.
QString dataDirectoryReason()
{
    QString key = QCoreApplication::applicationDirPath();
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    QSettings settings(QSettings::SystemScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
    settings.beginGroup(QStringLiteral("dataDirs"));
    if (!settings.value(key).toString().isEmpty())
        return Text::tr("the key '%1' of [dataDirs] in '%2'").arg(key, settings.fileName());
    const QStringList places = QStandardPaths::standardLocations(QStandardPaths::DataLocation);
    if (!places.value(1).isEmpty())
        return Text::tr("'%1' has no key '%2' in [dataDirs], so the first folder for data of the "
                        "whole machine counts")
            .arg(settings.fileName(), key);
    return Text::tr("'%1' has no key '%2' in [dataDirs], so the user's folder for data counts")
        .arg(settings.fileName(), key);
}
