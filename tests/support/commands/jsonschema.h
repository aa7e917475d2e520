// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Documents for machines against the schemas that are shipped.
#pragma once

#include <QByteArray>
#include <QString>

/// What of the document is not as docs/NAME.schema.json has it; empty if all is.
QString schemaFault(const QByteArray &document, const QString &name);
