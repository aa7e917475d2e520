// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The driver that answers from memory, and the calls that it is asked.
#include "host/database/answeringdriver.h"
#include "support/database/callmaker.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QtTest>

namespace {

const QString connectionName = QStringLiteral("answering");

/// An open handle whose calls are kept; all have the same answer.
struct Fixture
{
    Fixture() { database.open(); }
    ~Fixture()
    {
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(connectionName);
    }

    QStringList takeTexts()
    {
        QStringList texts;
        for (const DatabaseCall &call : qAsConst(calls))
            texts.append(call.text());
        calls.clear();
        return texts;
    }

    void failBeside(const QString &text)
    {
        answer.error = QSqlError(QStringLiteral("(memory)"), text, QSqlError::UnknownError,
                                 QStringLiteral("42"));
    }

    QVector<DatabaseCall> calls;
    DatabaseAnswer answer;
    const RegisteredDriver driver = answeringDriver([this](const DatabaseCall &call) {
        calls.append(call);
        return std::make_shared<const DatabaseAnswer>(answer);
    });
    QSqlDatabase database = driver.addHandle(connectionName);
};

} // namespace

class tst_AnsweringDriver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void calls_comeAsValues();
    void placeholders_areNamedAsTheyWereBound();
    void batch_isARunForEachRow();
    void answer_byDefaultIsSuccess();
    void rows_areRead();
    void cells_areMadeWhenTheyAreRead();
    void changes_areTold();
    void failure_ofEachKind_data() { CallMaker::addRows(); }
    void failure_ofEachKind();
    void errorType_isThatOfTheKind();
    void error_besideSuccess();
    void error_ofARunIsGoneWithTheNext();
    void freshQuery_tellsNothing();
    void closing_needsNoAnswer();
    void handle_outlivesItsRegistration();
    void registrations_haveNamesOfTheirOwn();
};

void tst_AnsweringDriver::calls_comeAsValues()
{
    Fixture f;
    QSqlQuery query(f.database);
    query.exec(QStringLiteral(" SELECT 1 "));
    query.prepare(QStringLiteral("DELETE FROM t WHERE a = :a"));
    query.bindValue(QStringLiteral(":a"), 5);
    query.exec();
    f.database.transaction();
    f.database.commit();
    f.database.rollback();
    f.database.close();
    f.database.close();
    QCOMPARE(f.calls.at(3).statement, QStringLiteral("DELETE FROM t WHERE a = :a"));
    QCOMPARE(f.calls.at(3).values.first().value, QVariant(5));
    QCOMPARE(
        f.takeTexts(),
        (QStringList {QStringLiteral("open"), QStringLiteral("exec  SELECT 1 "),
                      QStringLiteral("prepare DELETE FROM t WHERE a = :a"),
                      QStringLiteral("run :a=5"), QStringLiteral("begin"), QStringLiteral("commit"),
                      QStringLiteral("rollback"), QStringLiteral("close")}));
}

void tst_AnsweringDriver::placeholders_areNamedAsTheyWereBound()
{
    Fixture f;
    QSqlQuery query(f.database);
    f.calls.clear();
    query.prepare(QStringLiteral("SELECT :b, :a, :b"));
    query.bindValue(QStringLiteral(":a"), QStringLiteral("x, y"));
    query.bindValue(QStringLiteral(":b"), QVariant(QVariant::Int));
    query.exec();
    query.prepare(QStringLiteral("SELECT ?, ?"));
    query.bindValue(1, 2.5);
    query.exec();
    QVERIFY(!f.calls.last().values.first().value.isValid());
    QCOMPARE(
        f.takeTexts(),
        (QStringList {QStringLiteral("prepare SELECT :b, :a, :b"),
                      QStringLiteral("run :b=NULL, :a=x, y, :b=NULL"),
                      QStringLiteral("prepare SELECT ?, ?"), QStringLiteral("run 0=NULL, 1=2.5")}));
}

void tst_AnsweringDriver::batch_isARunForEachRow()
{
    Fixture f;
    QSqlQuery query(f.database);
    query.prepare(QStringLiteral("INSERT INTO t VALUES (?)"));
    query.addBindValue(QVariantList {1, 2});
    f.calls.clear();
    QVERIFY(query.execBatch());
    QCOMPARE(f.takeTexts(), (QStringList {QStringLiteral("run 0=1"), QStringLiteral("run 0=2")}));
}

void tst_AnsweringDriver::answer_byDefaultIsSuccess()
{
    Fixture f;
    QSqlQuery query(f.database);
    QVERIFY(query.exec(QStringLiteral("UPDATE t")));
    QVERIFY(query.isActive());
    QVERIFY(!query.isSelect());
    QVERIFY(!query.next());
    QCOMPARE(query.numRowsAffected(), 0);
    QVERIFY(query.lastInsertId().isNull());
    QVERIFY(!query.lastError().isValid());
    QVERIFY(query.prepare(QStringLiteral("UPDATE t")));
    QVERIFY(!query.isActive());
    QVERIFY(f.database.transaction() && f.database.commit() && f.database.rollback());
}

void tst_AnsweringDriver::rows_areRead()
{
    Fixture f;
    f.answer.setRows({QStringLiteral("id"), QStringLiteral("name")},
                     {{1, QStringLiteral("a")}, {2, QVariant()}, {3}});
    QSqlQuery query(f.database);
    QVERIFY(query.exec(QStringLiteral("SELECT")));
    QVERIFY(query.isSelect());
    QCOMPARE(query.size(), 3);
    QCOMPARE(query.record().fieldName(1), QStringLiteral("name"));
    QVERIFY(query.next());
    QCOMPARE(query.value(QStringLiteral("name")), QVariant(QStringLiteral("a")));
    QVERIFY(query.next());
    QVERIFY(query.isNull(1));
    QVERIFY(query.last());
    QCOMPARE(query.value(0), QVariant(3));
    QVERIFY2(query.isNull(1), "a row may be short");
    QVERIFY(!query.next());
    QVERIFY(query.first());
    QVERIFY(query.seek(1));
    QCOMPARE(query.value(0), QVariant(2));
    QVERIFY(!query.seek(3));
}

void tst_AnsweringDriver::cells_areMadeWhenTheyAreRead()
{
    Fixture f;
    int made = 0;
    f.answer.columns = QStringList {QStringLiteral("n")};
    f.answer.rowCount = 1000000;
    f.answer.cell = [&made](int row, int column) {
        ++made;
        return QVariant(row * 10 + column);
    };
    QSqlQuery query(f.database);
    QVERIFY(query.exec(QStringLiteral("SELECT")));
    QVERIFY(query.last());
    QCOMPARE(made, 0);
    QCOMPARE(query.value(3), QVariant(9999993));
    QCOMPARE(made, 1);
}

void tst_AnsweringDriver::changes_areTold()
{
    Fixture f;
    f.answer.affected = -1;
    f.answer.insertId = 9;
    QSqlQuery query(f.database);
    QVERIFY(query.exec(QStringLiteral("INSERT")));
    QCOMPARE(query.numRowsAffected(), -1);
    QCOMPARE(query.lastInsertId(), QVariant(9));
}

void tst_AnsweringDriver::failure_ofEachKind()
{
    QFETCH(DatabaseCall::Kind, kind);
    Fixture f;
    CallMaker maker(f.database);
    f.answer.fails = true;
    f.failBeside(QStringLiteral("broken"));
    QVERIFY(!maker.make(kind));
    QVERIFY(!maker.query.isActive());
    QCOMPARE(f.database.isOpen(), kind != DatabaseCall::Open);
    QCOMPARE(f.database.isOpenError(), kind == DatabaseCall::Open);
    const QSqlError error = maker.errorOf(kind);
    QCOMPARE(error.text(), QStringLiteral("broken (memory)"));
    QCOMPARE(error.nativeErrorCode(), QStringLiteral("42"));
    QCOMPARE(error.type(), f.calls.last().errorType());
}

void tst_AnsweringDriver::errorType_isThatOfTheKind()
{
    const auto typeOf = [](DatabaseCall::Kind kind) {
        return DatabaseCall {kind, {}, {}}.errorType();
    };
    QCOMPARE(typeOf(DatabaseCall::Open), QSqlError::ConnectionError);
    QCOMPARE(typeOf(DatabaseCall::Run), QSqlError::StatementError);
    QCOMPARE(typeOf(DatabaseCall::Rollback), QSqlError::TransactionError);
}

void tst_AnsweringDriver::error_besideSuccess()
{
    Fixture f;
    f.failBeside(QStringLiteral("odd"));
    QSqlQuery query(f.database);
    QVERIFY(query.exec(QStringLiteral("UPDATE t")));
    QCOMPARE(query.lastError().text(), QStringLiteral("odd (memory)"));
    f.answer.error = QSqlError(QString(), QStringLiteral("typed"), QSqlError::ConnectionError);
    QVERIFY(query.exec(QStringLiteral("UPDATE t")));
    QCOMPARE(query.lastError().type(), QSqlError::ConnectionError);
}

void tst_AnsweringDriver::error_ofARunIsGoneWithTheNext()
{
    Fixture f;
    const RegisteredDriver driver = answeringDriver([](const DatabaseCall &call) {
        DatabaseAnswer answer;
        if (call.text() == QStringLiteral("run 0=1"))
            answer.error = QSqlError(QStringLiteral("first only"));
        return std::make_shared<const DatabaseAnswer>(answer);
    });
    {
        QSqlDatabase database = driver.addHandle(QStringLiteral("batch"));
        QVERIFY(database.open());
        QSqlQuery query(database);
        query.prepare(QStringLiteral("INSERT INTO t VALUES (?)"));
        query.addBindValue(QVariantList {1, 2});
        QVERIFY(query.execBatch());
        QVERIFY(!query.lastError().isValid());
    }
    QSqlDatabase::removeDatabase(QStringLiteral("batch"));
}

void tst_AnsweringDriver::freshQuery_tellsNothing()
{
    Fixture f;
    const QSqlQuery query(f.database);
    QVERIFY(query.lastInsertId().isNull());
    QVERIFY(query.record().isEmpty());
}

void tst_AnsweringDriver::closing_needsNoAnswer()
{
    Fixture f;
    f.answer.fails = true;
    f.database.close();
    QVERIFY(!f.database.isOpen());
    QCOMPARE(f.takeTexts().last(), QStringLiteral("close"));
}

void tst_AnsweringDriver::handle_outlivesItsRegistration()
{
    const QString name = QStringLiteral("survivor");
    int calls = 0;
    {
        const RegisteredDriver driver = answeringDriver([&calls](const DatabaseCall &) {
            ++calls;
            return std::make_shared<const DatabaseAnswer>();
        });
        driver.addHandle(name);
        QVERIFY(QSqlDatabase::isDriverAvailable(driver.name()));
    }
    QVERIFY(QSqlDatabase::database(name).isOpen());
    QCOMPARE(calls, 1);
    QVERIFY(!QSqlDatabase::isDriverAvailable(QSqlDatabase::database(name).driverName()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("driver not loaded")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("available drivers")));
    QVERIFY(!QSqlDatabase::cloneDatabase(name, QStringLiteral("clone")).isValid());
    QSqlDatabase::removeDatabase(QStringLiteral("clone"));
    QSqlDatabase::removeDatabase(name);
    QCOMPARE(calls, 2); // it was open
}

void tst_AnsweringDriver::registrations_haveNamesOfTheirOwn()
{
    const auto answers = [](const DatabaseCall &) {
        return std::make_shared<const DatabaseAnswer>();
    };
    const RegisteredDriver one = answeringDriver(answers);
    const RegisteredDriver two = answeringDriver(answers);
    QVERIFY(one.name() != two.name());
}

QTEST_GUILESS_MAIN(tst_AnsweringDriver)
#include "tst_answeringdriver.moc"
