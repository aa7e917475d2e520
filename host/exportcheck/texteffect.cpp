// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What texts do to a statement that they stand in.
#include "host/exportcheck/texteffect.h"

#include "host/base/oneline.h"
#include "host/exportcheck/statementsyntax.h"

#include <algorithm>

namespace {

const int insertedValues = 17; // of the statement that adds a person
const int shownLength = 80;

QStringRef sourceOf(const QString &statement, const SqlToken &token)
{
    return statement.midRef(token.begin, token.end - token.begin);
}

/// The first token that is not as it was meant, be it behind the last one; -1 if none is. The texts
/// themselves may be others.
int firstDifference(const QString &statement, const QVector<SqlToken> &tokens,
                    const MeantStatement &meant)
{
    const auto &places = meant.textPlaces;
    const int common = std::min(tokens.size(), meant.tokens.size());
    for (int i = 0; i < common; ++i) {
        const SqlToken &token = meant.tokens.at(i);
        if (tokens.at(i).kind != token.kind)
            return i;
        const bool isText = token.kind == SqlToken::Text
            && std::find(places.begin(), places.end(), i) != places.end();
        if (!isText && sourceOf(statement, tokens.at(i)) != sourceOf(meant.text, token))
            return i;
    }
    return tokens.size() == meant.tokens.size() ? -1 : common;
}

QString tooLong(const QString &text)
{
    return text.size() <= shownLength ? text : text.left(shownLength - 1) + QChar(0x2026);
}

/// The statement from a token on, without comments; its end, if it ends before that.
QString runningText(const QString &statement, const QVector<SqlToken> &tokens, int first)
{
    if (first < tokens.size() && tokens.at(first).kind == SqlToken::Semicolon)
        ++first;
    if (first >= tokens.size()) {
        const QString all = tokens.isEmpty() ? QString()
                                             : oneLine(statement.left(tokens.constLast().end));
        return all.size() <= shownLength ? all : QChar(0x2026) + all.right(shownLength - 1);
    }
    QString text;
    for (int i = first; i < tokens.size() && text.size() <= shownLength; ++i) {
        if (i > first && tokens.at(i).begin > tokens.at(i - 1).end)
            text += QLatin1Char(' ');
        text += sourceOf(statement, tokens.at(i));
    }
    return tooLong(oneLine(text));
}

StatementEffect effectIn(const QString &statement, const SqlTokens &read,
                         const MeantStatement &meant, const StatementTexts &texts)
{
    const QVector<SqlToken> &tokens = read.tokens;
    const int difference = firstDifference(statement, tokens, meant);
    StatementEffect result;
    if (difference < 0) {
        for (size_t i = 0; i < texts.size(); ++i)
            result.stored.at(i) = tokens.at(meant.textPlaces.at(i)).value;
        if (result.stored != texts)
            result.effect = TextEffect::OtherText;
    } else if (isSurelyRefused(statement, read, insertedValues)) {
        result.effect = TextEffect::Fails;
    } else {
        result.effect = TextEffect::RunsElse;
        result.runs = runningText(statement, tokens, difference);
    }
    return result;
}

} // namespace

MeantStatement::MeantStatement(const QString &harmlessText) :
    text(harmlessText),
    tokens(readSql(harmlessText).tokens)
{
    // Keys stand in front of them.
    int left = statementTextCount;
    for (int i = tokens.size() - 1; i >= 0 && left > 0; --i) {
        if (tokens.at(i).kind == SqlToken::Text)
            textPlaces.at(static_cast<size_t>(--left)) = i;
    }
}

StatementEffect effectOfTexts(const QString &statement, const MeantStatement &meant,
                              const StatementTexts &texts, const SqlDialect &dialect)
{
    const SqlTokens read = readSql(statement, dialect);
    const StatementEffect result = effectIn(statement, read, meant, texts);
    if (!read.asksForVersion)
        return result;
    // Nobody knows the server's version: the worse of the two.
    SqlDialect other = dialect;
    other.runsVersioned = !dialect.runsVersioned;
    const StatementEffect otherResult = effectIn(statement, readSql(statement, other), meant,
                                                 texts);
    return otherResult.effect > result.effect ? otherResult : result;
}
