// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the settings must come to, worked out without the code that is fuzzed.
#include "settingsmodel.h"

#include <QVariant>

#include <limits>

namespace {

bool isText(const QVariant &value)
{
    return value.type() == QVariant::String;
}

/// The low 32 bits of a decimal number of at most 64 bits, 0 for everything else. A value of
/// another kind than text is left to Qt.
uint number(const QSettings &file, const char *key, uint absent)
{
    const QString name = QLatin1String(key);
    if (!file.contains(name))
        return absent;
    const QVariant value = file.value(name);
    if (!isText(value))
        return value.toUInt();
    QString digits = value.toString().trimmed();
    if (digits.startsWith(QLatin1Char('+')))
        digits.remove(0, 1);
    quint64 sum = 0;
    for (const QChar digit : qAsConst(digits)) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return 0;
        const quint64 next = static_cast<quint64>(digit.unicode() - '0');
        if (sum > (std::numeric_limits<quint64>::max() - next) / 10)
            return 0;
        sum = sum * 10 + next;
    }
    return static_cast<uint>(sum);
}

/// False for the empty text, 0 and false, whatever the case.
bool truth(const QSettings &file, const char *key, bool absent)
{
    const QString name = QLatin1String(key);
    if (!file.contains(name))
        return absent;
    const QVariant value = file.value(name);
    if (!isText(value))
        return value.toBool();
    const QString text = value.toString().toLower();
    return !text.isEmpty() && text != QLatin1String("0") && text != QLatin1String("false");
}

QString text(const QSettings &file, const char *key)
{
    return file.value(QLatin1String(key), QString()).toString();
}

/// The low 16 bits of a number of at most 32 bits, 0 for every other key.
ushort stateCode(const QString &key)
{
    QString digits = key.trimmed();
    if (digits.startsWith(QLatin1Char('+')))
        digits.remove(0, 1);
    quint64 code = 0;
    for (const QChar digit : qAsConst(digits)) {
        code = code * 10 + static_cast<quint64>(digit.unicode() - '0');
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9') || code > 0xFFFFFFFFu)
            return 0;
    }
    return static_cast<ushort>(code % 65536);
}

/// Up to its first NUL.
QString stateText(const QVariant &value)
{
    const QByteArray bytes = value.toByteArray();
    const int end = bytes.indexOf('\0');
    return QString::fromUtf8(end < 0 ? bytes : bytes.left(end));
}

} // namespace

SettingsModel modelOfSettings(QSettings &file)
{
    SettingsModel model;
    model.enabled = truth(file, "enabled", false);
    model.timerInterval = qMax(number(file, "timerInterval", 60) * 1000, 1000u);
    model.syncInterval = number(file, "syncInterval", 60);
    model.testMode = truth(file, "testMode", false);
    model.importFile = text(file, "importFile");
    model.deleteFile = truth(file, "deleteFile", true);
    model.syncCommand = text(file, "syncCommand");
    model.syncCommandRun = static_cast<int>(number(file, "syncCommandRun", 0) % 256);
    model.departmentId = number(file, "departmentId", 1);

    file.beginGroup(QStringLiteral("MES"));
    const QStringList keys = file.allKeys(); // sorted: the last key of a code wins
    for (const QString &key : keys) {
        // An empty key is possible, and Qt gives no value for it.
        const QVariant value = key.isEmpty() ? QVariant() : file.value(key);
        model.mes.insert(stateCode(key), stateText(value));
    }
    file.endGroup();
    return model;
}
