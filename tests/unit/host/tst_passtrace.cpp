// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass has said and asked, written down and read again.
#include "host/changes/passtrace.h"
#include "host/database/databasecall.h"
#include "host/database/recordingdriver.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

namespace {

DatabaseCall exec(const char *statement)
{
    DatabaseCall call;
    call.statement = QString::fromUtf8(statement);
    return call;
}

} // namespace

class tst_PassTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void steps_comeBackInTheirOrder();
    void file_isNewAndForItsOwnerOnly();
    void line_thatIsNone_isNamed();

private:
    QString path() const { return folder.filePath(QStringLiteral("trace")); }

    QTemporaryDir folder;
};

void tst_PassTrace::steps_comeBackInTheirOrder()
{
    PassTrace trace;
    QVERIFY(!trace.open(path()));
    trace.message(QtWarningMsg, QStringLiteral("\"Ž\"\n\x01"));
    CallOutcome done;
    done.done = true;
    done.affected = 2;
    trace.call(exec("UPDATE 'é'"), done);
    DatabaseCall run = exec("INSERT ?");
    run.kind = DatabaseCall::Run;
    run.values = {{QStringLiteral("0"), 7}, {QStringLiteral("1"), QStringLiteral("a")}};
    CallOutcome refused;
    refused.error = QSqlError(QStringLiteral("no"), QStringLiteral("way"));
    trace.call(run, refused);
    DatabaseCall begin;
    begin.kind = DatabaseCall::Begin;
    trace.call(begin, done);
    QVERIFY(!trace.close());

    TraceSteps steps;
    const Failure failure = readTrace(path(), &steps);
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(steps.size(), 4);
    QVERIFY(steps.at(0).isMessage && !steps.at(1).isMessage);
    QCOMPARE(steps.at(0).type, QtWarningMsg);
    QCOMPARE(steps.at(0).text, QStringLiteral("\"Ž\"\n\x01"));
    QCOMPARE(steps.at(1).text, QStringLiteral("UPDATE 'é'"));
    QVERIFY(steps.at(1).done);
    QCOMPARE(steps.at(1).affected, 2);
    QCOMPARE(steps.at(2).values, QVariantList({7.0, QStringLiteral("a")}));
    QVERIFY(!steps.at(2).done);
    QVERIFY(steps.at(2).error.contains(QStringLiteral("way")));
    QCOMPARE(steps.at(3).text, QStringLiteral("begin"));
}

void tst_PassTrace::file_isNewAndForItsOwnerOnly()
{
    QFile::remove(path());
    PassTrace trace;
    QVERIFY(!trace.open(path()));
    QCOMPARE(int(QFileInfo(path()).permissions() & 0x77), 0);
    PassTrace second;
    const Failure failure = second.open(path());
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY2(failure.text.startsWith(QStringLiteral("cannot make '")), qPrintable(failure.text));
}

void tst_PassTrace::line_thatIsNone_isNamed()
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    TraceStep step;
    step.text = QStringLiteral("a");
    file.write(traceLine(step) + "{\"call\":\"a");
    file.close();
    TraceSteps steps;
    QVERIFY(readTrace(path(), &steps).text.startsWith(QStringLiteral("line 2 of the trace '")));
}

QTEST_GUILESS_MAIN(tst_PassTrace)
#include "tst_passtrace.moc"
