// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company to play with: a private database, exports that live, settings, a page of things to try.
#pragma once

#include "host/base/failure.h"

#include <QString>

#include <functional>

struct SandboxOptions
{
    QString folder; ///< new or empty
    int people = 200;
    quint32 seed = 1;
    int days = 30; ///< so many exports, the last one of today
    QString program = QStringLiteral("talvenhr"); ///< how the page calls it
};

/// Is told what is being done, before each step.
using SandboxStep = std::function<void(const QString &what)>;

/// Makes the folder with a company as it was before the first export, and all that lives from there
/// on. What a failure or a kill leaves is known as half-made, and made anew by the next call.
Failure makeSandbox(const SandboxOptions &options, const SandboxStep &step);

/// So many days of attendance are in the database: two years of a company of up to a thousand, then
/// the fewer the more people there are, but two months at least.
int attendanceDays(int people);
