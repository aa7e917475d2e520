// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a site has pages about.
#pragma once

#include "host/status/sitefolder.h"
#include "host/status/status.h"

/// Days that a site shows.
const int siteDays = 90;

/// An export at the gate, or a pass.
struct SiteEntry
{
    QString page; ///< file name
    QDateTime when;
    const GateRecord *record = nullptr; ///< null: a pass that only its changes tell of
    QString changesFile; ///< empty: there is none
    QString checkPage; ///< to be copied; empty: there is none
    QByteArray madeOf; ///< differs when the page is to be another one
};

/// Those of the last 90 days, newest first. The records are those of the status.
QVector<SiteEntry> siteEntries(const Status &status, const SiteTarget &target);
