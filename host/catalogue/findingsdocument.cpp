// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The findings as a page for administrators.
#include "host/catalogue/findingsdocument.h"

#include "host/catalogue/findings.h"

#include <QRegularExpression>

namespace {

const char introduction[]
    = "# Findings\n"
      "\n"
      "What `talvenhr check`, `talvenhr doctor` and `talvenhr run` find, by code. A code begins with\n"
      "its severity: **E**, an error, loses or damages people or rows, or lets no pass work; **W**, a\n"
      "warning, is surely not what was meant; **N**, a note, stands in sound exports and on sound\n"
      "servers too. The examples show the texts as the program prints them.\n"
      "\n"
      "This page is written from `host/catalogue`; `cmake --build --preset release --target\n"
      "findings-document` writes it anew.\n";

/// For Markdown, where the text may hold names with underscores, stars and angle brackets.
QString escaped(QString text)
{
    static const QRegularExpression special(QStringLiteral("([\\\\*_<>|`])"));
    return text.replace(special, QStringLiteral("\\\\1"));
}

QString line(const char *label, const QString &text)
{
    return text.isEmpty() ? QString()
                          : QStringLiteral("- %1: %2.\n").arg(QLatin1String(label), escaped(text));
}

QString kindText(const FindingKind &kind)
{
    const QStringList examples = QString::fromUtf8(kind.examples).split(QLatin1Char('\n'));
    const Finding example = finding(kind, QString(), examples);
    return QStringLiteral("\n### %1: %2\n\n").arg(example.code, escaped(findingTitle(kind)))
        + line("Found", example.text) + line("Leads to", example.becomes)
        + line("Do", example.remedy);
}

} // namespace

QString findingsDocument()
{
    QString document = QString::fromUtf8(introduction);
    for (const FindingTopic &topic : findingTopics()) {
        document += QStringLiteral("\n## %1\n\n%2\n")
                        .arg(QString::fromUtf8(topic.title), QString::fromUtf8(topic.introduction));
        for (const FindingKind &kind : topic.kinds)
            document += kindText(kind);
    }
    return document;
}
