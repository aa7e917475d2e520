// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What texts do to a statement that they stand in.
#pragma once

#include "host/exportcheck/sqllexer.h"

#include <array>

/// What a text of the export does to a statement, worst last.
enum class TextEffect {
    None,
    OtherText, ///< another text is stored
    Fails, ///< the server refuses the statement, and nothing of it runs
    RunsElse, ///< something else runs or is written; also where that cannot be ruled out
};

/// The columns of `people` that hold texts, in the order in which both statements have them: title,
/// name, surname, title behind, phone, text of the state.
constexpr int statementTextCount = 6;
using StatementTexts = std::array<QString, statementTextCount>;

/// One statement with its texts in place.
struct StatementEffect
{
    TextEffect effect = TextEffect::None;
    StatementTexts stored; ///< for None and OtherText
    QString runs; ///< for RunsElse: what is not as it was meant, in one line, shortened
};

/// A statement with texts that do no harm in any dialect.
struct MeantStatement
{
    explicit MeantStatement(const QString &harmlessText);

    const QString text;
    const QVector<SqlToken> tokens;
    std::array<int, statementTextCount> textPlaces {}; ///< among the tokens
};

/// Compares the statement with one that is meant to be the same but for its texts. `texts` is what
/// is meant to be stored.
StatementEffect effectOfTexts(const QString &statement, const MeantStatement &meant,
                              const StatementTexts &texts, const SqlDialect &dialect);
