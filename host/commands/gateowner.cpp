// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whose gate it is.
#include "host/commands/gateowner.h"

#include "host/base/shellword.h"
#include "host/gate/gate.h"
#include "host/server/folderowner.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateOwner)
};

/// The folder in which the first missing one would be made.
QString existingAbove(const QString &folder)
{
    QString path = folder;
    while (!QFileInfo::exists(path))
        path = QFileInfo(path).path();
    return path;
}

Failure foreign(const QString &folder)
{
    const QString owner = ownerOf(folder);
    return {
        ExitUsage,
        Text::tr("the folder '%1' belongs to %2, and you are %3: %2 could not read what this "
                 "gate leaves there; run it as: sudo -u %2 %4 gate ...")
            .arg(folder, owner, currentUser(), shellWord(QCoreApplication::applicationFilePath()))};
}

} // namespace

Failure checkGateOwner(const GateSettings &settings)
{
    const QStringList folders {settings.state, settings.archive, settings.refused};
    for (const QString &folder : folders) {
        if (QFileInfo::exists(folder) && !isOwn(folder))
            return foreign(folder);
    }
    // Others may be let into a folder that is not theirs; the administrator may do everything.
    if (::geteuid() != 0)
        return {};
    for (const QString &folder : folders) {
        const QString above = existingAbove(QFileInfo(folder).absoluteFilePath());
        if (!isOwn(above))
            return foreign(above);
    }
    return {};
}
