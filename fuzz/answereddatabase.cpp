// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers from bytes and knows which calls a pass may make.
#include "answereddatabase.h"

#include "check.h"
#include "host/catalogue/statements.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlRecord>
#include <QSqlResult>
#include <QVector>

#include <limits>

namespace {

AnsweredDatabase *current = nullptr;

using Row = QVector<QVariant>;

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

QSqlError oddError(QSqlError::ErrorType type)
{
    return QSqlError(QStringLiteral("(driver)"), QStringLiteral("%s 'odd' %1"), type,
                     QStringLiteral("1205"));
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

QVector<Row> uidOfPid(uint pid)
{
    if (pid % 8 == 0 || pid > 65535)
        return {};
    return {{pid + 1000}};
}

/// What a healthy database has for a statement; the people are chosen elsewhere.
QVector<Row> healthyRows(PassStatement shape, const QString &statement)
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

} // namespace

class AnsweredResult : public QSqlResult
{
public:
    explicit AnsweredResult(const QSqlDriver *driver) :
        QSqlResult(driver)
    { }

protected:
    bool reset(const QString &statement) override
    {
        FUZZ_CHECK(current && driver()->isOpen(), QStringLiteral("too late: ") + statement);
        const ClassifiedStatement known = classifyStatement(statement);
        FUZZ_CHECK(known.statement != PassStatement::Unknown
                       && known.statement != PassStatement::WriteVariable,
                   QStringLiteral("unknown: ") + statement);
        FUZZ_CHECK(known.inPlace || current->markersInTexts,
                   QStringLiteral("out of place: ") + statement);
        return answer(known.statement, statement);
    }

    bool prepare(const QString &) override
    {
        FUZZ_CHECK(classifyStatement(lastQuery()).statement == PassStatement::WriteVariable,
                   QStringLiteral("unknown: ") + lastQuery());
        return succeed(current->next() % 16);
    }

    bool exec() override
    {
        FUZZ_CHECK(boundValueCount() == 2, QStringLiteral("values missing"));
        for (int i = 0; i < 2; ++i)
            FUZZ_CHECK(boundValue(i).isValid(), QStringLiteral("value %1 not bound").arg(i));
        return succeed(current->next() % 16);
    }

    QVariant data(int column) override { return rows.at(at()).value(column); }
    bool isNull(int column) override { return data(column).isNull(); }
    int size() override { return rows.size(); }
    int numRowsAffected() override { return affected; }
    QVariant lastInsertId() const override { return affected > 0 ? QVariant(9) : QVariant(); }
    bool fetchFirst() override { return fetch(0); }
    bool fetchLast() override { return fetch(rows.size() - 1); }

    bool fetch(int row) override
    {
        if (row < 0 || row >= rows.size())
            return false;
        setAt(row);
        return true;
    }

    QSqlRecord record() const override
    {
        QSqlRecord fields;
        for (const QString &name : names)
            fields.append(QSqlField(name));
        return fields;
    }

private:
    bool answer(PassStatement shape, const QString &statement);
    bool succeed(int kind);
    QVector<Row> people();
    Row oddRow(int columns);

    QStringList names;
    QVector<Row> rows;
    int affected = 0;
};

/// Sets the state of the result, but for its rows.
bool AnsweredResult::succeed(int kind)
{
    const bool fails = kind == Fails || kind == FailsWithoutError;
    rows.clear();
    affected = fails || kind == NoRows ? 0 : kind == UnknownCount ? -1 : 1;
    setAt(QSql::BeforeFirstRow);
    setSelect(!names.isEmpty());
    setActive(!fails);
    setLastError(kind == Fails || kind == ErrorBeside ? oddError(QSqlError::StatementError)
                                                      : QSqlError());
    return !fails;
}

bool AnsweredResult::answer(PassStatement shape, const QString &statement)
{
    names.clear();
    if (statement.startsWith(QLatin1String("SELECT name, value")))
        names = QStringList {QStringLiteral("name"), QStringLiteral("value")};
    else if (statement.startsWith(QLatin1String("SELECT")))
        names = QStringList {QStringLiteral("value")};
    if (shape == PassStatement::UidByPid) {
        succeed(Healthy);
        rows = uidOfPid(lastNumber(statement));
        return true;
    }

    const uint8_t byte = current->next();
    const int kind = byte % 16;
    if (!succeed(kind))
        return false;
    if (shape == PassStatement::People)
        current->peopleGiven = true;
    if (names.isEmpty() || kind == NoRows)
        return true;

    const int columns = columnCount(shape);
    if (kind == NullCells) {
        rows = {Row(columns)};
    } else if (kind == OddRow || kind == OddRows) {
        for (int i = kind == OddRow ? 1 : byte / 64 + 2; i > 0; --i)
            rows.append(oddRow(columns));
    } else if (shape == PassStatement::People) {
        rows = people();
    } else if (shape == PassStatement::ForceFlag) {
        rows = {{current->forced ? 1 : 0}};
    } else {
        rows = healthyRows(shape, statement);
    }
    return true;
}

/// Up to three people, with small numbers, so that the export speaks of them.
QVector<Row> AnsweredResult::people()
{
    static const uint moments[] = {0,          1,          86400,      946684800,
                                   1425168000, 1704067200, 4102444800, 4294967295};
    const auto moment = [] { return QVariant(moments[current->next() % 8]); };
    QVector<Row> all;
    for (int i = current->next() % 4; i > 0; --i) {
        const uint8_t key = current->next();
        const QString pamId = QStringLiteral("%1.%2").arg(key / 16).arg(key % 16);
        Row person {0, pamId, QStringLiteral("Ing."), QStringLiteral("Ján"),
                    QStringLiteral("Novák")};
        person << QStringLiteral("PhD.") << QStringLiteral("0905") << moment() << moment();
        person << moment() << moment() << QStringLiteral("text") << current->next() % 4 << 10;
        all.append(person);
    }
    return all;
}

Row AnsweredResult::oddRow(int columns)
{
    Row row;
    for (int i = 0; i < columns; ++i)
        row.append(current->oddCell());
    return row;
}

class AnsweredDriver : public QSqlDriver
{
public:
    ~AnsweredDriver() override { AnsweredDriver::close(); }

    bool hasFeature(DriverFeature feature) const override
    {
        return feature == Transactions || feature == PreparedQueries || feature == NamedPlaceholders
            || feature == PositionalPlaceholders || feature == LastInsertId || feature == QuerySize;
    }

    bool open(const QString &, const QString &, const QString &, const QString &, int,
              const QString &) override
    {
        const bool opened = current && current->opens;
        setOpen(opened);
        setOpenError(!opened);
        setLastError(opened ? QSqlError() : oddError(QSqlError::ConnectionError));
        return opened;
    }

    void close() override { setOpen(false); }
    QSqlResult *createResult() const override { return new AnsweredResult(this); }

    bool beginTransaction() override
    {
        FUZZ_CHECK(!current->inTransaction, QStringLiteral("a transaction inside another"));
        current->inTransaction = true;
        return succeed();
    }
    bool commitTransaction() override { return end(); }
    bool rollbackTransaction() override { return end(); }

private:
    bool end()
    {
        FUZZ_CHECK(current->inTransaction, QStringLiteral("no transaction to end"));
        current->inTransaction = false;
        return succeed();
    }

    bool succeed()
    {
        const bool fails = current->next() % 16 == Fails;
        setLastError(fails ? oddError(QSqlError::TransactionError) : QSqlError());
        return !fails;
    }
};

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
    // Qt keeps the creator until the end of the process and does not delete it.
    static auto *const creator = new QSqlDriverCreator<AnsweredDriver>;
    const QString name = QStringLiteral("answered");
    if (!QSqlDatabase::contains(name)) {
        QSqlDatabase::registerSqlDriver(QStringLiteral("ANSWERED"), creator);
        QSqlDatabase::addDatabase(QStringLiteral("ANSWERED"), name).setDatabaseName(name);
    }
    return QSqlDatabase::database(name, false);
}

QString AnsweredDatabase::errorText()
{
    return oddError(QSqlError::StatementError).text();
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
