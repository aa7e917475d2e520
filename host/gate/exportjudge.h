// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What speaks against an export.
#pragma once

#include "host/base/failure.h"
#include "host/gate/gaterecord.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// What is to be rehearsed, and where what comes of it is to be written.
struct RehearsalOrder
{
    QString exportFile;
    QString name; ///< as it was delivered
    QVector<Limit> limits;
    QStringList after; ///< exports that the running server has taken, the oldest first
    QString changesFile;
    QString page;
};

/// Rehearses the export as the running server would take it.
using RehearseExport = std::function<Failure(const RehearsalOrder &order, Changes *changes)>;

/// What an export is measured by.
struct JudgeSettings
{
    QStringList refuse; ///< severities and codes of findings
    QStringList allowed; ///< codes that refuse nothing for this once
    QVector<Limit> limits; ///< those of a rehearsal, and "lost" and "gained"
    QHash<ushort, QString> stateTexts; ///< of the plugin's settings
    RehearseExport rehearse; ///< null: no rehearsal
};

/// Where the judge finds and leaves its files.
struct JudgedFiles
{
    QString exportFile;
    QString lastGood; ///< export that went through before; empty: there is none
    QStringList after; ///< as in RehearsalOrder
    QString folder; ///< for check.json, check.html, rejects.txt, changes.json, rehearsal.html
};

/// Checks the export, compares it with the last good one, rehearses it and measures the changes.
/// An export that the check refuses is not rehearsed, unless `isReleased`.
///
/// Fills the record's figures and appends to its reasons. Fails where nothing can be said, such as
/// of a database that does not answer.
Failure judgeExport(const JudgeSettings &settings, const JudgedFiles &files, bool isReleased,
                    GateRecord *record);

/// The code of a finding about how the export differs from the last good one: a person may allow
/// it for once, and the next one is compared with this one.
bool isOfComparison(const QString &code);

/// Severities and codes that refuse an export where nobody has said otherwise: errors, the header
/// of another release or of a second file, and columns that are not what they were.
QStringList standardRefusals();
/// Fails on a word that is neither a severity nor a code of the catalogue, naming the nearest.
Failure checkRefusals(const QStringList &words);

/// The limits of a rehearsal, and how many people of the last good export may be gone or new.
QVector<Limit> standardGateLimits();
