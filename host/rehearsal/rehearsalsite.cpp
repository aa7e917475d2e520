// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder that a rehearsed pass works in.
#include "host/rehearsal/rehearsalsite.h"

#include "host/base/ownerfile.h"
#include "host/plugin/settingslines.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSet>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalSite)
};

Failure readFile(const QString &path, QByteArray *content)
{
    QFile file(path);
    // A pipe would wait for its other end, for good.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        return {ExitUsage,
                Text::tr("'%1' is no regular file; the plugin reads no others").arg(path)};
    if (!file.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(path, file.errorString())};
    *content = file.readAll();
    return {};
}

Failure writeFile(const QString &path, const QByteArray &content)
{
    return writeOwnerFile(path, [&content](QIODevice *file) { file->write(content); });
}

/// The key of a line, as bytes; empty for a line that is none.
QByteArray keyOf(const QByteArray &line)
{
    const int equals = line.indexOf('=');
    return equals < 0 ? QByteArray() : line.left(equals).trimmed();
}

} // namespace

Failure RehearsalSite::make(const QString &settingsFile, const QString &exportFile)
{
    if (!folder.failure().isEmpty())
        return {ExitUsage, folder.failure()};
    QByteArray settings;
    if (const Failure failure = readFile(settingsFile, &settings))
        return failure;
    if (const Failure failure = replaceExport(exportFile))
        return failure;
    return writeFile(
        this->settingsFile(),
        settingsWith(settings,
                     {quotedSettingsLine(QStringLiteral("importFile"), this->exportFile()),
                      QStringLiteral("deleteFile=false"), QStringLiteral("syncCommandRun=0"),
                      QStringLiteral("timerInterval=1"), QStringLiteral("syncInterval=1")}));
}

Failure RehearsalSite::replaceExport(const QString &file) const
{
    QByteArray content;
    if (const Failure failure = readFile(file, &content))
        return failure;
    return replaceExport(content);
}

Failure RehearsalSite::replaceExport(const QByteArray &content) const
{
    return writeFile(exportFile(), content);
}

QByteArray settingsWith(const QByteArray &settings, const QStringList &lines)
{
    // A mark of the encoding counts only as the first of all bytes.
    const QByteArray mark = settings.startsWith("\xef\xbb\xbf") ? settings.left(3) : QByteArray();
    QSet<QByteArray> replaced;
    QByteArray result = mark;
    for (const QString &line : lines) {
        replaced.insert(keyOf(line.toUtf8()));
        result += line.toUtf8() + '\n';
    }
    QString group;
    const QList<QByteArray> old = settings.mid(mark.size()).split('\n');
    for (const QByteArray &line : old) {
        const bool isKey = !beginsGroup(QString::fromUtf8(line), &group);
        if (!isKey || !group.isEmpty() || !replaced.contains(keyOf(line)))
            result += line + '\n';
    }
    return result;
}
