// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that give an account the rights that it needs.
#pragma once

#include <QStringList>

enum class GrantPurpose {
    Run, ///< exactly what the statements of a pass need
    Look, ///< all that is there to be read, and nothing written: for checks, and for a dump
    Plan, ///< the rights of Run and of Look: for a pass that is rehearsed first
    Undo ///< what a pass has written, given back; and the rights of Look
};

/// One statement each, without a semicolon. The account is named as in SQL, 'user'@'host', and has
/// to exist. For the purpose Look one of them concerns the server's own table of routines: without
/// it a dump leaves out their bodies, and says nothing.
QStringList grantStatements(const QString &account, const QString &schema, GrantPurpose purpose);

/// The name of a schema in a GRANT on all of it, where % and _ would be wild.
QString quotedSchemaPattern(const QString &schema);
