// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes as values for a page of a browser.
#include "host/changes/changeshtml.h"

#include "host/changes/changestext.h"
#include "host/database/changetext.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ChangesHtml)
};

QString key(const char *name)
{
    return QLatin1String(name);
}

QVariantHash numberValues(const ChangedPerson &person)
{
    return {{key("number"), personNumber(person)},
            {key("kinds"), kindNames(person.kinds).join(QStringLiteral(", "))},
            {key("marked"), !person.notDone.isEmpty() || !person.messages.isEmpty()}};
}

QStringList rowTexts(const QVector<Change> &rows, const IdNames &names)
{
    QStringList lines;
    const QVector<PersonChanges> texts = changeTexts(rows, names);
    for (const PersonChanges &text : texts)
        lines += text.lines;
    return lines;
}

QVariantHash personValues(const ChangedPerson &person, const IdNames &names)
{
    QStringList rows = rowTexts(person.rows, names);
    if (!person.otherwise.isEmpty())
        rows.append(Text::tr("if the server does otherwise, then also:"));
    rows += rowTexts(person.otherwise, names);
    QVariantHash values = numberValues(person);
    values.insert(key("name"), person.person.name);
    values.insert(key("words"), QVariant(personWords(person, names)).toList());
    values.insert(key("rows"), rows.join(QLatin1Char('\n')));
    return values;
}

} // namespace

QVariantList peopleHtmlValues(const Changes &changes)
{
    QVariantList people;
    const QVector<int> places = worstFirst(changes);
    for (const int place : places) {
        if (isWorthTelling(changes.people.at(place)))
            people.append(personValues(changes.people.at(place), changes.names));
    }
    return people;
}

QVariantList peopleNumbersHtmlValues(const Changes &changes)
{
    QVariantList people;
    const QVector<int> places = worstFirst(changes);
    for (const int place : places) {
        if (isWorthTelling(changes.people.at(place)))
            people.append(numberValues(changes.people.at(place)));
    }
    return people;
}
