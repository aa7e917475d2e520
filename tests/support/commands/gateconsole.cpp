// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A site with a gate, as its users have it.
#include "support/commands/gateconsole.h"

#include "host/gate/gaterecord.h"

#include <QDir>
#include <QFile>

namespace {

const QString configuration = QStringLiteral("talvenhr.conf");

} // namespace

GateConsole::GateConsole()
{
    QFile::remove(exportFile());
    set({QStringLiteral("deleteFile=true")});
    QDir(dataDir()).mkdir(QStringLiteral("incoming"));
    configure({});
}

void GateConsole::configure(const QStringList &lines) const
{
    const QStringList all {QStringLiteral("[plugin]"), QStringLiteral("data-dir=."),
                           QStringLiteral("[gate]"), QStringLiteral("incoming=incoming"),
                           QStringLiteral("complete=rename")};
    writeFile(configuration, (all + lines).join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

QStringList GateConsole::gate(const QStringList &others) const
{
    return QStringList {QStringLiteral("gate"), QStringLiteral("--config"), path(configuration)}
    + others;
}

void GateConsole::deliver(const QString &text) const
{
    writeFile(QStringLiteral("incoming/ron.data"), text);
}

bool GateConsole::isInPlace() const
{
    return QFile::exists(exportFile());
}

QStringList GateConsole::refusedNames() const
{
    QStringList names;
    const QVector<GateRecord> records = readGateRecords(path(QStringLiteral("refused")));
    for (const GateRecord &record : records)
        names.append(record.name);
    return names;
}

QString GateConsole::exportOf(const QString &opening, int people)
{
    QString text = header() + QLatin1Char('\n');
    for (int i = 1; i <= people; ++i)
        text += employee(static_cast<uint>(2000 + i), opening + QString::number(i))
            + QLatin1Char('\n');
    return text;
}
