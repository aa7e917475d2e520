// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An installation of a test's own: data directory, INI file and environment variables.
#include "installation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>

Installation::Installation()
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

Installation::~Installation()
{
    for (const QByteArray &name : qAsConst(variables))
        qunsetenv(name.constData());
}

void Installation::setDataDirectory(const QString &path)
{
    data = path;
    QString key = QCoreApplication::applicationDirPath();
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    QSettings settings(QSettings::SystemScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
    settings.setValue(QStringLiteral("dataDirs/") + key, path);
}

QString Installation::iniPath() const
{
    return data + QStringLiteral("/TalvenHR.ini");
}

QString Installation::filePath(const QString &name) const
{
    return folder.filePath(name);
}

void Installation::writeIni(const QStringList &lines)
{
    QDir().mkpath(data);
    QFile file(iniPath());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(iniPath()));
    for (const QString &line : lines)
        file.write(line.toUtf8() + '\n');
}

void Installation::setVariable(const QByteArray &name, const QByteArray &value)
{
    variables.append(name);
    qputenv(name.constData(), value);
}
