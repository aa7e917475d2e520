// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Pages for a browser.
#pragma once

#include "host/base/failure.h"
#include "host/base/ownerfile.h"

#include <QString>
#include <QVariant>

/// Fills a template of host/report/html, by its name without the ending, and writes it to a file
/// for its owner and these readers. Each value is escaped: it may hold anything. A page needs
/// nothing but itself: no script, no font, no network.
Failure writeHtmlPage(const QString &path, const QString &name, const QVariantHash &values,
                      FileReaders readers = FileReaders::Nobody);

/// The same as a text; empty with `error` where the template library fails.
QString htmlPage(const QString &name, const QVariantHash &values, QString *error);
