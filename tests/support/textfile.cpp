// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Files that a test writes for what it tests.
#include "support/textfile.h"

#include <QFile>

void writeLines(const QString &path, const QStringList &lines)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    for (const QString &line : lines)
        file.write(line.toUtf8() + '\n');
}
