// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes as values for a page of a browser.
#pragma once

#include "host/changes/changes.h"

#include <QVariant>

/// The people of whom there is something to tell, the worst first, for the template "people": each
/// with number, name, words and rows.
QVariantList peopleHtmlValues(const Changes &changes);
/// The same by numbers and kinds alone.
QVariantList peopleNumbersHtmlValues(const Changes &changes);
