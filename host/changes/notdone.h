// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass would have done, and has not, from what was told of it.
#pragma once

#include "host/changes/passnotes.h"

/// One thing that was not done, and for whom.
struct AboutNotDone
{
    AboutPeople about;
    NotDone notDone;
};

/// In the order of messages, then leave, then statements. A statement that was refused is told
/// once: by the recording of the calls where there is one, else by the plugin's error.
QVector<AboutNotDone> notDoneOf(const PassTold &told);
