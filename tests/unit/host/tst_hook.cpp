// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A hook gets what it is told, and nothing that it does holds up whoever has called it.
#include "host/gate/hook.h"
#include "support/patience.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

class tst_Hook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void json_arrives();
    void noCommand_isNoHook();
    void programThatDoesNotRead_endsWell();
    void programThatClosesItsInput_endsWell();
    void longJson_arrives();
    void trouble_isTold_data();
    void trouble_isTold();
    void manyErrors_endWithTheLastLine();
    void slowProgram_isKilledWithItsChildren();
    void programThatNeverReads_isKilled();
    void childLeftBehind_isNotWaitedFor();
    void output_isDropped();

private:
    QString path(const char *name) const { return folder->filePath(QLatin1String(name)); }
    QString shell(const QString &script) const;

    std::unique_ptr<QTemporaryDir> folder;
};

namespace {

const int generous = 60; // seconds

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Dead, if perhaps not yet buried.
bool isDead(const QByteArray &pid)
{
    const QByteArray stat = content(
        QStringLiteral("/proc/%1/stat").arg(QString::fromLatin1(pid.trimmed())));
    return stat.isEmpty() || stat.mid(stat.lastIndexOf(')') + 2, 1) == "Z";
}

} // namespace

void tst_Hook::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
}

/// The command that has a shell run the script, with the folder as $0.
QString tst_Hook::shell(const QString &script) const
{
    return QStringLiteral("/bin/sh -c \"%1\" \"%2\"").arg(script, folder->path());
}

void tst_Hook::json_arrives()
{
    const QByteArray json = "{\"outcome\":\"refused\",\"text\":\"Ján\"}\n";
    QCOMPARE(runHook(shell(QStringLiteral("cat > $0/json")), json, generous), QString());
    QCOMPARE(content(path("json")), json);
}

void tst_Hook::noCommand_isNoHook()
{
    QCOMPARE(runHook(QString(), "{}", generous), QString());
    QCOMPARE(runHook(QStringLiteral("  "), "{}", generous), QString());
}

void tst_Hook::programThatDoesNotRead_endsWell()
{
    QCOMPARE(runHook(QStringLiteral("/bin/true"), QByteArray(1 << 20, '1'), generous), QString());
}

void tst_Hook::programThatClosesItsInput_endsWell()
{
    const QString command = shell(QStringLiteral("exec <&-; echo done > $0/done"));
    QCOMPARE(runHook(command, QByteArray(1 << 20, '1'), generous), QString());
    QCOMPARE(content(path("done")), QByteArray("done\n"));
}

void tst_Hook::longJson_arrives()
{
    const QByteArray json(3000000, '1');
    QCOMPARE(runHook(shell(QStringLiteral("cat > $0/json")), json, generous), QString());
    QVERIFY(content(path("json")) == json);
}

void tst_Hook::trouble_isTold_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("trouble");
    init();
    QTest::newRow("no program") << path(
        "missing --fast") << QStringLiteral("it did not start: execvp: No such file or directory");
    QTest::newRow("exit code, silent")
        << QStringLiteral("/bin/false") << QStringLiteral("exit code 1");
    QTest::newRow("exit code, last line")
        << shell(QStringLiteral("echo first >&2; echo no server >&2; echo >&2; exit 75"))
        << QStringLiteral("exit code 75: no server");
    QTest::newRow("control characters") << shell(QStringLiteral("printf '\\033[2J' >&2; exit 1"))
                                        << QStringLiteral("exit code 1: \\x1b[2J");
    QTest::newRow("crash") << shell(QStringLiteral("echo out of memory >&2; kill -9 $$"))
                           << QStringLiteral("it crashed: out of memory");
}

void tst_Hook::trouble_isTold()
{
    QFETCH(QString, command);
    QFETCH(QString, trouble);
    QCOMPARE(runHook(command, "{}", generous), trouble);
}

void tst_Hook::manyErrors_endWithTheLastLine()
{
    const QString command = shell(
        QStringLiteral("head -c 5000000 /dev/zero >&2; echo >&2; echo last >&2; exit 1"));
    QCOMPARE(runHook(command, "{}", generous), QStringLiteral("exit code 1: last"));
}

void tst_Hook::slowProgram_isKilledWithItsChildren()
{
    const QString command = shell(
        QStringLiteral("sleep 600 & echo $! > $0/child; echo $$ > $0/pid; echo waiting >&2; wait"));
    QCOMPARE(runHook(command, "{}", 1), QStringLiteral("it was killed after 1 s: waiting"));
    QVERIFY(!content(path("child")).isEmpty());
    QVERIFY(isDead(content(path("pid"))));
    QTRY_VERIFY_WITH_TIMEOUT(isDead(content(path("child"))), longestWait);
}

void tst_Hook::programThatNeverReads_isKilled()
{
    QCOMPARE(runHook(QStringLiteral("/bin/sleep 600"), QByteArray(1 << 20, '1'), 1),
             QStringLiteral("it was killed after 1 s"));
}

/// It holds standard error open for longer than the limit.
void tst_Hook::childLeftBehind_isNotWaitedFor()
{
    const QString command = shell(QStringLiteral("sleep 600 & echo $! > $0/child"));
    QCOMPARE(runHook(command, "{}", generous), QString());
    const QByteArray child = content(path("child"));
    QVERIFY(!isDead(child));
    QCOMPARE(::kill(child.trimmed().toInt(), SIGKILL), 0);
}

void tst_Hook::output_isDropped()
{
    std::fflush(stdout);
    const int kept = ::dup(STDOUT_FILENO);
    const int file = ::open(path("output").toLocal8Bit().constData(), O_WRONLY | O_CREAT, 0600);
    QVERIFY(kept >= 0 && file >= 0 && ::dup2(file, STDOUT_FILENO) >= 0);
    const QString trouble = runHook(QStringLiteral("/bin/echo loud"), "{}", generous);
    std::fflush(stdout);
    ::dup2(kept, STDOUT_FILENO);
    ::close(kept);
    ::close(file);
    QCOMPARE(trouble, QString());
    QVERIFY(QFile::exists(path("output")));
    QCOMPARE(content(path("output")), QByteArray());
}

QTEST_GUILESS_MAIN(tst_Hook)
#include "tst_hook.moc"
