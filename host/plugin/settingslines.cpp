// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines of TalvenHR.ini as they stand there, before anything has been made of them.
#include "host/plugin/settingslines.h"

#include <QStringList>

namespace {

/// Escapes that QSettings knows. What follows another backslash stays, the backslash goes.
bool isEscape(QChar letter)
{
    return QStringLiteral("abfnrtvx0123456789\"'?\\\n").contains(letter);
}

/// Walks through a value as QSettings does.
void look(SettingsLine *line)
{
    bool quoted = false;
    int quotes = 0;
    const QString &value = line->value;
    line->uncommented = value;
    for (int i = 0; i < value.size(); ++i) {
        const QChar letter = value.at(i);
        if (letter == QLatin1Char('\\')) {
            ++i;
            line->hasLostBackslash = line->hasLostBackslash || i >= value.size()
                || !isEscape(value.at(i));
        } else if (letter == QLatin1Char('"')) {
            quoted = !quoted;
            ++quotes;
        } else if (letter == QLatin1Char(';') && !quoted) {
            line->hasComment = true;
            line->uncommented = value.left(i).trimmed();
            break;
        }
    }
    const bool enclosed = quotes == 2 && line->uncommented.startsWith(QLatin1Char('"'))
        && line->uncommented.endsWith(QLatin1Char('"'));
    line->hasQuotesInside = quotes > 0 && !enclosed;
}

} // namespace

bool beginsGroup(const QString &line, QString *prefix)
{
    const QString text = line.trimmed();
    if (!text.startsWith(QLatin1Char('[')) || !text.contains(QLatin1Char(']')))
        return false;
    const QString name = text.mid(1, text.indexOf(QLatin1Char(']')) - 1).trimmed();
    *prefix = name.compare(QLatin1String("General"), Qt::CaseInsensitive) == 0
        ? QString()
        : name + QLatin1Char('/');
    return true;
}

QVector<SettingsLine> settingsLines(const QByteArray &content)
{
    QVector<SettingsLine> lines;
    QString group;
    const QStringList texts = QString::fromUtf8(content).split(QLatin1Char('\n'));
    for (const QString &text : texts) {
        SettingsLine line;
        line.text = text.trimmed();
        if (beginsGroup(line.text, &group))
            continue;
        const int equals = line.text.indexOf(QLatin1Char('='));
        if (line.text.startsWith(QLatin1Char(';')) || equals < 1)
            continue;
        line.key = group + line.text.left(equals).trimmed();
        line.value = line.text.mid(equals + 1).trimmed();
        look(&line);
        lines.append(line);
    }
    return lines;
}

QString settingsLine(const QString &key, const QString &value)
{
    QString escaped = value;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
    const bool needsQuotes = value.contains(QLatin1Char(',')) || value.contains(QLatin1Char(';'))
        || value != value.trimmed();
    return needsQuotes ? QStringLiteral("%1=\"%2\"").arg(key, escaped)
                       : key + QLatin1Char('=') + escaped;
}

QString doubledSettingsLine(const QString &key, const QString &rawValue)
{
    const QString kept = QStringLiteral("\\\"");
    QString escaped;
    for (int i = 0; i < rawValue.size(); ++i) {
        escaped += rawValue.at(i);
        if (rawValue.at(i) != QLatin1Char('\\'))
            continue;
        // One that is doubled already, or stands before a quote, takes what follows with it.
        if (i + 1 < rawValue.size() && kept.contains(rawValue.at(i + 1)))
            escaped += rawValue.at(++i);
        else
            escaped += QLatin1Char('\\');
    }
    return key + QLatin1Char('=') + escaped;
}

QString quotedSettingsLine(const QString &key, const QString &rawValue)
{
    QString escaped;
    for (int i = 0; i < rawValue.size(); ++i) {
        if (rawValue.at(i) == QLatin1Char('\\') && i + 1 < rawValue.size())
            escaped += rawValue.at(i++);
        else if (rawValue.at(i) == QLatin1Char('"'))
            escaped += QLatin1Char('\\');
        escaped += rawValue.at(i);
    }
    return QStringLiteral("%1=\"%2\"").arg(key, escaped);
}
