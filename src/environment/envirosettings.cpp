// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings whose missing keys environment variables can supply.
#include "environment/envirosettings.h"

EnviroSettings::EnviroSettings(QObject *parent) :
    QSettings(parent),
    environment(QProcessEnvironment::systemEnvironment())
{ }

EnviroSettings::EnviroSettings(QSettings::Scope scope, const QString &organization,
                               const QString &application, QObject *parent) :
    QSettings(scope, organization, application, parent),
    environment(QProcessEnvironment::systemEnvironment())
{ }

EnviroSettings::EnviroSettings(const QString &fileName, QSettings::Format format, QObject *parent) :
    QSettings(fileName, format, parent),
    environment(QProcessEnvironment::systemEnvironment())
{ }

EnviroSettings::EnviroSettings(const QString &organization, const QString &application,
                               QObject *parent) :
    QSettings(organization, application, parent),
    environment(QProcessEnvironment::systemEnvironment())
{ }

void EnviroSettings::setPrefix(const QString &prefix)
{
    if (prefix == environmentPrefix)
        return;
    environmentPrefix = prefix;
    Q_EMIT prefixChanged();
}

QVariant EnviroSettings::value(const QString &key, const QVariant &defaultValue) const
{
    const QString fullKey = group().isEmpty() ? key : group() + QLatin1Char('/') + key;
    const QString environmentKey = envKey(fullKey);
    qDebug("EnviroSettings::value() - key: '%s', environment key: %s", qPrintable(fullKey),
           qPrintable(environmentKey));

    const QString fallback = environment.value(environmentKey, defaultValue.toString());
    return QSettings::value(key, fallback);
}

QString EnviroSettings::envKey(const QString &key) const
{
    QString environmentKey = key;
    if (!environmentPrefix.isEmpty())
        environmentKey.prepend(environmentPrefix + QLatin1Char('/'));
    environmentKey.replace(QLatin1Char('/'), QLatin1Char('_'));
    return environmentKey.toUpper();
}
