// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Czech and Slovak names and titles, about as often as they are met.
#pragma once

#include "host/company/draw.h"

#include <QString>

/// A first name; one in forty people has two.
QString drawFirstName(Draw &draw, bool woman);

/// A surname in the form of a man's, such as "Procházka".
QString drawSurname(Draw &draw);

/// The surname of a woman of that family: "Procházková".
QString feminine(const QString &surname);

/// A title before the name; empty for three in four.
QString drawTitle(Draw &draw);

/// A title after the name of somebody who has one before it; empty for most.
QString drawTitleAfter(Draw &draw);

/// A Slovak or a Czech number; empty for one in five.
QString drawPhone(Draw &draw);
