// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Folders with a gate.
#pragma once

#include "host/company/life.h"
#include "host/gate/gate.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// A company that delivers its export day by day, and a gate that decides about it. The plugin is a
/// file in a folder.
class GateSite
{
public:
    explicit GateSite(quint32 seed = 1);

    /// For the next gate.
    GateSettings settings;
    /// The company of the last day.
    const Company &company() const { return life.company(); }
    /// The export of the next day of its life.
    QByteArray nextExport();

    /// Delivers a file, an hour later than the one before.
    void deliver(const QByteArray &content, const QString &name = QStringLiteral("ron.data"));
    bool isDelivered(const QString &name = QStringLiteral("ron.data")) const;

    /// What lies in place; null if nothing does.
    QByteArray inPlace() const;
    /// The plugin reads the export, and removes it.
    QByteArray read();

    /// Runs a gate to its end. A failure ends the test, unless `failure` takes it.
    GateResult run(Failure *failure = nullptr);
    GateResult release(const ReleaseWish &wish, Failure *failure = nullptr);

    /// Of all that was decided, oldest first.
    QVector<GateRecord> records() const;
    /// The export of a passed record, expanded.
    QByteArray archived(const GateRecord &record) const;
    QString path(const QString &name) const { return folder.filePath(name); }

private:
    GateResult taken(const std::function<Failure(Gate *, GateResult *)> &work, Failure *failure);

    QTemporaryDir folder;
    Life life;
    QDateTime lastDelivery;
};

/// The first lines of an export.
QByteArray cutOff(const QByteArray &content, int lines);
/// With an error in its first line of a person.
QByteArray damaged(const QByteArray &content);
/// Of its reasons.
QStringList codesOf(const GateRecord &record);
/// The endings of all files about a record.
QStringList endingsOf(const GateRecord &record, const QString &folder);
