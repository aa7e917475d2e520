// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder in which the gate looks at an export.
#include "host/gate/gatework.h"

#include "host/base/ownerfile.h"

#include <QDir>

GateWork::GateWork(const QString &stateFolder) :
    place(QDir(stateFolder).filePath(QStringLiteral("work")))
{ }

Failure GateWork::make() const
{
    remove();
    return makeOwnerFolder(place);
}

void GateWork::remove() const
{
    QDir(place).removeRecursively();
}

Failure GateWork::takeIn(const QString &delivery) const
{
    return copyToOwnerFile(delivery, delivered());
}

QString GateWork::path(const QString &name) const
{
    return QDir(place).filePath(name);
}

QString GateWork::delivered() const
{
    return path(QStringLiteral("export"));
}

QString GateWork::mended() const
{
    return path(QStringLiteral("mended"));
}

QString GateWork::lastGood() const
{
    return path(QStringLiteral("last-good"));
}
