// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whose files are whose, and what is in the way of new ones.
#include "host/server/folderowner.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(FolderOwner)
};

QString nameOf(uid_t user)
{
    const passwd *const entry = ::getpwuid(user);
    return entry ? QString::fromLocal8Bit(entry->pw_name) : Text::tr("user %1").arg(user);
}

/// Looks behind a link: what it leads to is what is used.
bool look(const QString &path, struct stat *found)
{
    return ::stat(QFile::encodeName(path).constData(), found) == 0;
}

} // namespace

QString ownerOf(const QString &path)
{
    struct stat found;
    return look(path, &found) ? nameOf(found.st_uid) : QString();
}

QString currentUser()
{
    return nameOf(::geteuid());
}

bool isOwn(const QString &path)
{
    struct stat found;
    return look(path, &found) && found.st_uid == ::geteuid();
}

QString foreignFileIn(const QString &folder)
{
    QDirIterator files(folder,
                       QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        struct stat found;
        const QString file = files.next();
        // A temporary file may be gone by now.
        if (look(file, &found) && found.st_uid != ::geteuid())
            return file;
    }
    return QString();
}

QString keeperText(const QString &path)
{
    QString seen = path;
    while (!QFileInfo::exists(seen) && seen != QLatin1String("/"))
        seen = QFileInfo(seen).path();
    return isOwn(seen) ? QString() : Text::tr("; '%1' belongs to %2").arg(seen, ownerOf(seen));
}

QString writeTroubleIn(const QString &folder)
{
    QTemporaryFile probe(folder + QStringLiteral("/probe-XXXXXX"));
    const QByteArray page(4096, '\0');
    const bool written = probe.open() && probe.write(page) == page.size() && probe.flush();
    return written ? QString() : probe.errorString();
}
