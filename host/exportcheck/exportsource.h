// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The file that is checked, or what comes from standard input.
#pragma once

#include "host/base/failure.h"

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QString>
#include <QTemporaryFile>
#include <QVector>

/// Can be read more than once: what comes from standard input goes through a temporary file for its
/// owner only.
///
/// Owned by a command and used on its thread.
class ExportSource
{
public:
    /// "-" stands for standard input.
    explicit ExportSource(const QString &name);

    /// Opens the file for reading. Fails with what it is, if it is no file that can be read.
    Failure open();
    /// To be read from its begin. Only after open().
    QIODevice *device();
    /// How it is called in texts.
    QString name() const;
    qint64 size() const { return sizeAtOpening; }
    /// It has grown or was written again since it was opened.
    bool hasChanged() const;

    /// The texts of these lines, without their line ends, as the plugin reads them.
    QHash<int, QString> lines(const QVector<int> &numbers);

private:
    Failure spool();

    const QString path;
    QFile file;
    QTemporaryFile spooled;
    qint64 sizeAtOpening = 0;
    QDateTime timeAtOpening;
};
