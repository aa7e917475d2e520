// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The blocks of PaM, the leave fund, ids that are cut, the force variable.
#include "host/doctor/contentparts.h"

#include "host/catalogue/findings.h"
#include "host/doctor/passvalues.h"
#include "host/doctor/sqlwords.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ContentCheck)
};

struct Block
{
    QString variable; ///< that marks it
    int people = 0; ///< how many are on its list
};

/// The block's list is the variable of this name.
QString listOf(QString variable)
{
    return variable.replace(QLatin1String("active"), QLatin1String("selPeople"));
}

bool readBlocks(const QSqlDatabase &database, QVector<Block> *blocks, Diagnosis *diagnosis)
{
    QHash<QString, int> lists;
    const bool isRead = forEachRow(
        database, QStringLiteral("vars"),
        QStringLiteral("SELECT name, LENGTH(value) - LENGTH(REPLACE(value, ',', '')) + 1, "
                       "name LIKE 'exportPam.%.active%' FROM vars "
                       "WHERE name LIKE 'exportPam.%' ORDER BY name"),
        diagnosis, [&](const ContentRow &row) {
            if (row.at(2).toBool())
                blocks->append({row.at(0).toString(), 0});
            lists.insert(row.at(0).toString(), row.at(1).toInt());
        });
    for (Block &block : *blocks)
        block.people = lists.value(listOf(block.variable));
    return isRead;
}

Finding severalBlocks(QVector<Block> blocks)
{
    std::stable_sort(blocks.begin(), blocks.end(), [](const Block &one, const Block &other) {
        return one.people > other.people;
    });
    QStringList names;
    QStringList others;
    for (const Block &block : qAsConst(blocks)) {
        names.append(block.variable);
        if (block.variable != blocks.first().variable)
            others.append(quotedText(block.variable));
    }
    return finding(
        "W-CONTENT-PAMSEVERAL", QStringLiteral("vars"),
        {names.join(QStringLiteral(", ")), names.first(), others.join(QStringLiteral(", "))});
}

void checkBlocks(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    QVector<Block> blocks;
    if (!readBlocks(database, &blocks, diagnosis))
        return;
    if (blocks.isEmpty())
        diagnosis->findings.append(finding("W-CONTENT-PAMNONE", QStringLiteral("vars")));
    else if (blocks.size() > 1)
        diagnosis->findings.append(severalBlocks(blocks));
}

/// The plugin takes the first one that the server gives, in the order of this very statement.
void checkFund(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    QStringList funds;
    const bool isRead = forEachRow(
        database, QStringLiteral("funds"),
        QStringLiteral("SELECT fid FROM funds WHERE iid = 3 AND unit=2;"), diagnosis,
        [&](const ContentRow &row) { funds.append(row.at(0).toString()); });
    if (!isRead)
        return;
    if (funds.isEmpty()) {
        diagnosis->findings.append(finding("E-CONTENT-FUNDNONE", QStringLiteral("funds")));
    } else if (funds.size() > 1) {
        const QString all = funds.join(QStringLiteral(", "));
        const QString taken = funds.takeFirst();
        diagnosis->findings.append(finding("W-CONTENT-FUNDSEVERAL", QStringLiteral("funds"),
                                           {all, taken, funds.join(QStringLiteral(", "))}));
    }
}

/// What the fund or the branch comes to, by 16 bits of its id.
QString effectOfCut(bool isFund, uint cut)
{
    if (cut == 0)
        return isFund ? Text::tr("no leave balance is taken over")
                      : Text::tr("the branch takes in nobody");
    return (isFund ? Text::tr("corrections of leave go to fid %1")
                   : Text::tr("people who join the branch are put into that with bid %1, while "
                              "the table people and calendars name the right one"))
        .arg(cut);
}

/// The leave fund and the members of branches are known by 16 bits.
void checkIds(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    QVector<Finding> wide;
    const auto check = [&](const char *table, const char *column, QLatin1String condition) {
        const QString id = QString::fromLatin1(column);
        const bool isFund = id == QLatin1String("fid");
        forEachRow(database, QString::fromLatin1(table),
                   QStringLiteral("SELECT %1 FROM %2 WHERE %3 AND %1 > 65535 ORDER BY %1")
                       .arg(id, QString::fromLatin1(table), condition),
                   diagnosis, [&](const ContentRow &row) {
                       const uint number = row.first().toUInt();
                       wide.append(finding(
                           "E-CONTENT-WIDE", QString::fromLatin1(table),
                           {id, QString::number(number), effectOfCut(isFund, number & 0xffff)}));
                   });
    };
    check("funds", "fid", isLeaveFund);
    check("branches", "bid", QLatin1String("number IS NOT NULL"));
    addSome(wide, diagnosis);
}

void checkForce(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    forEachRow(database, QStringLiteral("vars"),
               QStringLiteral("SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync'"),
               diagnosis, [&](const ContentRow &row) {
                   if (row.first().toBool())
                       diagnosis->findings.append(finding(
                           "W-CONTENT-FORCED", QStringLiteral("vars"), {row.first().toString()}));
               });
}

} // namespace

Diagnosis variablesDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    checkBlocks(database, &diagnosis);
    checkFund(database, &diagnosis);
    checkIds(database, &diagnosis);
    checkForce(database, &diagnosis);
    return diagnosis;
}
