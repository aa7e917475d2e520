// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company of one person, a pass made of statements, and its undo.
#pragma once

#include "host/undo/undorun.h"
#include "support/databasefixture.h"

#include <QSqlDatabase>

/// Its `people` has columns that a pass knows nothing of. Each test begins with one person, two
/// branches, a terminal and three administrators.
class UndoFixture : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();

protected:
    void prepare() override;
    void release() override;

    /// The changes that these statements make, as they are read from their file.
    Changes passOf(const QStringList &statements);
    UndoPlan planOf(const Changes &changes, const UndoSelection &selection = {});
    /// With the rights of the login for undo.
    UndoOutcomes undo(const Changes &changes, const UndoSelection &selection = {});
    QStringList rows(const char *statement) { return database->rows(str(statement)); }
    void execute(const char *statement) { database->execute(str(statement)); }

    QSqlDatabase handle; ///< of that login
};
