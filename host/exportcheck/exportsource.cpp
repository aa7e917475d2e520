// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The file that is checked, or what comes from standard input.
#include "host/exportcheck/exportsource.h"

#include "export/exportfile.h"
#include "host/base/regularfile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSet>

#include <cstdio>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExportSource)
};

const int blockSize = 1 << 20;

} // namespace

ExportSource::ExportSource(const QString &name) :
    path(name),
    file(name)
{ }

QString ExportSource::name() const
{
    return path == QLatin1String("-") ? Text::tr("standard input") : path;
}

Failure ExportSource::open()
{
    if (path == QLatin1String("-"))
        return spool();
    if (const Failure failure = openRegularFile(&file))
        return failure;
    const QFileInfo info(path);
    sizeAtOpening = info.size();
    timeAtOpening = info.lastModified();
    return {};
}

Failure ExportSource::spool()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read standard input: %1").arg(input.errorString())};
    if (!spooled.open())
        return {ExitUsage,
                Text::tr("cannot write a temporary file: %1").arg(spooled.errorString())};
    QByteArray block = input.read(blockSize);
    while (!block.isEmpty()) {
        if (spooled.write(block) != block.size() || !spooled.flush())
            return {ExitUsage,
                    Text::tr("cannot write a temporary file: %1").arg(spooled.errorString())};
        block = input.read(blockSize);
    }
    sizeAtOpening = spooled.size();
    return {};
}

QIODevice *ExportSource::device()
{
    QFile *const open = file.isOpen() ? &file : &spooled;
    open->seek(0);
    return open;
}

bool ExportSource::hasChanged() const
{
    if (!file.isOpen())
        return false;
    const QFileInfo now(path);
    return now.size() != sizeAtOpening || now.lastModified() != timeAtOpening;
}

QHash<int, QString> ExportSource::lines(const QVector<int> &numbers)
{
    const QSet<int> wanted(numbers.cbegin(), numbers.cend());
    QHash<int, QString> found;
    ExportFile read(device());
    QString text;
    while (found.size() < wanted.size() && read.nextLine(&text)) {
        if (wanted.contains(read.lineNumber()))
            found.insert(read.lineNumber(), text);
    }
    return found;
}
