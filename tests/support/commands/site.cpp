// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A data directory with settings and an export file.
#include "support/commands/site.h"

#include "support/recordbuilder.h"

#include <QFile>
#include <QtTest>

Site::Site() :
    folder(QStringLiteral("/tmp/talven-XXXXXX"))
{
    set({QStringLiteral("enabled=true"), QStringLiteral("timerInterval=1"),
         QStringLiteral("syncInterval=1"), QStringLiteral("deleteFile=false"),
         QStringLiteral("importFile=") + exportFile()});
    // 1001 is in the sample company.
    const QStringList lines {header(), employee(1001, QStringLiteral("Ľubomír")),
                             employee(7001, QStringLiteral("Dáša")),
                             employee(7002, QStringLiteral("Jiří"))};
    writeFile(QStringLiteral("ron.data"), lines.join(QLatin1Char('\n')));
}

void Site::set(const QStringList &settings)
{
    const QString name = QStringLiteral("TalvenHR.ini");
    QStringList lines = readFile(name).split(QLatin1Char('\n'), QString::SkipEmptyParts);
    for (const QString &setting : settings) {
        const QString key = setting.section(QLatin1Char('='), 0, 0) + QLatin1Char('=');
        for (int i = lines.size() - 1; i >= 0; --i) {
            if (lines.at(i).startsWith(key))
                lines.removeAt(i);
        }
        lines.append(setting);
    }
    writeFile(name, lines.join(QLatin1Char('\n')));
}

void Site::writeFile(const QString &name, const QString &text) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8() + '\n') < 0)
        QTest::qFail(qPrintable(file.errorString()), __FILE__, __LINE__);
}

QString Site::readFile(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void Site::holdPasses()
{
    writeFile(QStringLiteral("hold.sh"),
              QStringLiteral("while [ ! -e '%1' ]; do sleep 0.02; done; rm '%1'")
                  .arg(path(QStringLiteral("go"))));
    set({QStringLiteral("syncCommand=sh ") + path(QStringLiteral("hold.sh")),
         QStringLiteral("syncCommandRun=2")});
}

void Site::endPass() const
{
    writeFile(QStringLiteral("go"), QString());
}

QString Site::employee(uint number, const QString &name)
{
    return QStringLiteral("%1|1||%2|Novák|||2020-01-01 00:00:00.000||100|Centrála|1|"
                          "2024-01-01 00:00:00.000|11|0|0|5|0")
        .arg(number)
        .arg(name);
}

QString Site::header()
{
    return exportHeader();
}

QStringList Site::runOptions(const QStringList &others) const
{
    return QStringList {QStringLiteral("run"), QStringLiteral("--data-dir"), dataDir()} + others;
}

QStringList quickServerOptions()
{
    return {QStringLiteral("--innodb-flush-log-at-trx-commit=0"),
            QStringLiteral("--innodb-doublewrite=0")};
}
