// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// SQL text as the server's lexer reads it.
#include "host/exportcheck/sqllexer.h"

#include "host/exportcheck/sqlcharacters.h"

namespace {

const int versionDigits = 5; // at least, and one more

class Reader
{
public:
    Reader(const QString &sql, const SqlDialect &sqlDialect) :
        text(sql),
        dialect(sqlDialect)
    {
        result.tokens.reserve(128); // a statement of the plugin
    }

    SqlTokens read();

private:
    /// 0 behind the end.
    ushort peek(int ahead = 0) const
    {
        return at + ahead < text.size() ? text.at(at + ahead).unicode() : 0;
    }
    bool atEnd() const { return at >= text.size(); }

    void readToken();
    void readComment();
    void readLineComment();
    bool skipComment(int nesting);
    void readText();
    bool readLiteral(QString *value);
    void readNumberLiteral(bool (*isRight)(ushort), int multiple);
    void readQuotedName();
    void readNumber();
    bool readPrefixedNumber();
    bool readExponent();
    void skipDigits();
    void readName();
    bool continuesName() const;
    void add(SqlToken::Kind kind, const QString &value = QString());
    void fault();

    const QString &text;
    const SqlDialect dialect;
    SqlTokens result;
    int at = 0;
    int start = 0; // of the token
    bool inRunComment = false;
};

SqlTokens Reader::read()
{
    while (!atEnd()) {
        start = at;
        readToken();
    }
    if (inRunComment) {
        start = at;
        fault();
    }
    return result;
}

void Reader::readToken()
{
    const ushort unit = peek();
    const bool quoteFollows = peek(1) == '\'';
    if (isBlank(unit))
        ++at;
    else if (unit == '#' || (unit == '-' && peek(1) == '-' && isBlankOrControl(peek(2))))
        readLineComment();
    else if (unit == '/' && peek(1) == '*')
        readComment();
    else if (inRunComment && unit == '*' && peek(1) == '/') {
        at += 2;
        inRunComment = false;
    } else if (unit == '\'' || unit == '"')
        readText();
    else if (unit == '`')
        readQuotedName();
    else if (quoteFollows && (unit == 'n' || unit == 'N')) {
        ++at;
        QString value;
        if (readLiteral(&value))
            add(SqlToken::OtherLiteral, value);
    } else if (quoteFollows && (unit == 'x' || unit == 'X'))
        readNumberLiteral(isHexDigit, 2);
    else if (quoteFollows && (unit == 'b' || unit == 'B'))
        readNumberLiteral(isBinaryDigit, 1);
    else if (continuesName()) {
        ++at;
        add(SqlToken::Sign);
        start = at;
        readName();
    } else if (isDigit(unit) || (unit == '.' && isDigit(peek(1))))
        readNumber();
    else if (isNameUnit(unit))
        readName();
    else if (unit == '\\' && peek(1) == 'N') { // NULL
        at += 2;
        add(SqlToken::Word);
    } else {
        ++at;
        if (unit == ';')
            add(SqlToken::Semicolon);
        else
            add(isSign(unit) ? SqlToken::Sign : SqlToken::Fault);
    }
}

/// Stops at a NUL too, as the server does.
void Reader::readLineComment()
{
    while (!atEnd() && peek() != '\n' && peek() != 0)
        ++at;
}

void Reader::readComment()
{
    at += 2;
    const int mark = peek() == '!' ? 1 : (peek() == 'M' && peek(1) == '!' ? 2 : 0);
    if (mark == 0) {
        if (!skipComment(0))
            fault();
        return;
    }

    at += mark;
    int digits = 0;
    while (digits <= versionDigits && isDigit(peek(digits)))
        ++digits;
    if (digits < versionDigits) {
        inRunComment = true;
        return;
    }
    result.asksForVersion = true;
    if (dialect.runsVersioned) {
        at += digits;
        inRunComment = true;
    } else if (!skipComment(1)) {
        fault();
    }
}

/// Goes behind the end of a comment; only within one that is not run, others may be nested. False
/// when it has no end.
bool Reader::skipComment(int nesting)
{
    while (!atEnd()) {
        if (nesting > 0 && peek() == '/' && peek(1) == '*') {
            at += 2;
            if (!skipComment(nesting - 1))
                return false;
        } else if (peek() == '*' && peek(1) == '/') {
            at += 2;
            return true;
        } else {
            ++at;
        }
    }
    return false;
}

void Reader::readText()
{
    QString value;
    if (!readLiteral(&value))
        return;
    if (!result.tokens.isEmpty() && result.tokens.constLast().kind == SqlToken::Text) {
        result.tokens.last().value += value;
        result.tokens.last().end = at;
    } else {
        add(SqlToken::Text, value);
    }
}

/// Reads a literal that begins with its quote. One without an end is a fault that ends the reading.
bool Reader::readLiteral(QString *value)
{
    const QChar quote = text.at(at++);
    while (!atEnd()) {
        const QChar character = text.at(at++);
        if (character == QLatin1Char('\\') && dialect.backslashEscapes) {
            if (atEnd())
                break;
            const QChar escaped = text.at(at++);
            // In patterns these two need their backslash, so that it stays everywhere.
            if (escaped == QLatin1Char('%') || escaped == QLatin1Char('_'))
                value->append(character);
            value->append(unescaped(escaped));
        } else if (character != quote) {
            value->append(character);
        } else if (peek() == quote.unicode()) {
            value->append(quote);
            ++at;
        } else {
            return true;
        }
    }
    fault();
    return false;
}

/// x'…' or b'…'. The server stops at anything else between the quotes.
void Reader::readNumberLiteral(bool (*isRight)(ushort), int multiple)
{
    at += 2;
    const int first = at;
    while (isRight(peek()))
        ++at;
    const bool whole = (at - first) % multiple == 0;
    if (peek() != '\'' || !whole) {
        add(SqlToken::Fault);
        return;
    }
    ++at;
    add(SqlToken::OtherLiteral);
}

void Reader::readQuotedName()
{
    for (++at; !atEnd() && peek() != 0; ++at) {
        if (peek() != '`')
            continue;
        if (peek(1) != '`') {
            ++at;
            add(SqlToken::QuotedName);
            return;
        }
        ++at;
    }
    fault();
}

void Reader::skipDigits()
{
    while (isDigit(peek()))
        ++at;
}

/// What begins with a digit and goes on as a name is a name.
void Reader::readNumber()
{
    if (peek() != '.') {
        if (readPrefixedNumber())
            return;
        skipDigits();
        if (readExponent())
            return;
        if (isNameUnit(peek())) {
            readName();
            return;
        }
    }
    if (peek() == '.') {
        ++at;
        skipDigits();
        if (readExponent())
            return;
    }
    add(SqlToken::Number);
}

/// 0x1F and 0b01; only with small letters.
bool Reader::readPrefixedNumber()
{
    if (peek() != '0' || (peek(1) != 'x' && peek(1) != 'b'))
        return false;
    const auto isRight = peek(1) == 'x' ? isHexDigit : isBinaryDigit;
    int length = 2;
    while (isRight(peek(length)))
        ++length;
    if (length == 2 || isNameUnit(peek(length)))
        return false;
    at += length;
    add(SqlToken::Number);
    return true;
}

bool Reader::readExponent()
{
    if (peek() != 'e' && peek() != 'E')
        return false;
    const int sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
    if (!isDigit(peek(1 + sign)))
        return false;
    at += 1 + sign;
    skipDigits();
    add(SqlToken::Number);
    return true;
}

void Reader::readName()
{
    while (isNameUnit(peek()))
        ++at;
    add(SqlToken::Word);
}

/// At a dot between two names; behind it also digits are a name.
bool Reader::continuesName() const
{
    if (peek() != '.' || !isNameUnit(peek(1)) || result.tokens.isEmpty())
        return false;
    const SqlToken &before = result.tokens.constLast();
    return before.end == at
        && (before.kind == SqlToken::Word || before.kind == SqlToken::QuotedName);
}

void Reader::add(SqlToken::Kind kind, const QString &value)
{
    result.tokens.append({kind, start, at, value});
}

void Reader::fault()
{
    at = text.size();
    add(SqlToken::Fault);
    result.endsCleanly = false;
}

} // namespace

SqlTokens readSql(const QString &text, const SqlDialect &dialect)
{
    return Reader(text, dialect).read();
}
