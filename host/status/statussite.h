// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a small site.
#pragma once

#include "host/status/sitefolder.h"
#include "host/status/status.h"

/// Brings the site up to date: an index with the last 90 days, a page for each export at the gate
/// and each pass in them. Writes the index and what is new; pages that have grown old go, and so
/// does what they tell of people when its changes are gone. Touches no file of others.
Failure writeSite(const Status &status, const SiteTarget &target);
