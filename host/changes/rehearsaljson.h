// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal knows beside the changes in their file, both ways.
#pragma once

#include "host/changes/changes.h"

#include <QByteArray>

class QJsonObject;

/// The member "rehearsal".
QByteArray rehearsalJson(const RehearsalFacts &facts);
RehearsalFacts rehearsalIn(const QJsonObject &object);

QByteArray findingJson(const Finding &finding);
