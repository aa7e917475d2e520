// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One row of the plan of work groups.
#pragma once

#include <QtGlobal>

/// From a month on a person is in a group.
struct GroupsPlan
{
    uint gid = 0;
    uint uid = 0;
    uint since = 0; ///< first month, as the plain number yyyyMM
};
