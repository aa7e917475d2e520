// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The files that people know, in place of a rehearsal's copies of them.
#pragma once

#include "host/changes/changes.h"
#include "host/changes/passtrace.h"

#include <QString>

class RehearsalSite;
struct RehearsalWishes;

/// Puts the real files' names into what the plugin and its process have said of their copies.
///
/// A plain value.
class RealNames
{
public:
    RealNames(const RehearsalSite &site, const RehearsalWishes &wishes);

    QString in(QString text) const;
    void putInto(Changes *changes) const;
    void putInto(TraceSteps *steps) const;

    /// How people call the export.
    QString exportFile() const { return realExport; }

private:
    void putInto(QVector<PassMessage> *messages) const;

    const QString folder;
    const QString settings;
    const QString data;
    const QString realSettings;
    const QString realExport;
};
