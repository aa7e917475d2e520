// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The hooks that talvenhr.conf names.
#pragma once

#include <QString>
#include <QStringList>

class Options;

/// Command lines; empty: none.
struct GateHooks
{
    QString passed;
    QString refused;
    QString late;
    QString failed; ///< a gate could not do its work
};

/// As SECTION/KEY.
QStringList hookSettings();
GateHooks readHooks(const Options &options);
/// Those that could not be called when they are needed.
QStringList hookTroubles(const GateHooks &hooks);
