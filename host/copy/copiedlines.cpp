// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines in which rows travel from one server to another.
#include "host/copy/copiedlines.h"

#include "host/copy/sqlnames.h"

#include <algorithm>

namespace {

bool isOneOf(const QString &kind, const char *kinds)
{
    return QString::fromLatin1(kinds).split(QLatin1Char(' ')).contains(kind);
}

/// How the value of a column travels.
enum class Passage {
    Plain, ///< as the server writes it
    Number, ///< what is stored, as a number: of an enumeration, what is none of its texts is 0
    Moment, ///< seconds since the epoch: a local time may come twice
    Bytes, ///< in hexadecimal digits: they mean the same to a column of the same character set
    Text, ///< likewise, of what the server writes
};

Passage passageOf(const CopiedColumn &column)
{
    if (isWholeNumber(column)
        || isOneOf(column.kind, "decimal year double float date datetime time"))
        return Passage::Plain;
    if (isOneOf(column.kind, "bit enum set"))
        return Passage::Number;
    if (column.kind == QLatin1String("timestamp"))
        return Passage::Moment;
    if (isOneOf(column.kind,
                "char varchar tinytext text mediumtext longtext json binary varbinary "
                "tinyblob blob mediumblob longblob geometry point linestring polygon multipoint "
                "multilinestring multipolygon geometrycollection"))
        return Passage::Bytes;
    return Passage::Text;
}

/// An SQL expression that gives the value as it travels.
QString sent(const CopiedColumn &column)
{
    const QString name = quotedName(column.name);
    switch (passageOf(column)) {
    case Passage::Plain:
        if (column.kind == QLatin1String("float")) // would be rounded to six digits
            return QStringLiteral("%1 * 1e0").arg(name);
        return QStringLiteral("CONCAT(%1)").arg(name);
    case Passage::Number:
        return QStringLiteral("CAST(%1 AS UNSIGNED)").arg(name);
    case Passage::Moment:
        return QStringLiteral("IF(%1 = 0, '0', UNIX_TIMESTAMP(%1))").arg(name);
    case Passage::Bytes:
        return QStringLiteral("HEX(%1)").arg(name);
    case Passage::Text:
        break;
    }
    return QStringLiteral("HEX(CONCAT(%1))").arg(name);
}

/// An SQL expression that gives the value back.
QString received(const CopiedColumn &column, const QString &field)
{
    switch (passageOf(column)) {
    case Passage::Plain:
        return field;
    case Passage::Number:
        return QStringLiteral("CAST(%1 AS UNSIGNED)").arg(field);
    case Passage::Moment:
        return QStringLiteral("IF(%1 = '0', 0, FROM_UNIXTIME(CAST(%1 AS DECIMAL(30, 6))))")
            .arg(field);
    case Passage::Bytes:
        return QStringLiteral("UNHEX(%1)").arg(field);
    case Passage::Text:
        break;
    }
    return QStringLiteral("CONVERT(UNHEX(%1) USING utf8mb4)").arg(field);
}

} // namespace

bool isWholeNumber(const CopiedColumn &column)
{
    return isOneOf(column.kind, "tinyint smallint mediumint int bigint");
}

QString lineExpression(const CopiedTable &table)
{
    QStringList fields;
    for (const CopiedColumn &column : table.columns)
        fields.append(QStringLiteral("IF(%1 IS NULL, '\\\\N', %2)")
                          .arg(quotedName(column.name), sent(column)));
    return QStringLiteral("CONCAT(%1, '\\n')").arg(fields.join(QStringLiteral(", '\\t', ")));
}

/// Fields go straight into their columns, which takes half the time, or all through variables: the
/// server takes a 0 beside those for a number to be generated, whatever its mode.
QString loadingOf(const CopiedTable &table)
{
    const bool isPlain = std::all_of(
        table.columns.begin(), table.columns.end(),
        [](const CopiedColumn &column) { return passageOf(column) == Passage::Plain; });
    QStringList fields;
    QStringList values;
    for (const CopiedColumn &column : table.columns) {
        const QString name = quotedName(column.name);
        const QString field = QStringLiteral("@talvenhr%1").arg(fields.size());
        fields.append(isPlain ? name : field);
        if (!isPlain)
            values.append(QStringLiteral("%1 = %2").arg(name, received(column, field)));
    }
    const QString loading = QStringLiteral("INTO TABLE %1 CHARACTER SET binary (%2)")
                                .arg(quotedName(table.name), fields.join(QStringLiteral(", ")));
    return isPlain ? loading
                   : loading + QStringLiteral(" SET ") + values.join(QStringLiteral(", "));
}
