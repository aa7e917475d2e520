// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A rehearsal as a page for a browser.
#pragma once

#include "host/changes/changes.h"

#include <QVariant>

/// The values for the template "rehearsal".
QVariantHash rehearsalHtmlValues(const Changes &changes);
