// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// SQL text as the server's lexer reads it.
#pragma once

#include <QString>
#include <QVector>

/// A token with its place in the text, in UTF-16 units. Blanks and comments are none.
struct SqlToken
{
    enum Kind {
        Text, ///< '…' or "…"; literals that follow each other are one, as they are for the server
        OtherLiteral, ///< N'…', x'…', b'…'
        Number,
        Word, ///< keyword, or a name without quotes
        QuotedName, ///< `…`
        Sign, ///< one character, also of an operator that has more
        Semicolon,
        Fault, ///< the server refuses the statement here: an open literal, a sign that SQL lacks
    };

    Kind kind;
    int begin;
    int end; ///< behind the last unit
    QString value; ///< of a Text: what it stands for
};

struct SqlTokens
{
    QVector<SqlToken> tokens;
    bool endsCleanly = true; ///< no literal, name or comment is open at the end
    bool asksForVersion = false; ///< has a comment that only servers from some version on run
};

/// How the server reads, where that is not the same everywhere.
struct SqlDialect
{
    bool backslashEscapes = true; ///< sql_mode is without NO_BACKSLASH_ESCAPES
    bool runsVersioned = true; ///< it runs comments that ask for a version
};

/// Reads the text to its end, through semicolons too. Double quotes are those of a literal:
/// sql_mode is without ANSI_QUOTES. An introducer of a character set is a Word.
SqlTokens readSql(const QString &text, const SqlDialect &dialect = SqlDialect());
