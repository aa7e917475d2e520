// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What must happen in a pass some of whose calls fail, as the table of the pass tells.
#include "support/faults/expectedpass.h"

#include "support/localseconds.h"

#include <QRegularExpression>

#include <functional>

namespace {

/// The text with each match replaced by what the function makes of its captures.
QString replaced(const QString &text, const QString &pattern,
                 const std::function<QString(const QRegularExpressionMatch &)> &value)
{
    QString result;
    int end = 0;
    auto matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        result += text.midRef(end, match.capturedStart() - end) + value(match);
        end = match.capturedEnd();
    }
    return result + text.midRef(end);
}

QStringList pairs(const QString &id, const QStringList &uids)
{
    QStringList texts;
    for (const QString &uid : uids) {
        if (uid != QLatin1String("0"))
            texts.append(QStringLiteral("(%1, %2)").arg(id, uid));
    }
    return texts;
}

const PassRows &sharedTable()
{
    static const PassRows table = passTable();
    return table;
}

} // namespace

Fault only(const QStringList &ids)
{
    Fault fault;
    fault.ids = ids;
    return fault;
}

ExpectedPass::ExpectedPass(int level, const Fault &struck) :
    ExpectedPass(level, struck, sharedTable())
{ }

ExpectedPass::ExpectedPass(int level, const Fault &struck, const PassRows &table) :
    logLevel(level),
    fault(struck)
{
    for (int i = 0; i < table.size(); ++i) {
        if (applies(table.at(i))) {
            reached.insert(i);
            take(table.at(i));
        }
        known.insert(table.at(i).id);
    }
}

bool ExpectedPass::holds(const QString &id) const
{
    return facts.contains(id);
}

bool ExpectedPass::holdsAll(const QString &when) const
{
    const QStringList terms = when.split(QLatin1Char(' '), QString::SkipEmptyParts);
    for (const QString &term : terms) {
        bool one = false;
        const QStringList parts = term.split(QLatin1Char('|'));
        for (const QString &part : parts) {
            const bool negated = part.startsWith(QLatin1Char('!'));
            one = one || facts.contains(part.mid(negated ? 1 : 0)) != negated;
        }
        if (!one)
            return false;
    }
    return true;
}

bool ExpectedPass::applies(const PassRow &row) const
{
    const QStringList ids = row.when.split(QRegularExpression(QStringLiteral("[ |!]")),
                                           QString::SkipEmptyParts);
    for (const QString &id : ids) {
        // The first of several rows of one id may ask for itself.
        if (!known.contains(id) && id != row.id)
            qFatal("no row before this one is called '%s'", qPrintable(id));
    }
    return holdsAll(row.when);
}

void ExpectedPass::take(const PassRow &row)
{
    switch (row.kind) {
    case PassRow::Call:
        called.append(row.id);
        happening.append(QStringLiteral("sql ") + filled(row.text));
        if (!fault.strikes(called.size(), row.id)) {
            facts.insert(row.id);
            break;
        }
        for (const QString &owed : row.owed)
            expectMessage(owed);
        break;
    case PassRow::Message:
        expectMessage(row.text);
        break;
    case PassRow::Fact:
        facts.insert(row.id);
        break;
    case PassRow::Queue:
        queues[row.text].append(uidOf(row.person));
        if (queues[row.text].last() != QLatin1String("0"))
            facts.insert(row.id);
        break;
    case PassRow::Waiting:
        waitingPersons.append(row.person);
        break;
    }
}

void ExpectedPass::expectMessage(const QString &text)
{
    const QRegularExpressionMatch gated = QRegularExpression(QStringLiteral("^from (\\d): "))
                                              .match(text);
    if (!gated.hasMatch() || logLevel >= gated.captured(1).toInt())
        happening.append(filled(text.mid(gated.capturedLength())));
}

QString ExpectedPass::uidOf(const QString &person) const
{
    if (!holds(person + QStringLiteral(".uid")))
        return QStringLiteral("0");
    return QString::number(101 + person.at(0).unicode() - 'A');
}

QString ExpectedPass::filled(QString text) const
{
    if (!text.contains(QLatin1Char('{')))
        return text;
    text.replace(QLatin1String("{today}"), seconds(today()));
    text.replace(QLatin1String("{first of previous month}"), seconds(firstOfPreviousMonth()));
    text.replace(QLatin1String("{1 Mar 2021}"), seconds(QDate(2021, 3, 1)));
    text.replace(QLatin1String("{waiting}"), QString::number(waitingPersons.size()));
    text = replaced(text, QStringLiteral("\\{bid of (\\d)\\}"), [&](const auto &match) {
        return holds(QStringLiteral("branches")) ? match.captured(1) : QStringLiteral("NULL");
    });
    text = replaced(text, QStringLiteral("\\{uid (\\w)\\}"),
                    [&](const auto &match) { return uidOf(match.captured(1)); });
    text = replaced(text, QStringLiteral("\\{queue of (\\d)\\}"), [&](const auto &match) {
        return queues.value(match.captured(1)).join(QLatin1Char(','));
    });
    text = replaced(text, QStringLiteral("\\{list of (\\d)\\}"), [&](const auto &match) {
        return queues.value(match.captured(1)).join(QStringLiteral(", "));
    });
    return replaced(text, QStringLiteral("\\{pairs of (\\d+) in (\\d)\\}"), [&](const auto &match) {
        return pairs(match.captured(1), queues.value(match.captured(2))).join(QLatin1Char(','));
    });
}
