// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Another day than that of the clock, for one process and one server.
#pragma once

#include "host/base/failure.h"
#include "host/database/connectionparameters.h"

#include <QDate>
#include <QProcessEnvironment>

/// The days that the server's clock can be set to: SET timestamp takes seconds since the epoch in
/// 31 bits. A day at each end is left out for the time zones.
QDate firstPretendedDay();
QDate lastPretendedDay();
bool canBePretended(const QDate &day);

/// From now on every connection to the server that is no administrator's has the day, at this time
/// of the day. Fails where libfaketime is not installed, which environmentOfDay() needs.
Failure pretendDay(const ConnectionParameters &administrator, const QDate &day);

/// That of this process for a child, with a clock of the day unless that is invalid. Without the
/// variables that stand for options: they may name the source, and the child is to know the copy.
QProcessEnvironment environmentOfDay(const QDate &day);
