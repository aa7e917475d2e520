// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file about people: for its owner only.
#include "host/base/ownerfile.h"

#include <QCoreApplication>
#include <QSaveFile>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(OwnerFile)
};

} // namespace

Failure writeOwnerFile(const QString &path, const std::function<void(QIODevice *file)> &write)
{
    QSaveFile file(path);
    const bool isOpen = file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    if (isOpen)
        write(&file);
    if (!isOpen || !file.commit())
        return {ExitUsage, Text::tr("cannot write '%1': %2").arg(path, file.errorString())};
    return {};
}
