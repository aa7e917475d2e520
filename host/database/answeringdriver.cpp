// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A driver that answers from memory.
#include "host/database/answeringdriver.h"

#include "host/database/callresult.h"

#include <QSqlDriver>
#include <QSqlField>
#include <QSqlRecord>

#include <memory>
#include <utility>

namespace {

using SharedAnswer = std::shared_ptr<const DatabaseAnswer>;

/// Of the registration and of each driver.
using SharedAnswers = std::shared_ptr<const AnswerFunction>;

QSqlError errorOf(const DatabaseAnswer &answer, const DatabaseCall &call)
{
    if (!answer.error || answer.error->type() != QSqlError::UnknownError)
        return answer.error.value_or(QSqlError());
    return QSqlError(answer.error->driverText(), answer.error->databaseText(), call.errorType(),
                     answer.error->nativeErrorCode());
}

class AnsweringResult : public CallResult
{
public:
    AnsweringResult(const QSqlDriver *driver, const AnswerFunction &answerFunction) :
        CallResult(driver),
        answers(answerFunction)
    { }

protected:
    bool make(const DatabaseCall &call) override
    {
        answer = answers(call);
        setAt(QSql::BeforeFirstRow);
        setSelect(!answer->columns.isEmpty());
        setActive(!answer->fails && call.kind != DatabaseCall::Prepare);
        // Qt has taken away the error of the call before, but not from run to run of a batch.
        if (answer->error || call.kind == DatabaseCall::Run)
            setLastError(errorOf(*answer, call));
        return !answer->fails;
    }

    QVariant data(int column) override { return answer->cell(at(), column); }
    bool isNull(int column) override { return data(column).isNull(); }
    int size() override { return answer->rowCount; }
    int numRowsAffected() override { return answer->affected; }
    QVariant lastInsertId() const override { return answer ? answer->insertId : QVariant(); }
    bool fetchFirst() override { return fetch(0); }
    bool fetchLast() override { return fetch(answer->rowCount - 1); }

    bool fetch(int row) override
    {
        if (row < 0 || row >= answer->rowCount)
            return false;
        setAt(row);
        return true;
    }

    QSqlRecord record() const override
    {
        QSqlRecord fields;
        for (const QString &column : answer ? answer->columns : QStringList())
            fields.append(QSqlField(column));
        return fields;
    }

private:
    const AnswerFunction &answers; // of the driver, without which no call is made
    SharedAnswer answer; // none before the first call
};

class AnsweringDriver : public QSqlDriver
{
public:
    explicit AnsweringDriver(SharedAnswers sharedAnswers) :
        answers(std::move(sharedAnswers))
    { }
    ~AnsweringDriver() override { AnsweringDriver::close(); }

    bool hasFeature(DriverFeature feature) const override
    {
        return feature == Transactions || feature == PreparedQueries || feature == NamedPlaceholders
            || feature == PositionalPlaceholders || feature == LastInsertId || feature == QuerySize;
    }

    bool open(const QString &, const QString &, const QString &, const QString &, int,
              const QString &) override
    {
        const bool opened = make(DatabaseCall::Open);
        setOpen(opened);
        setOpenError(!opened);
        return opened;
    }

    void close() override
    {
        if (!isOpen())
            return;
        make(DatabaseCall::Close);
        setOpen(false);
    }

    QSqlResult *createResult() const override { return new AnsweringResult(this, *answers); }
    bool beginTransaction() override { return make(DatabaseCall::Begin); }
    bool commitTransaction() override { return make(DatabaseCall::Commit); }
    bool rollbackTransaction() override { return make(DatabaseCall::Rollback); }

private:
    bool make(DatabaseCall::Kind kind)
    {
        const DatabaseCall call {kind, {}, {}};
        const SharedAnswer answer = (*answers)(call);
        setLastError(errorOf(*answer, call));
        return !answer->fails;
    }

    const SharedAnswers answers;
};

} // namespace

void DatabaseAnswer::setRows(const QStringList &names, const QVector<QVariantList> &cells)
{
    columns = names;
    rowCount = cells.size();
    cell = [cells](int row, int column) { return cells.at(row).value(column); };
}

RegisteredDriver answeringDriver(const AnswerFunction &answers)
{
    const SharedAnswers shared = std::make_shared<const AnswerFunction>(answers);
    return RegisteredDriver(QStringLiteral("ANSWERING"),
                            [shared] { return new AnsweringDriver(shared); });
}
