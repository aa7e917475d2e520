// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How much memory a stretch of a program takes at most. Linux only.
#pragma once

#include <QFile>

#include <malloc.h>

/// Counts from its construction on, beyond what the process held then.
class PeakMemory
{
public:
    PeakMemory()
    {
        malloc_trim(0);
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        if (!reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || reset.write("5") != 1)
            qFatal("the peak of the memory cannot be reset");
        reset.close();
        before = kilobytes("VmRSS:");
    }

    qint64 peakBytes() const { return (kilobytes("VmHWM:") - before) * 1024; }

private:
    static qint64 kilobytes(const QByteArray &name)
    {
        QFile status(QStringLiteral("/proc/self/status"));
        status.open(QIODevice::ReadOnly);
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith(name))
                return line.mid(name.size()).trimmed().split(' ').first().toLongLong();
        }
        return 0;
    }

    qint64 before = 0;
};
