// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is known of a person, without their texts.
#include "host/explain/storyparts.h"

#include "host/catalogue/messages.h"
#include "host/exportcheck/cellform.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

QString ellipsis()
{
    return QStringLiteral("…");
}

bool isPersonal(const QString &column)
{
    static const QStringList columns {QStringLiteral("title"),   QStringLiteral("name"),
                                      QStringLiteral("surname"), QStringLiteral("title2"),
                                      QStringLiteral("phone"),   QStringLiteral("rsText")};
    return columns.contains(column);
}

/// Also of a table that has more columns than a pass knows: any text may be personal. The names of
/// variables, and what terminals are told, are none.
void hideRow(const TouchedTable &table, const QStringList &columns, TableRow *row)
{
    const bool isOfPeople = table.isPeople();
    for (int i = 0; i < row->size(); ++i) {
        const bool isText = row->at(i).userType() == QMetaType::QString
            || row->at(i).userType() == QMetaType::QByteArray;
        if (isOfPeople && isText && columns.value(i) != QLatin1String("pamId"))
            (*row)[i] = ellipsis();
    }
}

/// All from the first apostrophe to the last one: a text may hold apostrophes of its own.
QString withoutTexts(const QString &statement)
{
    const QChar apostrophe = QLatin1Char('\'');
    const int first = statement.indexOf(apostrophe);
    const int last = statement.lastIndexOf(apostrophe);
    if (first < 0 || first == last)
        return first < 0 ? statement : statement.left(first + 1) + ellipsis();
    return statement.left(first + 1) + ellipsis() + statement.mid(last);
}

/// Of a line with too many or too few cells nobody knows which of them are texts.
void hideLine(PersonLine *line)
{
    for (int i = 0; i < line->cells.size(); ++i) {
        if (isTextColumn(i) || line->fate == LineFate::WrongCount)
            line->cells[i] = ellipsis();
    }
    EmployeeRecord *const record = &line->record;
    record->titul = record->titulZa = record->telefon = record->rsText = QString();
    record->prijmeni = QString();
    record->jmeno = ellipsis();
}

void hideChanged(ChangedPerson *changed, PersonalTexts texts)
{
    if (!changed->person.name.isEmpty())
        changed->person.name = ellipsis();
    for (ChangedField &field : changed->fields) {
        if (isPersonal(field.name) || field.before.userType() == QMetaType::QString
            || field.after.userType() == QMetaType::QString) {
            field.before = ellipsis();
            field.after = ellipsis();
        }
    }
    for (Change &change : changed->rows) {
        if (!change.person.name.isEmpty())
            change.person.name = ellipsis();
        hideRow(*change.table, change.columns, &change.before);
        hideRow(*change.table, change.columns, &change.after);
    }
    for (PassMessage &message : changed->messages) {
        const QtMsgType type = message.isError ? QtCriticalMsg : QtWarningMsg;
        message.text = messageText(findMessage(type, message.text), message.text, texts);
    }
    for (NotDone &notDone : changed->notDone) {
        notDone.statement = withoutTexts(notDone.statement);
        notDone.text = notDone.text.isEmpty() ? notDone.text : ellipsis();
        notDone.error = notDone.error.isEmpty() ? notDone.error : ellipsis();
    }
}

} // namespace

QString statementText(const TraceStep &step, PersonalTexts texts)
{
    const bool isHidden = texts == PersonalTexts::Hidden;
    QStringList values;
    for (const QVariant &value : step.values) {
        const bool isText = value.userType() == QMetaType::QString;
        values.append(value.isNull()           ? QStringLiteral("NULL")
                          : isHidden && isText ? ellipsis()
                                               : value.toString());
    }
    const QString text = isHidden ? withoutTexts(step.text) : step.text;
    return values.isEmpty() ? text
                            : Text::tr("%1 with %2").arg(text, values.join(QStringLiteral(", ")));
}

/// The trace stays whole, for it is read: what is shown of it is hidden there.
void hideNames(ExplainFacts *facts)
{
    facts->texts = PersonalTexts::Hidden;
    if (!facts->person.name.isEmpty())
        facts->person.name = ellipsis();
    for (PersonLine &line : facts->lines)
        hideLine(&line);
    for (TableContent &content : facts->before.tables) {
        for (TableRow &row : content.rows)
            hideRow(*content.table, content.columns, &row);
    }
    for (ChangedPerson &person : facts->changes.people)
        hideChanged(&person, facts->texts);
    for (PassMessage &message : facts->changes.messages) {
        const QtMsgType type = message.isError ? QtCriticalMsg : QtWarningMsg;
        message.text = messageText(findMessage(type, message.text), message.text, facts->texts);
    }
}
