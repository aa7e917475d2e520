// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the texts of an export line do to the statements of the plugin.
#include "host/exportcheck/statementtrial.h"

#include "host/base/silentmessages.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

struct TextColumn
{
    QString EmployeeRecord::*field;
    int column;
};

/// In the order of StatementTexts.
const std::array<TextColumn, statementTextCount> textColumns {{{&EmployeeRecord::titul, 3},
                                                               {&EmployeeRecord::jmeno, 4},
                                                               {&EmployeeRecord::prijmeni, 5},
                                                               {&EmployeeRecord::titulZa, 6},
                                                               {&EmployeeRecord::telefon, 7},
                                                               {&EmployeeRecord::rsText, 0}}};

StatementTexts textsOf(const EmployeeRecord &person)
{
    StatementTexts texts;
    for (size_t i = 0; i < texts.size(); ++i)
        texts.at(i) = person.*textColumns.at(i).field;
    return texts;
}

/// All that a text needs to be more than letters of a literal.
bool mayHarm(const QString &text)
{
    return text.contains(QLatin1Char('\'')) || text.contains(QLatin1Char('\\'))
        || text.contains(QLatin1Char('%'));
}

EmployeeRecord withPlainTexts(const EmployeeRecord &person)
{
    EmployeeRecord result = person;
    for (const TextColumn &text : textColumns)
        result.*text.field = QStringLiteral("x");
    return result;
}

/// All other texts are robbed of what makes them harmful.
EmployeeRecord withHarmOfOne(const EmployeeRecord &person, size_t kept)
{
    EmployeeRecord result = person;
    for (size_t i = 0; i < textColumns.size(); ++i) {
        QString &text = result.*textColumns.at(i).field;
        if (i != kept)
            text.remove(QLatin1Char('\'')).remove(QLatin1Char('\\')).remove(QLatin1Char('%'));
    }
    return result;
}

} // namespace

bool isSuspicious(const QString &text)
{
    const QChar *const end = text.constData() + text.size();
    for (const QChar *character = text.constData(); character != end; ++character) {
        const ushort unit = character->unicode();
        if (unit == '\'' || unit == '\\')
            return true;
        // Digits as QString::arg() knows them.
        if (unit == '%' && character + 1 != end
            && (character[1] == QLatin1Char('L') || character[1].digitValue() >= 0))
            return true;
    }
    return false;
}

/// The effects of a record's texts in one statement. The statements are the same in all dialects.
class StatementTrial::OneStatement
{
public:
    OneStatement(PluginStatements &pluginStatements, PluginStatements::Kind statementKind,
                 const EmployeeRecord &record) :
        statements(pluginStatements),
        kind(statementKind),
        person(statements.personOf(kind, record)),
        texts(textsOf(person)),
        filled(statements.statement(kind, person)),
        harmless(statements.statement(kind, withPlainTexts(person)))
    {
        for (size_t i = 0; i < texts.size(); ++i) {
            if (mayHarm(texts.at(i)))
                suspects.append(i);
        }
    }

    ColumnEffects effects(const SqlDialect &dialect)
    {
        ColumnEffects result;
        const StatementEffect all = effectOfTexts(filled, harmless, texts, dialect);
        if (all.effect == TextEffect::None)
            return result;
        if (all.effect == TextEffect::OtherText)
            blameChanged(all, &result);
        else
            blameEach(all, dialect, &result);
        return result;
    }

private:
    void blameChanged(const StatementEffect &all, ColumnEffects *result) const
    {
        for (size_t i = 0; i < texts.size(); ++i) {
            if (all.stored.at(i) != texts.at(i))
                result->at(i) = {TextEffect::OtherText, all.stored.at(i)};
        }
    }

    /// Each suspicious text alone. One does no more than all do together; if none does as much, it
    /// takes all of them.
    void blameEach(const StatementEffect &all, const SqlDialect &dialect, ColumnEffects *result)
    {
        TextEffect worst = TextEffect::None;
        for (const size_t suspect : qAsConst(suspects)) {
            const StatementEffect alone = suspects.size() == 1 ? all
                                                               : aloneEffect(suspect, dialect);
            ColumnEffect &column = result->at(suspect);
            column.effect = std::min(alone.effect, all.effect);
            if (column.effect == TextEffect::OtherText)
                column.becomes = alone.stored.at(suspect);
            else if (column.effect == TextEffect::RunsElse)
                column.becomes = alone.runs;
            worst = std::max(worst, column.effect);
        }
        if (suspects.isEmpty())
            result->fill({all.effect, all.runs});
        else if (worst != all.effect) {
            for (const size_t suspect : qAsConst(suspects))
                result->at(suspect) = {all.effect, all.runs};
        }
    }

    StatementEffect aloneEffect(size_t suspect, const SqlDialect &dialect)
    {
        const EmployeeRecord alone = withHarmOfOne(person, suspect);
        QString &statement = aloneStatements.at(suspect);
        if (statement.isNull())
            statement = statements.statement(kind, alone);
        return effectOfTexts(statement, harmless, textsOf(alone), dialect);
    }

    PluginStatements &statements;
    const PluginStatements::Kind kind;
    const EmployeeRecord person;
    const StatementTexts texts;
    const QString filled;
    const MeantStatement harmless;
    QVector<size_t> suspects;
    StatementTexts aloneStatements;
};

StatementTrial::StatementTrial(const QHash<ushort, QString> &texts) :
    statements(texts),
    stateTexts(texts)
{
    for (auto it = texts.constBegin(); it != texts.constEnd(); ++it) {
        if (::isSuspicious(it.value()))
            suspiciousStates.insert(it.key());
    }
}

bool StatementTrial::isSuspicious(const EmployeeRecord &record) const
{
    const bool ofState = !suspiciousStates.isEmpty()
        && suspiciousStates.contains(record.evidencniStav);
    return ofState || ::isSuspicious(record.titul) || ::isSuspicious(record.jmeno)
        || ::isSuspicious(record.prijmeni) || ::isSuspicious(record.titulZa)
        || ::isSuspicious(record.telefon);
}

QVector<TextTrial> StatementTrial::effectsOf(const EmployeeRecord &record, EscapeMode mode)
{
    return isSuspicious(record) ? cachedTrials(record, mode) : QVector<TextTrial>();
}

/// A text like O'Neill breaks its statement right behind the apostrophe, whatever the other texts
/// are, unless the word there is one of SQL's.
bool breaksAtOnce(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^[^'\\\\%]*'(\\p{L}{3,})[^'\\\\%]*$"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    static const QStringList operators {
        QStringLiteral("and"),     QStringLiteral("div"),    QStringLiteral("mod"),
        QStringLiteral("xor"),     QStringLiteral("not"),    QStringLiteral("like"),
        QStringLiteral("regexp"),  QStringLiteral("rlike"),  QStringLiteral("between"),
        QStringLiteral("collate"), QStringLiteral("sounds"), QStringLiteral("member")};
    const QRegularExpressionMatch match = form.match(text);
    return match.hasMatch() && !operators.contains(match.captured(1).toLower());
}

/// Many names of an export with apostrophes are of this form, and come again and again.
QVector<TextTrial> StatementTrial::cachedTrials(const EmployeeRecord &record, EscapeMode mode)
{
    const StatementTexts texts = textsOf(record);
    QVector<size_t> suspects;
    for (size_t i = 0; i < texts.size(); ++i) {
        if (mayHarm(texts.at(i)))
            suspects.append(i);
    }
    const bool ofState = suspiciousStates.contains(record.evidencniStav);
    if (ofState || suspects.size() != 1 || !breaksAtOnce(texts.at(suspects.constFirst())))
        return fullTrial(record, mode);
    const QString key
        = QStringLiteral("%1 %2 ").arg(suspects.constFirst()).arg(static_cast<int>(mode))
        + texts.at(suspects.constFirst());
    const auto known = namesTried.constFind(key);
    if (known != namesTried.constEnd())
        return *known;
    return *namesTried.insert(key, fullTrial(record, mode));
}

QVector<TextTrial> StatementTrial::effectsOf(const EmployeeRecord &record,
                                             PluginStatements::Kind kind, EscapeMode mode)
{
    ModeEffects effects;
    const SilentMessages silence;
    add(kind, record, mode, &effects);
    return trialsOf(effects, mode);
}

QVector<TextTrial> StatementTrial::fullTrial(const EmployeeRecord &record, EscapeMode mode)
{
    ModeEffects effects;
    const SilentMessages silence;
    for (const PluginStatements::Kind kind : PluginStatements::allKinds)
        add(kind, record, mode, &effects);
    return trialsOf(effects, mode);
}

/// Adds what the texts do in one statement, if it is worse than what they do in another one.
void StatementTrial::add(PluginStatements::Kind kind, const EmployeeRecord &record, EscapeMode mode,
                         ModeEffects *effects)
{
    OneStatement one(statements, kind, record);
    const auto addTo = [&one](ColumnEffects *worst, bool backslashEscapes) {
        const ColumnEffects found = one.effects({backslashEscapes, true});
        for (size_t i = 0; i < found.size(); ++i) {
            if (found.at(i).effect > worst->at(i).effect)
                worst->at(i) = found.at(i);
        }
    };
    if (mode != EscapeMode::NoBackslashEscapes)
        addTo(&effects->at(0), true);
    if (mode != EscapeMode::BackslashEscapes)
        addTo(&effects->at(1), false);
}

QVector<TextTrial> StatementTrial::trialsOf(const ModeEffects &effects, EscapeMode mode)
{
    QVector<TextTrial> trials;
    for (size_t i = 0; i < textColumns.size(); ++i) {
        const ColumnEffect &escaping = effects.at(0).at(i);
        const ColumnEffect &plain = effects.at(1).at(i);
        const ColumnEffect &worse = plain.effect > escaping.effect ? plain : escaping;
        if (worse.effect == TextEffect::None)
            continue;
        TextTrial trial {worse.effect, textColumns.at(i).column, worse.becomes, false, false};
        if (mode == EscapeMode::Either) {
            trial.onlyWithBackslashEscapes = plain.effect < escaping.effect;
            trial.onlyWithoutBackslashEscapes = escaping.effect < plain.effect;
        }
        trials.append(trial);
    }
    return trials;
}
