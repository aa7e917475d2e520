// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The keys of TalvenHR.ini: their kinds and defaults.
#include "host/plugin/settingkeys.h"

const QVector<SettingKey> &settingKeys()
{
    static const QVector<SettingKey> keys {
        {QStringLiteral("enabled"), SettingKey::Switch, false},
        {QStringLiteral("timerInterval"), SettingKey::Number, 60},
        {QStringLiteral("syncInterval"), SettingKey::Number, 60},
        {QStringLiteral("testMode"), SettingKey::Switch, QVariant()},
        {QStringLiteral("importFile"), SettingKey::Text, QVariant()},
        {QStringLiteral("deleteFile"), SettingKey::Switch, true},
        {QStringLiteral("syncCommand"), SettingKey::Text, QVariant()},
        {QStringLiteral("syncCommandRun"), SettingKey::Number, 0},
        {QStringLiteral("departmentId"), SettingKey::Number, 1},
    };
    return keys;
}

QStringList settingKeyNames()
{
    QStringList names;
    for (const SettingKey &key : settingKeys())
        names.append(key.name);
    return names;
}

SettingKey settingKey(const QString &name)
{
    for (const SettingKey &key : settingKeys()) {
        if (key.name == name)
            return key;
    }
    return {};
}
