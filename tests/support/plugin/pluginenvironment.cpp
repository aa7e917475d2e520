// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a plugin finds when it is made: data directory, INI file and environment variables.
#include "support/plugin/pluginenvironment.h"

#include "support/textfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

PluginEnvironment::PluginEnvironment()
{
    const QByteArrayList read {"ENABLED",     "TIMERINTERVAL",  "SYNCINTERVAL",
                               "TESTMODE",    "IMPORTFILE",     "DELETEFILE",
                               "SYNCCOMMAND", "SYNCCOMMANDRUN", "DEPARTMENTID"};
    for (const QByteArray &name : read)
        qunsetenv(name.constData());

    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope,
                       filePath(QStringLiteral("etc")));
    setDataDirectory(filePath(QStringLiteral("data")));
}

PluginEnvironment::~PluginEnvironment()
{
    for (const QByteArray &name : qAsConst(variables))
        qunsetenv(name.constData());
}

void PluginEnvironment::setDataDirectory(const QString &path)
{
    data = path;
    QString key = QCoreApplication::applicationDirPath();
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    QSettings settings(QSettings::SystemScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
    settings.setValue(QStringLiteral("dataDirs/") + key, path);
}

QString PluginEnvironment::iniPath() const
{
    return data + QStringLiteral("/TalvenHR.ini");
}

QString PluginEnvironment::filePath(const QString &name) const
{
    return folder.filePath(name);
}

void PluginEnvironment::writeIni(const QStringList &lines)
{
    QDir().mkpath(data);
    writeLines(iniPath(), lines);
}

void PluginEnvironment::setVariable(const QByteArray &name, const QByteArray &value)
{
    variables.append(name);
    qputenv(name.constData(), value);
}
