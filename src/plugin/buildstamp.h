// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The moment of the build, as the version report shows it.
#pragma once

#include <QString>

/// The build's date and time, as the compiler states them ("Oct  2 2023", "14:12:58"), in the form
/// yyMMddhhmm: 2310021412. Empty when the date cannot be parsed; a time that cannot counts as
/// midnight. Independent of the system's locale.
QString buildStamp(const QString &date, const QString &time);
