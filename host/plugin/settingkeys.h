// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The keys of TalvenHR.ini: their kinds and defaults.
#pragma once

#include <QStringList>
#include <QVariant>
#include <QVector>

/// A key of the plugin's settings.
struct SettingKey
{
    enum Kind {
        Switch,
        Number,
        Text,
    };

    QString name;
    Kind kind = Text;
    QVariant standard;
};

/// All keys above the group [MES].
const QVector<SettingKey> &settingKeys();
QStringList settingKeyNames();
/// The key of this name, or one without a name.
SettingKey settingKey(const QString &name);
