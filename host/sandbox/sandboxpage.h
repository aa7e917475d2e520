// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The texts that lie in a sandbox: settings, the HR system's script, things to try.
#pragma once

#include "host/company/lifeevent.h"
#include "host/sandbox/sandbox.h"

#include <QVector>

/// TalvenHR.ini: a pass every second, each on the next day's export.
QString sandboxSettings(const QString &folder);

/// The HR system: a script that puts the next day's export in place, and after the last one that
/// one again.
QString hrSystemScript();

/// A day of life.txt.
QString dayText(const QDate &day, const QVector<LifeEvent> &events);

/// What to do first, in a few lines.
QString shortPage(const SandboxOptions &options);

/// Things to try.
QString sandboxPage(const SandboxOptions &options);
