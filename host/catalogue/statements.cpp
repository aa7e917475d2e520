// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that a pass of the plugin runs, and no others.
#include "host/catalogue/statements.h"

#include "host/catalogue/statementforms.h"
#include "host/catalogue/textform.h"

#include <algorithm>

namespace {

struct Candidate
{
    PassStatement statement;
    TextForm form;
};

const std::vector<Candidate> &candidates()
{
    static const std::vector<Candidate> all = [] {
        std::vector<Candidate> found;
        for (const StatementForm &row : statementForms()) {
            if (row.form)
                found.push_back({row.statement, TextForm::ofPlaces(row.form)});
        }
        return found;
    }();
    return all;
}

/// Only the statements that take texts of the export in between numbers.
bool holdsTextsAndNumbers(PassStatement statement)
{
    return statement == PassStatement::AddPerson || statement == PassStatement::UpdatePerson;
}

/// The keys of a person stand in front of the first text, and nothing moves them.
int keysOf(PassStatement statement)
{
    return statement == PassStatement::AddPerson ? 2 : 1;
}

std::vector<StatementNeed> parsedNeeds(const char *text)
{
    std::vector<StatementNeed> needs;
    const QStringList groups = QString::fromLatin1(text).split(QStringLiteral(", "));
    for (const QString &group : groups) {
        QStringList rights;
        const QStringList words = group.split(QLatin1Char(' '));
        for (const QString &word : words) {
            if (word == word.toUpper())
                rights.append(word);
            else
                needs.push_back({word, rights});
        }
    }
    return needs;
}

StatementAccess accessOf(const std::vector<StatementNeed> &needs)
{
    const QStringList &rights = needs.front().rights;
    if (rights.contains(QStringLiteral("EXECUTE")))
        return StatementAccess::Calls;
    const bool writes = rights.contains(QStringLiteral("INSERT"))
        || rights.contains(QStringLiteral("UPDATE"));
    return writes ? StatementAccess::Writes : StatementAccess::Reads;
}

const StatementFacts *findFacts(const std::vector<StatementFacts> &all, PassStatement statement)
{
    const auto found = std::find_if(all.begin(), all.end(), [&](const StatementFacts &facts) {
        return facts.statement == statement;
    });
    return found == all.end() ? nullptr : &*found;
}

/// The prepared statement by its values: a variable of another name is a PaM list, for only its
/// block says what it is called.
ClassifiedStatement boundVariable(const QVariantList &bound)
{
    ClassifiedStatement classified {PassStatement::WriteVariable, {}, true};
    for (const QVariant &value : bound)
        classified.values.append(value.toString());
    if (bound.size() == 2) {
        const bool force = classified.values.first() == QLatin1String("OQS.THRWorker.forceSync");
        classified.statement = force ? PassStatement::ClearForceFlag : PassStatement::WritePamList;
    }
    return classified;
}

} // namespace

ClassifiedStatement classifyStatement(const QString &text, const QVariantList &bound)
{
    for (const Candidate &candidate : candidates()) {
        if (const auto values = candidate.form.match(text)) {
            return candidate.statement == PassStatement::WriteVariable
                ? boundVariable(bound)
                : ClassifiedStatement {candidate.statement, *values, true};
        }
    }
    for (const Candidate &candidate : candidates()) {
        if (!holdsTextsAndNumbers(candidate.statement))
            continue;
        if (const auto values = candidate.form.match(text, keysOf(candidate.statement)))
            return {candidate.statement, *values, false};
    }
    return {};
}

NamedPeople peopleIn(const ClassifiedStatement &statement)
{
    return peopleIn(factsOf(statement.statement).named, statement.values);
}

const StatementFacts &factsOf(PassStatement statement)
{
    static const StatementFacts unknown;
    const StatementFacts *const facts = findFacts(allStatements(), statement);
    return facts ? *facts : unknown;
}

const std::vector<StatementFacts> &allStatements()
{
    static const std::vector<StatementFacts> all = [] {
        std::vector<StatementFacts> found;
        for (const StatementForm &row : statementForms()) {
            if (findFacts(found, row.statement))
                continue;
            const std::vector<StatementNeed> needs = parsedNeeds(row.needs);
            found.push_back({row.statement, accessOf(needs), needs, row.named});
        }
        return found;
    }();
    return all;
}
