// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export mended, and what differs.
#pragma once

#include "host/gate/mend.h"

#include <QByteArray>
#include <QStringList>

/// The content as it is mended; the text of the failure if there is one.
QByteArray mended(QByteArray content, const MendWishes &wishes,
                  QVector<MendedCell> *cells = nullptr);
MendWishes encodingOnly(const QString &name);

/// That of a company of 40 to 99 people.
QByteArray companyExport(quint32 seed);

/// Where two contents of the same lines and cells differ; nothing fits if they have others.
QVector<MendedCell> differences(const QByteArray &before, const QByteArray &after);
/// Each cell as a text, without what is said of the whole file.
QStringList sorted(const QVector<MendedCell> &cells);
