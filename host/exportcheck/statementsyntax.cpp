// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the server surely refuses a statement for its form.
#include "host/exportcheck/statementsyntax.h"

#include "host/exportcheck/sqllexer.h"

#include <QSet>
#include <QString>

#include <cstring>

namespace {

/// Words that may come behind a value; what follows them is not looked at closely. More than are
/// needed do no harm.
const QSet<QString> &wordsBehindValue()
{
    static const QSet<QString> words {
        QStringLiteral("AND"),       QStringLiteral("AS"),        QStringLiteral("ASC"),
        QStringLiteral("BETWEEN"),   QStringLiteral("COLLATE"),   QStringLiteral("DESC"),
        QStringLiteral("DIV"),       QStringLiteral("ESCAPE"),    QStringLiteral("EXCEPT"),
        QStringLiteral("FOR"),       QStringLiteral("FROM"),      QStringLiteral("GROUP"),
        QStringLiteral("HAVING"),    QStringLiteral("IN"),        QStringLiteral("INTERSECT"),
        QStringLiteral("INTO"),      QStringLiteral("IS"),        QStringLiteral("LIKE"),
        QStringLiteral("LIMIT"),     QStringLiteral("LOCK"),      QStringLiteral("MEMBER"),
        QStringLiteral("MOD"),       QStringLiteral("NOT"),       QStringLiteral("OFFSET"),
        QStringLiteral("ON"),        QStringLiteral("OR"),        QStringLiteral("ORDER"),
        QStringLiteral("OVER"),      QStringLiteral("PROCEDURE"), QStringLiteral("REGEXP"),
        QStringLiteral("RETURNING"), QStringLiteral("RLIKE"),     QStringLiteral("ROWS"),
        QStringLiteral("SELECT"),    QStringLiteral("SOUNDS"),    QStringLiteral("UNION"),
        QStringLiteral("USING"),     QStringLiteral("WHERE"),     QStringLiteral("WITH"),
        QStringLiteral("XOR")};
    return words;
}

class FirstStatement
{
public:
    FirstStatement(const QString &sql, const QVector<SqlToken> &all, int expectedValues);

    bool isBrokenAnywhere() const;
    bool isBrokenInValues();

private:
    enum Verdict { GoesOn, Broken, Unknown };

    bool isSign(int index, char sign) const;
    bool isSignOf(int index, const char *signs) const;
    bool isWord(int index, QLatin1String word) const;
    int firstValue() const;
    Verdict atColumn();
    Verdict atValue();
    Verdict behindValue();
    Verdict behindBracket();
    bool hasOtherCount();

    const QString &text;
    const QVector<SqlToken> &tokens;
    int count = 0; // of tokens in the statement
    const int valueCount;
    const bool isInsert;
    int at = 0;
    int depth = 0; // of brackets within a value
    int values = 1;
    bool rowIsClosed = false;
    enum { Column, Value, BehindValue } place = Value;
};

FirstStatement::FirstStatement(const QString &sql, const QVector<SqlToken> &all,
                               int expectedValues) :
    text(sql),
    tokens(all),
    valueCount(expectedValues),
    isInsert(sql.startsWith(QLatin1String("INSERT")))
{
    while (count < tokens.size() && tokens.at(count).kind != SqlToken::Semicolon)
        ++count;
}

bool FirstStatement::isSign(int index, char sign) const
{
    return index < count && tokens.at(index).kind == SqlToken::Sign
        && text.at(tokens.at(index).begin) == QLatin1Char(sign);
}

bool FirstStatement::isSignOf(int index, const char *signs) const
{
    if (index >= count || tokens.at(index).kind != SqlToken::Sign)
        return false;
    return std::strchr(signs, text.at(tokens.at(index).begin).unicode());
}

bool FirstStatement::isWord(int index, QLatin1String word) const
{
    if (index >= count || tokens.at(index).kind != SqlToken::Word)
        return false;
    const SqlToken &token = tokens.at(index);
    return text.midRef(token.begin, token.end - token.begin).compare(word, Qt::CaseInsensitive)
        == 0;
}

/// What no grammar has, whatever the words around it mean: a fault of the lexer, brackets that do
/// not match, an operator without its second value.
bool FirstStatement::isBrokenAnywhere() const
{
    int open = 0;
    for (int i = 0; i < count; ++i) {
        if (tokens.at(i).kind == SqlToken::Fault)
            return true;
        open += isSign(i, '(') ? 1 : (isSign(i, ')') ? -1 : 0);
        if (open < 0)
            return true;
        if (isSignOf(i, "=,(+-/%^") && (i + 1 == count || isSignOf(i + 1, ",)%/^&|"))
            && !(isSign(i, '(') && isSign(i + 1, ')')))
            return true;
    }
    return open != 0;
}

/// The token behind "VALUES(" or "SET".
int FirstStatement::firstValue() const
{
    for (int i = 0; i < count; ++i) {
        if (isInsert && isWord(i, QLatin1String("VALUES")))
            return i + 2;
        if (!isInsert && isWord(i, QLatin1String("SET")))
            return i + 1;
    }
    return count;
}

/// Walks along the list of values for as long as it holds but literals, operators and columns to be
/// set. A value and another one with nothing between them are no grammar there.
bool FirstStatement::isBrokenInValues()
{
    place = isInsert ? Value : Column;
    for (at = firstValue(); at < count; ++at) {
        const Verdict verdict = place == Column ? atColumn()
            : place == Value                    ? atValue()
                                                : behindValue();
        if (verdict != GoesOn)
            return verdict == Broken || (isInsert && !rowIsClosed && hasOtherCount());
    }
    return isInsert || place != BehindValue || depth > 0;
}

FirstStatement::Verdict FirstStatement::atColumn()
{
    const SqlToken::Kind kind = tokens.at(at).kind;
    if (kind != SqlToken::Word && kind != SqlToken::QuotedName)
        return Broken;
    if (isSignOf(at + 1, ".:"))
        return Unknown;
    if (!isSign(at + 1, '='))
        return Broken;
    ++at;
    place = Value;
    return GoesOn;
}

FirstStatement::Verdict FirstStatement::atValue()
{
    switch (tokens.at(at).kind) {
    case SqlToken::Text:
    case SqlToken::OtherLiteral:
    case SqlToken::Number:
        place = BehindValue;
        return GoesOn;
    case SqlToken::Word:
        // The two that stand there anyway.
        if (isWord(at, QLatin1String("UNIX_TIMESTAMP")) && isSign(at + 1, '(')
            && isSign(at + 2, ')'))
            at += 2;
        else if (!isWord(at, QLatin1String("NULL")))
            return Unknown;
        place = BehindValue;
        return GoesOn;
    case SqlToken::Sign:
        if (isSign(at, '('))
            ++depth;
        else if (!isSignOf(at, "+-!~"))
            return isSignOf(at, "@{:.") ? Unknown : Broken;
        return GoesOn;
    default:
        return Unknown;
    }
}

FirstStatement::Verdict FirstStatement::behindValue()
{
    const SqlToken &token = tokens.at(at);
    switch (token.kind) {
    case SqlToken::Word: {
        const QString word = text.mid(token.begin, token.end - token.begin).toUpper();
        return wordsBehindValue().contains(word) ? Unknown : Broken;
    }
    case SqlToken::Sign:
        break;
    case SqlToken::Text:
        // N'a' 'b' is one literal.
        return tokens.at(at - 1).kind == SqlToken::OtherLiteral ? Unknown : Broken;
    default:
        return Broken;
    }

    if (isSign(at, ')'))
        return behindBracket();
    if (isSign(at, ',')) {
        values += depth == 0 ? 1 : 0;
        place = isInsert || depth > 0 ? Value : Column;
        return GoesOn;
    }
    if (isSign(at, '('))
        return Broken;
    if (isSignOf(at, "@:.{}~"))
        return Unknown;
    while (isSignOf(at, "<>=!|&") && isSignOf(at + 1, "<>=|&"))
        ++at;
    place = Value;
    return GoesOn;
}

FirstStatement::Verdict FirstStatement::behindBracket()
{
    if (depth > 0) {
        --depth;
        return GoesOn;
    }
    if (!isInsert || values != valueCount)
        return Broken;
    rowIsClosed = true;
    return Unknown;
}

/// Goes on to the end of the inserted values, whatever they are: the server refuses too many and
/// too few before it runs anything.
bool FirstStatement::hasOtherCount()
{
    for (; at < count; ++at) {
        if (isSign(at, ')') && depth == 0)
            return values != valueCount;
        depth += isSign(at, '(') ? 1 : (isSign(at, ')') ? -1 : 0);
        values += depth == 0 && isSign(at, ',') ? 1 : 0;
    }
    return false;
}

} // namespace

bool isSurelyRefused(const QString &text, const SqlTokens &tokens, int valueCount)
{
    FirstStatement statement(text, tokens.tokens, valueCount);
    return statement.isBrokenAnywhere() || statement.isBrokenInValues();
}
