// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A driver that answers from memory.
#pragma once

#include "host/database/databasecall.h"
#include "host/database/registereddriver.h"

#include <QSqlError>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>

/// What a database answers to a call. As it is made: success, no rows, nothing changed.
struct DatabaseAnswer
{
    /// The rows with their cells, under these names of columns.
    void setRows(const QStringList &names, const QVector<QVariantList> &cells);

    QStringList columns; ///< none where the statement is no query
    int rowCount = 0;
    std::function<QVariant(int row, int column)> cell; ///< asked whenever one of a row is read
    QVariant insertId;
    int affected = 0; ///< changed rows, -1 if their number is not known
    bool fails = false;
    std::optional<QSqlError>
        error; ///< may stand beside success; without a type, it gets the call's
};

/// Called for each call of a handle or its clones, on the thread that makes the call; handles on
/// several threads call it at once. The answer is never null; one that comes often can be made
/// once. What is answered to a close does not matter.
using AnswerFunction
    = std::function<std::shared_ptr<const DatabaseAnswer>(const DatabaseCall &call)>;

/// A driver that takes every answer from the function, which lives as long as the registration and
/// the handles of the driver. It has transactions, prepared statements, insert ids and the number
/// of rows; it has no tables, nothing to cancel, and no next result.
RegisteredDriver answeringDriver(const AnswerFunction &answers);
