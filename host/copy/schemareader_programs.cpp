// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Routines, and what programs name.
#include "host/copy/schemareader.h"
#include "host/copy/sqlnames.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlRecord>
#include <QVariant>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCopy)
};

QString unquoted(const QString &name)
{
    return name.startsWith(QLatin1Char('`'))
        ? name.mid(1, name.size() - 2).replace(QLatin1String("``"), QLatin1String("`"))
        : name;
}

} // namespace

/// False if the server does not show the body.
bool SchemaReader::readProgram(const QString &what, const QString &name,
                               CopiedProgram *program) const
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SHOW CREATE %1 %2").arg(what, quotedName(name)))
        || !query.next())
        return false;
    program->name = name;
    program->sqlMode = query.value(1).toString();
    program->create = query.value(2).toString();
    program->characterSet = query.value(3).toString();
    program->collation = query.value(4).toString();
    return !program->create.isEmpty();
}

void SchemaReader::takeRoutine(const QString &name, const QString &wantedBy)
{
    const QString mark = name.toLower() + QStringLiteral("()");
    if (seen.contains(mark))
        return;
    seen.insert(mark);

    const QStringList kinds = knownRoutines.values(name.toLower());
    bool isHidden = kinds.isEmpty() && !seesAllRoutines();
    for (const QString &kind : kinds) {
        CopiedProgram routine;
        if (readProgram(kind, name, &routine)) {
            schema->routines.append(routine);
            follow(routine.create, Text::tr("Routine '%1'").arg(name));
        } else {
            isHidden = true;
        }
    }
    if (isHidden) {
        bodiesAreMissing = true;
        if (wishes.withoutRoutines) {
            const QString sentence = wantedBy.isEmpty()
                ? Text::tr("The routine '%1' cannot be read and is not in the copy: statements of "
                           "a pass that call it fail there.")
                      .arg(name)
                : Text::tr("%1 uses the routine '%2', which cannot be read: it is not in the copy, "
                           "and what needs it fails there.")
                      .arg(wantedBy, name);
            schema->leftOut.append(sentence);
        }
    } else if (kinds.isEmpty()) {
        schema->warnings.append(
            Text::tr("The database has no routine '%1', which a pass calls.").arg(name));
    }
}

bool SchemaReader::seesAllRoutines() const
{
    QSqlQuery query(database);
    return query.exec(QStringLiteral("SELECT 1 FROM mysql.proc LIMIT 0"));
}

/// Takes along whatever has a name that stands in the text. A word too many does no harm.
void SchemaReader::follow(const QString &text, const QString &whose)
{
    static const QRegularExpression word(QStringLiteral("`(?:[^`]|``)+`|[\\w$]+"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    QRegularExpressionMatchIterator words = word.globalMatch(text);
    while (words.hasNext()) {
        const QString name = unquoted(words.next().captured());
        if (knownTables.contains(name))
            takeTable(name, whose);
        if (knownRoutines.contains(name.toLower()))
            takeRoutine(name, whose);
    }
    lookAfterUnseen(text, whose);
}

void SchemaReader::followReferences(const QString &create, const QString &table)
{
    static const QRegularExpression reference(QStringLiteral(" REFERENCES (`(?:[^`]|``)+`) \\("));
    QRegularExpressionMatchIterator references = reference.globalMatch(create);
    while (references.hasNext())
        takeTable(unquoted(references.next().captured(1)), Text::tr("Table '%1'").arg(table));
}

/// Tables that stand where only a table can stand and are on no list: the login may not know of
/// them, or they lie in another database.
void SchemaReader::lookAfterUnseen(const QString &text, const QString &whose)
{
    static const QRegularExpression place(
        QStringLiteral("(?:\\bFROM|\\bJOIN|\\bINTO|(?<!KEY)\\s+UPDATE)\\s+"
                       "(`(?:[^`]|``)+`|[\\w$]+)(?:\\s*\\.\\s*(`(?:[^`]|``)+`|[\\w$]+))?"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    QRegularExpressionMatchIterator places = place.globalMatch(text);
    while (places.hasNext()) {
        const QRegularExpressionMatch match = places.next();
        const QString first = unquoted(match.captured(1));
        const QString second = unquoted(match.captured(2));
        const bool isElsewhere = !second.isEmpty() && first != schema->name
            && first.compare(QLatin1String("NEW"), Qt::CaseInsensitive) != 0
            && first.compare(QLatin1String("OLD"), Qt::CaseInsensitive) != 0;
        const QString name = isElsewhere ? first + QLatin1Char('.') + second
            : second.isEmpty()           ? first
                                         : second;
        if (seen.contains(name))
            continue;
        if (isElsewhere) {
            seen.insert(name);
            schema->leftOut.append(Text::tr("%1 uses '%2' of another database: it is not in the "
                                            "copy, and what needs it fails there.")
                                       .arg(whose, name));
            continue;
        }
        QSqlQuery query(database);
        if (!query.exec(QStringLiteral("SELECT 1 FROM %1 LIMIT 0").arg(quotedName(name)))
            && query.lastError().nativeErrorCode() == QLatin1String("1142")) {
            seen.insert(name);
            missTable(name, QStringLiteral("SELECT"), whose);
        }
    }
}
