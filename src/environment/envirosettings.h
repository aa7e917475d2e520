// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings whose missing keys environment variables can supply.
#pragma once

#include <QProcessEnvironment>
#include <QSettings>

/// QSettings with the process's environment behind it: the file wins over the variable, and the
/// variable over the default.
///
/// The environment is the one at construction; a variable set later is not seen. A plain QObject
/// otherwise: owned by its creator or parent, used on one thread.
class EnviroSettings : public QSettings
{
    Q_OBJECT
    Q_PROPERTY(QString prefix READ prefix WRITE setPrefix NOTIFY prefixChanged)

public:
    explicit EnviroSettings(QObject *parent = nullptr);
    EnviroSettings(QSettings::Scope scope, const QString &organization,
                   const QString &application = QString(), QObject *parent = nullptr);
    EnviroSettings(const QString &fileName, QSettings::Format format, QObject *parent = nullptr);
    explicit EnviroSettings(const QString &organization, const QString &application = QString(),
                            QObject *parent = nullptr);

    /// Put before every environment key. Empty after construction.
    const QString &prefix() const { return environmentPrefix; }
    void setPrefix(const QString &prefix);

    /// The value of a key, always as a valid variant: what the file holds, else the text of the
    /// environment variable, else the text of the default. A default without a text form is lost.
    /// Hides QSettings::value(), which is not virtual. Writes a debug line whatever the log level.
    QVariant value(const QString &key, const QVariant &defaultValue = QVariant()) const;

    /// The name of the variable for a key that already holds its group: MES/21 gives MES_21.
    QString envKey(const QString &key) const;

Q_SIGNALS:
    void prefixChanged();

private:
    const QProcessEnvironment environment;
    QString environmentPrefix;
};
