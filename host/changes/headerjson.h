// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The header of changes in their file, both ways, and values that other parts have, too.
#pragma once

#include "host/changes/changes.h"

#include <QByteArray>

class QJsonObject;
class QJsonValue;

/// The member "header".
QByteArray headerJson(const ChangesHeader &header);
ChangesHeader headerIn(const QJsonObject &object);

/// A text, or null for an empty one.
QByteArray jsonText(const QString &text);
/// A moment with its offset and milliseconds, or null for one that is not valid.
QByteArray jsonMoment(const QDateTime &moment);
/// Not valid for null.
QDateTime momentIn(const QJsonValue &value);
/// A number of any size; QJsonValue has no way to ask for a whole one.
qlonglong numberIn(const QJsonValue &value);
QStringList textsIn(const QJsonValue &value);
