// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin's settings, TalvenHR.ini, taken as the plugin takes them.
#pragma once

#include "host/base/failure.h"

#include <QHash>
#include <QScopedPointer>
#include <QStringList>
#include <QVariant>

class EnviroSettings;

/// What a command has to know of the plugin's settings.
struct PluginSettings
{
    uint syncInterval = 0; ///< ticks
    uint tickMilliseconds = 0;
    bool testMode = false;
    QString importFile; ///< absolute
    QString digest; ///< SHA-256 in hex of all keys with the values that the plugin gets
};

/// An INI file with the environment behind it, read by the plugin's own reader.
///
/// Owned by a command and used on its thread, while no plugin runs.
class SettingsFile
{
public:
    explicit SettingsFile(const QString &path);
    ~SettingsFile();

    /// The file is there and can be read as an INI file. Where the environment enables the plugin
    /// it may be missing.
    Failure check() const;

    QString path() const { return file; }
    /// Where the file lies.
    QString folder() const;
    /// The value that the plugin gets for a key: from the file, else the environment, else the
    /// default.
    QVariant value(const QString &key) const;
    bool toBool(const QString &key) const { return value(key).toBool(); }
    uint toUInt(const QString &key) const { return value(key).toUInt(); }
    QString toString(const QString &key) const { return value(key).toString(); }

    PluginSettings values() const;
    /// The texts of [MES], which stand in the same statements as the texts of people, by state as
    /// the plugin reads it.
    QHash<ushort, QString> stateTexts() const;

    /// The file itself holds the key.
    bool holds(const QString &key) const;
    /// Every key of the file, with its group in front: MES/21.
    QStringList keys() const;

private:
    const QString file;
    QScopedPointer<EnviroSettings> ini;
};
