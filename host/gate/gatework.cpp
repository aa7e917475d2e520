// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder in which the gate looks at an export.
#include "host/gate/gatework.h"

#include "host/base/ownerfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateWork)
};

const int partSize = 1 << 20; // bytes

} // namespace

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
    QFile from(delivery);
    if (!from.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(delivery, from.errorString())};
    return fillOwnerFile(delivered(), [&from, &delivery](QIODevice *file) {
        while (!from.atEnd()) {
            const QByteArray part = from.read(partSize);
            // A file that cannot be read is never at its end.
            if (part.isEmpty())
                return Failure {ExitUsage,
                                Text::tr("cannot read '%1': %2").arg(delivery, from.errorString())};
            file->write(part);
        }
        return Failure();
    });
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
