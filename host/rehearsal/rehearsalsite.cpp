// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder that a rehearsed pass works in.
#include "host/rehearsal/rehearsalsite.h"

#include "host/base/ownerfile.h"
#include "host/base/regularfile.h"
#include "host/plugin/settingkeys.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalSite)
};

Failure writeFile(const QString &path, const QByteArray &content)
{
    return writeOwnerFile(path, [&content](QIODevice *file) { file->write(content); });
}

/// Every key that the plugin asks for: those of the table, and the group [MES].
QStringList askedKeys(const SettingsFile &one, const SettingsFile &other)
{
    QStringList keys = settingKeyNames();
    const QStringList all = one.keys() + other.keys();
    for (const QString &key : all) {
        if (key.startsWith(QLatin1String("MES/")))
            keys.append(key);
    }
    keys.removeDuplicates();
    return keys;
}

/// A key by which the plugin would get something else from the copy than it is to get; null if
/// there is none.
QString strayKey(const SettingsFile &original, const SettingsFile &copy,
                 const QMap<QString, QVariant> &values)
{
    const QStringList keys = askedKeys(original, copy);
    for (const QString &key : keys) {
        const bool isRight = values.contains(key)
            ? copy.holds(key) && copy.toString(key) == values.value(key).toString()
            : copy.value(key) == original.value(key);
        if (!isRight)
            return key;
    }
    return {};
}

Failure notCopied(const QString &settingsFile, const QString &reason)
{
    return {ExitUsage,
            Text::tr("the settings '%1' cannot be copied, so no pass was rehearsed: %2")
                .arg(settingsFile, reason)};
}

/// Under a name that nobody reads: what was written is not taken from memory then. In ASCII: with a
/// codec, QSettings writes each half of a letter beyond 16 bits for itself, and none can be read.
Failure writeKeys(const SettingsFile &original, const QMap<QString, QVariant> &values,
                  const QString &path)
{
    if (const Failure failure = writeFile(path, QByteArray()))
        return failure;
    QSettings copy(path, QSettings::IniFormat);
    const QStringList keys = original.keys();
    for (const QString &key : keys) {
        if (!key.isEmpty())
            copy.setValue(key, original.value(key));
    }
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        copy.setValue(value.key(), value.value());
    copy.sync();
    return copy.status() == QSettings::NoError
        ? Failure()
        : Failure {ExitUsage, Text::tr("cannot write '%1'").arg(path)};
}

} // namespace

Failure RehearsalSite::make(const QString &settingsFile, const QString &exportFile)
{
    if (!folder.failure().isEmpty())
        return {ExitUsage, folder.failure()};
    const Failure failure = writeSettingsWith(
        {{QStringLiteral("importFile"), this->exportFile()},
         {QStringLiteral("deleteFile"), QStringLiteral("false")},
         {QStringLiteral("syncCommandRun"), QStringLiteral("0")},
         {QStringLiteral("timerInterval"), QStringLiteral("1")},
         {QStringLiteral("syncInterval"), QStringLiteral("1")}},
        settingsFile, this->settingsFile());
    return failure ? failure : replaceExport(exportFile);
}

Failure RehearsalSite::replaceExport(const QString &file) const
{
    QFile other(file);
    if (const Failure failure = openRegularFile(&other))
        return failure;
    return replaceExport(other.readAll());
}

Failure RehearsalSite::replaceExport(const QByteArray &content) const
{
    return writeFile(exportFile(), content);
}

Failure writeSettingsWith(const QMap<QString, QVariant> &values, const QString &settingsFile,
                          const QString &path)
{
    const SettingsFile original(settingsFile);
    if (const Failure failure = original.check())
        return failure;
    const QString fresh = path + QStringLiteral(".new");
    if (const Failure failure = writeKeys(original, values, fresh))
        return notCopied(settingsFile, failure.text);
    if (!QFile::rename(fresh, path))
        return notCopied(settingsFile, Text::tr("cannot write '%1'").arg(path));
    const SettingsFile copy(path);
    Failure failure = copy.check();
    const QString key = strayKey(original, copy, values);
    if (!failure && !key.isNull())
        failure = {ExitUsage,
                   Text::tr("the plugin would get another '%1' from the copy; write this key as a "
                            "plain line KEY=VALUE")
                       .arg(key)};
    if (!failure)
        return {};
    QFile::remove(path);
    return notCopied(settingsFile, failure.text);
}
