// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers from bytes and knows which calls a pass may make.
#include "answereddatabase.h"

#include "check.h"
#include "host/catalogue/statements.h"

#include <QSqlError>
#include <QStringList>
#include <QVector>

#include <limits>
#include <memory>

namespace {

AnsweredDatabase *current = nullptr;

/// What kind of answer a byte asks for, by its low four bits.
enum Kind {
    Healthy,
    Fails,
    ErrorBeside,
    NoRows,
    NullCells,
    UnknownCount,
    OddRow,
    OddRows,
    FailsWithoutError
};

QSqlError oddError()
{
    return QSqlError(QStringLiteral("(driver)"), QStringLiteral("%s 'odd' %1"),
                     QSqlError::UnknownError, QStringLiteral("1205"));
}

/// The number at the end of a statement, without what closes it.
uint lastNumber(const QString &statement)
{
    int end = statement.size();
    while (end > 0 && !statement.at(end - 1).isDigit())
        --end;
    int begin = end;
    while (begin > 0 && statement.at(begin - 1).isDigit())
        --begin;
    return statement.mid(begin, end - begin).toUInt();
}

QVector<QVariantList> uidOfPid(uint pid)
{
    if (pid % 8 == 0 || pid > 65535)
        return {};
    return {{pid + 1000}};
}

/// What a healthy database has for a statement; the people are chosen elsewhere.
QVector<QVariantList> healthyRows(PassStatement shape, const QString &statement)
{
    switch (shape) {
    case PassStatement::Branches:
        return {{1, 10}, {2, 20}, {3, 1}, {4, 65546}};
    case PassStatement::LeaveFund:
    case PassStatement::PersonForPam:
    case PassStatement::PersonForTerminals:
    case PassStatement::AdminByNumber:
    case PassStatement::GroupByCalendar:
        return {{7}};
    case PassStatement::Calculated:
        return {{lastNumber(statement) + 1000, 0, 0}};
    case PassStatement::PamBlocks:
        return {{QStringLiteral("exportPam.1.active"), QStringLiteral("1")}};
    case PassStatement::PamList:
        return {{QStringLiteral("11,12")}};
    case PassStatement::TermsOfBranch:
    case PassStatement::AdminsOfBranch:
        return {{5}, {6}};
    case PassStatement::CorrectionsOfToday:
    case PassStatement::OpenDays:
    case PassStatement::Balance:
    case PassStatement::Corrections:
    case PassStatement::InBranch:
    case PassStatement::InGroupsPlan:
        return {{0}};
    default:
        return {};
    }
}

int columnCount(PassStatement shape)
{
    switch (shape) {
    case PassStatement::People:
        return 14;
    case PassStatement::Calculated:
        return 3;
    case PassStatement::Branches:
    case PassStatement::PamBlocks:
        return 2;
    default:
        return 1;
    }
}

QStringList columnsOf(const QString &statement)
{
    if (statement.startsWith(QLatin1String("SELECT name, value")))
        return {QStringLiteral("name"), QStringLiteral("value")};
    if (statement.startsWith(QLatin1String("SELECT")))
        return {QStringLiteral("value")};
    return {};
}

/// An answer without rows.
DatabaseAnswer answerOfKind(int kind)
{
    DatabaseAnswer answer;
    answer.fails = kind == Fails || kind == FailsWithoutError;
    answer.affected = answer.fails || kind == NoRows ? 0 : kind == UnknownCount ? -1 : 1;
    if (answer.affected > 0)
        answer.insertId = 9;
    if (kind == Fails || kind == ErrorBeside)
        answer.error = oddError();
    return answer;
}

} // namespace

AnsweredDatabase::AnsweredDatabase(const uint8_t *answers, std::size_t size, bool isForced,
                                   bool canOpen, bool withMarkers) :
    bytes(answers),
    left(size),
    forced(isForced),
    opens(canOpen),
    markersInTexts(withMarkers)
{
    current = this;
}

AnsweredDatabase::~AnsweredDatabase()
{
    current = nullptr;
}

QSqlDatabase AnsweredDatabase::handle()
{
    static const RegisteredDriver driver = answeringDriver([](const DatabaseCall &call) {
        return std::make_shared<const DatabaseAnswer>(current ? current->answerTo(call)
                                                              : DatabaseAnswer());
    });
    const QString name = QStringLiteral("answered");
    if (!QSqlDatabase::contains(name))
        driver.addHandle(name).setDatabaseName(name);
    return QSqlDatabase::database(name, false);
}

QString AnsweredDatabase::errorText()
{
    return oddError().text();
}

DatabaseAnswer AnsweredDatabase::answerTo(const DatabaseCall &call)
{
    switch (call.kind) {
    case DatabaseCall::Open:
        return answerOfKind(opens ? Healthy : Fails);
    case DatabaseCall::Close:
        return {};
    case DatabaseCall::Exec:
        return answerToStatement(call.statement);
    case DatabaseCall::Prepare:
        FUZZ_CHECK(classifyStatement(call.statement).statement == PassStatement::WriteVariable,
                   QStringLiteral("unknown: ") + call.statement);
        return answerOfKind(next() % 16);
    case DatabaseCall::Run:
        FUZZ_CHECK(call.values.size() == 2, QStringLiteral("values missing"));
        for (const DatabaseCall::Value &bound : call.values)
            FUZZ_CHECK(bound.value.isValid(), bound.name + QStringLiteral(" is not bound"));
        return answerOfKind(next() % 16);
    case DatabaseCall::Begin:
    case DatabaseCall::Commit:
    case DatabaseCall::Rollback:
        FUZZ_CHECK(inTransaction == (call.kind != DatabaseCall::Begin),
                   QStringLiteral("within or without a transaction: ") + call.text());
        inTransaction = !inTransaction;
        return answerOfKind(next() % 16 == Fails ? Fails : Healthy);
    }
    return {};
}

DatabaseAnswer AnsweredDatabase::answerToStatement(const QString &statement)
{
    const ClassifiedStatement known = classifyStatement(statement);
    const PassStatement shape = known.statement;
    FUZZ_CHECK(shape != PassStatement::Unknown && shape != PassStatement::WriteVariable,
               QStringLiteral("unknown: ") + statement);
    FUZZ_CHECK(known.inPlace || markersInTexts, QStringLiteral("out of place: ") + statement);
    const bool steady = shape == PassStatement::UidByPid;
    const uint8_t byte = steady ? 0 : next();
    DatabaseAnswer answer = answerOfKind(byte % 16);
    if (shape == PassStatement::People && !answer.fails)
        peopleGiven = true;
    const QStringList columns = columnsOf(statement);
    if (steady)
        answer.setRows(columns, uidOfPid(lastNumber(statement)));
    else if (!columns.isEmpty())
        answer.setRows(columns,
                       answer.fails ? QVector<QVariantList>() : rowsOf(shape, statement, byte));
    return answer;
}

QVector<QVariantList> AnsweredDatabase::rowsOf(PassStatement shape, const QString &statement,
                                               uint8_t byte)
{
    const int columns = columnCount(shape);
    switch (byte % 16) {
    case NoRows:
        return {};
    case NullCells:
        return {QVector<QVariant>(columns).toList()};
    case OddRow:
        return oddRows(1, columns);
    case OddRows:
        return oddRows(byte / 64 + 2, columns);
    default:
        break;
    }
    if (shape == PassStatement::People)
        return people();
    if (shape == PassStatement::ForceFlag)
        return {{forced ? 1 : 0}};
    return healthyRows(shape, statement);
}

/// Up to three people, with small numbers, so that the export speaks of them.
QVector<QVariantList> AnsweredDatabase::people()
{
    static const uint moments[] = {0,          1,          86400,      946684800,
                                   1425168000, 1704067200, 4102444800, 4294967295};
    const auto moment = [this] { return QVariant(moments[next() % 8]); };
    QVector<QVariantList> all;
    for (int i = next() % 4; i > 0; --i) {
        const uint8_t key = next();
        const QString pamId = QStringLiteral("%1.%2").arg(key / 16).arg(key % 16);
        QVariantList person {0, pamId, QStringLiteral("Ing."), QStringLiteral("Ján"),
                             QStringLiteral("Novák")};
        person << QStringLiteral("PhD.") << QStringLiteral("0905") << moment() << moment();
        person << moment() << moment() << QStringLiteral("text") << next() % 4 << 10;
        all.append(person);
    }
    return all;
}

QVector<QVariantList> AnsweredDatabase::oddRows(int count, int columns)
{
    QVector<QVariantList> rows(count);
    for (QVariantList &row : rows) {
        for (int i = 0; i < columns; ++i)
            row.append(oddCell());
    }
    return rows;
}

uint8_t AnsweredDatabase::next()
{
    if (left == 0)
        return 0;
    --left;
    return *bytes++;
}

QVariant AnsweredDatabase::oddCell()
{
    const uint8_t byte = next();
    switch (byte % 16) {
    case 0:
        return QVariant();
    case 1:
        return 0;
    case 2:
        return 1;
    case 3:
        return std::numeric_limits<uint>::max();
    case 4:
        return QStringLiteral("-1");
    case 5:
        return 4294967296ll + byte;
    case 6:
        return 1e300;
    case 7:
        return -0.5;
    case 8:
        return QString();
    case 9:
        markersInTexts = true;
        return QStringLiteral("x'%1active");
    case 10:
        return QByteArray("12");
    case 11:
        return QStringLiteral("1.2.%1").arg(byte / 16);
    case 12:
        return QString::number(byte);
    case 13:
        return 65536;
    case 14:
        return std::numeric_limits<int>::min();
    default:
        return byte / 16;
    }
}
