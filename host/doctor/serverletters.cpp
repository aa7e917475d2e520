// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether names keep their letters on the way into the tables.
#include "host/catalogue/findings.h"
#include "host/database/errortext.h"
#include "host/doctor/servercheck.h"
#include "host/doctor/serverquestions.h"

#include <QCoreApplication>
#include <QMap>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerCheck)
};

/// Names of columns, by the character set that they have in common.
using ColumnsBySet = QMap<QString, QStringList>;

QVector<Finding> sessionFindings(const ServerVariables &variables)
{
    for (const char *name : {"character_set_client", "character_set_connection"}) {
        const QString set = variables.session(name);
        if (!set.isNull() && !set.startsWith(QLatin1String("utf8")))
            return {finding("E-SRV-CHARSET", Text::tr("connection"), {set, QLatin1String(name)})};
    }
    return {};
}

/// The letters go through the character set and come back.
bool holdsLetters(const QSqlDatabase &database, const QString &set)
{
    const QString letters = QStringLiteral("áäčďéěíĺľňóôŕřšťúůýžÁÄČĎÉĚÍĹĽŇÓÔŔŘŠŤÚŮÝŽ");
    const QString code = QString::fromLatin1(letters.toUtf8().toHex().toUpper());
    return askServer(database,
                     QStringLiteral("SELECT HEX(CONVERT(CONVERT(_utf8mb4 X'%1' USING %2) USING "
                                    "utf8mb4))")
                         .arg(code, set))
               .text()
        == code;
}

} // namespace

Diagnosis letterDiagnosis(const QSqlDatabase &database, const ServerVariables &variables)
{
    Diagnosis diagnosis;
    diagnosis.findings = sessionFindings(variables);
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral(
            "SELECT character_set_name, column_name FROM information_schema.columns WHERE "
            "table_schema = DATABASE() AND table_name = 'people' AND column_name IN ('title', "
            "'name', 'surname', 'title2', 'phone', 'rsText') AND character_set_name IS NOT NULL "
            "ORDER BY ordinal_position"))) {
        diagnosis.unknown.append(
            {Text::tr("letters of the columns"), errorText(query.lastError())});
        return diagnosis;
    }
    ColumnsBySet columns;
    while (query.next())
        columns[query.value(0).toString()].append(query.value(1).toString());
    for (auto it = columns.constBegin(); it != columns.constEnd(); ++it) {
        if (!holdsLetters(database, it.key()))
            diagnosis.findings.append(finding(
                "E-SRV-LETTERS", QStringLiteral("people"),
                {QStringLiteral("people"), it.value().join(QStringLiteral(", ")), it.key()}));
    }
    if (columns.isEmpty())
        diagnosis.unknown.append({Text::tr("letters of the columns"),
                                  Text::tr("the server tells nothing of the table 'people'")});
    else if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("letters"));
    return diagnosis;
}
