// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is written at which log level.
#include "support/loglevels.h"

#include "support/eventlog.h"

#include <QtTest>

void addLevels()
{
    QTest::addColumn<int>("level");
    for (int level = 0; level <= 3; ++level)
        QTest::newRow(qPrintable(QStringLiteral("level %1").arg(level))) << level;
}

QStringList atLevel(int level, const QStringList &marked)
{
    QStringList written;
    for (const QString &event : marked) {
        if (!event.at(0).isDigit())
            written.append(event);
        else if (event.at(0).digitValue() <= level)
            written.append(event.mid(2));
    }
    return written;
}

QStringList atLevel(int level, std::initializer_list<const char *> marked)
{
    return atLevel(level, lines(marked));
}
