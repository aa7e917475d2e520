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
    program->databaseCollation = query.value(5).toString();
    return !program->create.isEmpty();
}

void SchemaReader::takeRoutine(const QString &name, const QString &wantedBy)
{
    const QString mark = name.toLower() + QStringLiteral("()");
    if (seen.contains(mark))
        return;
    seen.insert(mark);

    const QList<KnownRoutine> all = knownRoutines.values(name.toLower());
    bool isHidden = all.isEmpty() && !seesAllRoutines();
    for (const KnownRoutine &known : all) {
        CopiedProgram routine;
        if (readProgram(known.kind, known.name, &routine)) {
            schema->routines.append(routine);
            follow(routine.create, Text::tr("Routine '%1'").arg(known.name));
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
    } else if (all.isEmpty()) {
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
    static const QRegularExpression word(QStringLiteral("[\\w$]+"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression oddLetter(QStringLiteral("[^\\w$]"),
                                              QRegularExpression::UseUnicodePropertiesOption);
    QSet<QString> words;
    QRegularExpressionMatchIterator found = word.globalMatch(text);
    while (found.hasNext()) {
        const QString one = found.next().captured();
        words << one << one.toLower();
    }
    // A name that is no word stands in quotes of one kind or the other.
    const auto isNamed = [&](const QString &name) {
        return words.contains(name)
            || (name.contains(oddLetter)
                && (text.contains(name)
                    || text.contains(
                        QString(name).replace(QLatin1Char('`'), QLatin1String("``")))));
    };
    const QStringList tables = knownTables.keys();
    for (const QString &name : tables) {
        if (isNamed(name))
            takeTable(name, whose);
    }
    const QStringList routines = knownRoutines.uniqueKeys();
    for (const QString &name : routines) {
        if (isNamed(name))
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
    const auto options = QRegularExpression::CaseInsensitiveOption
        | QRegularExpression::UseUnicodePropertiesOption;
    // EXTRACT(YEAR FROM x) names no table, nor does a trigger with AFTER UPDATE ON.
    static const QRegularExpression noTable(
        QStringLiteral("\\b(?:EXTRACT|TRIM|SUBSTR(?:ING)?)\\s*\\([^()]*?\\bFROM\\b|"
                       "\\b(?:KEY|AFTER|BEFORE|FOR)\\s+UPDATE\\b"),
        options);
    static const QRegularExpression place(
        QStringLiteral("\\b(?:FROM|JOIN|INTO|UPDATE)\\s+(`(?:[^`]|``)+`|[\\w$]+)"
                       "(?:\\s*\\.\\s*(`(?:[^`]|``)+`|[\\w$]+))?"),
        options);
    const QString statements = QString(text).remove(noTable);
    QRegularExpressionMatchIterator places = place.globalMatch(statements);
    while (places.hasNext()) {
        const QRegularExpressionMatch match = places.next();
        const QString first = unquoted(match.captured(1));
        const QString second = unquoted(match.captured(2));
        if (second.isEmpty() || first == schema->name)
            lookAfter(second.isEmpty() ? first : second, whose);
        else
            leaveElsewhere(first + QLatin1Char('.') + second, whose);
    }
}

void SchemaReader::lookAfter(const QString &table, const QString &whose)
{
    if (seen.contains(table))
        return;
    seen.insert(table);
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT 1 FROM %1 LIMIT 0").arg(quotedName(table)))
        && query.lastError().nativeErrorCode() == QLatin1String("1142"))
        missTable(table, QStringLiteral("SELECT"), whose);
}

void SchemaReader::leaveElsewhere(const QString &table, const QString &whose)
{
    if (seen.contains(table))
        return;
    seen.insert(table);
    schema->leftOut.append(Text::tr("%1 uses '%2' of another database: it is not in the copy, and "
                                    "what needs it fails there.")
                               .arg(whose, table));
}
