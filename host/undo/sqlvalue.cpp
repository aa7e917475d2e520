// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Values as a statement of SQL spells them, whatever the server's modes are.
#include "host/undo/sqlvalue.h"

#include "host/copy/sqlnames.h"

#include <algorithm>

namespace {

bool isPlain(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar character) {
        return character.isPrint() && character != QLatin1Char('\\');
    });
}

QString textLiteral(const QString &text)
{
    if (!isPlain(text))
        return QStringLiteral("_utf8mb4 x'%1'")
            .arg(QString::fromLatin1(text.toUtf8().toHex().toUpper()));
    return quotedText(text);
}

} // namespace

QString sqlValue(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QStringLiteral("NULL");
    case QMetaType::Double:
        // With an exponent, for without one it would be a decimal number.
        return QString::number(value.toDouble(), 'e', 16);
    case QMetaType::QByteArray:
        return QStringLiteral("x'%1'").arg(
            QString::fromLatin1(value.toByteArray().toHex().toUpper()));
    case QMetaType::QString:
        return textLiteral(value.toString());
    default:
        return value.toString();
    }
}

QString holdsValue(const QString &column, const QVariant &value)
{
    const QString name = quotedName(column);
    switch (value.userType()) {
    case QMetaType::Double:
        return QStringLiteral("CAST(CAST(%1 AS CHAR) AS DOUBLE) <=> %2").arg(name, sqlValue(value));
    case QMetaType::QByteArray:
        return QStringLiteral("HEX(%1) <=> '%2'")
            .arg(name, QString::fromLatin1(value.toByteArray().toHex().toUpper()));
    case QMetaType::QString:
        return QStringLiteral("BINARY CONVERT(%1 USING utf8mb4) <=> ").arg(name) + sqlValue(value);
    default:
        return name + QStringLiteral(" <=> ") + sqlValue(value);
    }
}
