// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Time zone, letters and folders of the machine.
#pragma once

#include "host/doctor/doctor.h"

/// Looks at the environment of this process and at the folder that holds TalvenHR.ini.
Diagnosis machineDiagnosis(const QString &dataDirectory);

// Its parts.

/// `zone` is the value of the variable TZ; a null one stands for none.
Diagnosis zoneDiagnosis(const QByteArray &zone);
Diagnosis folderDiagnosis(const QString &dataDirectory);

/// Whether Czech and Slovak names survive on their way into the log.
bool localeKeepsLetters();
