// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The example of a hook makes a mail of the gate's record.
#include "host/gate/gatefailure.h"
#include "host/gate/gaterecord.h"
#include "host/gate/hook.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class tst_MailHook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void refusal_tellsWhatToDo();
    void release_tellsWhoAndWhy();
    void lateness_isNoRefusal();
    void failure_tellsItsReason();
    void strangeName_makesNoHeader();
    void sendmailThatFails_isAWarning();
    void missingSendmail_isAWarning();

private:
    QString sent(const QByteArray &json, const QString &options = QString());
    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }
    void writeSendmail(const QByteArray &script) const;

    QTemporaryDir folder;
    QByteArray systemPath;
    QString trouble;
};

namespace {

GateRecord refusedRecord()
{
    GateRecord record;
    record.name = QStringLiteral("20261122T124002Z-0123456789ab");
    record.outcome = GateRecord::Refused;
    record.when = QDateTime::fromString(QStringLiteral("2026-11-22T12:40:02.345Z"),
                                        Qt::ISODateWithMs);
    record.exported = {QStringLiteral("ron.data"), QStringLiteral("0123"), 5000, 12};
    record.reasons = {{QStringLiteral("limit:ended"), QStringLiteral("too many \"ends\""),
                       QStringLiteral("ask the HR department")},
                      {QStringLiteral("E-CELL-DATE"), QStringLiteral("no date"), QString()}};
    return record;
}

} // namespace

void tst_MailHook::initTestCase()
{
    QVERIFY(folder.isValid());
    systemPath = qgetenv("PATH");
    writeSendmail("#!/bin/sh\necho \"$@\" > '" + path("arguments").toUtf8() + "'\ncat > '"
                  + path("mail").toUtf8() + "'\n");
}

void tst_MailHook::cleanup()
{
    qputenv("PATH", systemPath);
    QFile::remove(path("mail"));
}

void tst_MailHook::writeSendmail(const QByteArray &script) const
{
    QFile file(path("sendmail"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(script);
    file.close();
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                | QFileDevice::ExeOwner));
}

/// The mail that the machine's sendmail gets.
QString tst_MailHook::sent(const QByteArray &json, const QString &options)
{
    qputenv("PATH", folder.path().toUtf8() + ':' + systemPath);
    trouble = runHook(QStringLiteral("%1/examples/hooks/mail.py %2 hr@example.org it@example.org")
                          .arg(QStringLiteral(TALVENHR_SOURCE_FOLDER), options),
                      json, 60);
    QFile file(path("mail"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void tst_MailHook::refusal_tellsWhatToDo()
{
    const QString mail = sent(gateRecordJson(refusedRecord()));
    QCOMPARE(trouble, QString());
    const QStringList parts = mail.split(QStringLiteral("\n\n"));
    QVERIFY(parts.constFirst().contains(QStringLiteral("To: hr@example.org, it@example.org\n")));
    QVERIFY(parts.constFirst().contains(QRegularExpression(
        QStringLiteral("\nSubject: \\[talvenhr .*\\] export refused: ron.data"))));
    QCOMPARE(
        parts.mid(1),
        (QStringList {
            QStringLiteral("ron.data, 12 lines, 5000 bytes"),
            QStringLiteral("refused at 2026-11-22T12:40:02.345Z, filed as "
                           "20261122T124002Z-0123456789ab"),
            QStringLiteral("* too many \"ends\" (limit:ended)"),
            QStringLiteral("  What to do: ask the HR department"),
            QStringLiteral("* no date (E-CELL-DATE)"),
            QStringLiteral("To let it through in spite of all of this:\n  talvenhr gate --release "
                           "20261122T124002Z-0123456789ab --reason \"...\"\n")}));
    // Where only limits are exceeded, they come first.
    GateRecord record = refusedRecord();
    record.reasons.removeLast();
    record.limits = {{{QStringLiteral("ended"), 10, false}, 10, 31},
                     {{QStringLiteral("added"), 10, false}, 10, 10}};
    QVERIFY(sent(gateRecordJson(record))
                .contains(QStringLiteral("If that is right:\n  talvenhr gate --allow ended=31 "
                                         "20261122T124002Z-0123456789ab --reason \"...\"\n\n")));
    record.reasons.append({QStringLiteral("E-FILE-CUT"), QStringLiteral("x"), QString()});
    QVERIFY(!sent(gateRecordJson(record)).contains(QStringLiteral("talvenhr gate")));
    QFile arguments(path("arguments"));
    QVERIFY(arguments.open(QIODevice::ReadOnly));
    QCOMPARE(arguments.readAll(), QByteArray("-t -i\n"));
}

void tst_MailHook::release_tellsWhoAndWhy()
{
    GateRecord record = refusedRecord();
    record.outcome = GateRecord::Passed;
    record.release = Release {QStringLiteral("anna"), QStringLiteral("branch closed"), {}};
    const QString mail = sent(gateRecordJson(record));
    QVERIFY(mail.contains(QStringLiteral("] export passed: ron.data\n")));
    QVERIFY(mail.contains(QStringLiteral("\nLet through by anna: branch closed\n")));
    QVERIFY(!mail.contains(QStringLiteral("--release")));
}

void tst_MailHook::lateness_isNoRefusal()
{
    const QString mail = sent(gateRecordJson(refusedRecord()), QStringLiteral("--late"));
    QVERIFY(mail.contains(QStringLiteral("] no export since ron.data\n")));
    QVERIFY(mail.contains(QStringLiteral("was delivered at 2026-11-22T12:40:02.345Z.")));
    QVERIFY(!mail.contains(QStringLiteral("refused")));
    const QString never = sent("null\n", QStringLiteral("--late"));
    QCOMPARE(trouble, QString());
    QVERIFY(never.contains(QStringLiteral("] no export yet\n")));
    QVERIFY(never.contains(QStringLiteral("No export was ever delivered.")));
}

void tst_MailHook::failure_tellsItsReason()
{
    const QDateTime when({2026, 11, 22}, {3, 0, 7}, Qt::UTC);
    const QString mail = sent(
        gateFailureJson({ExitDatabase, QStringLiteral("no \"database\" answers")}, when));
    QCOMPARE(trouble, QString());
    QVERIFY2(mail.contains(QStringLiteral("] the gate failed\n")), qPrintable(mail));
    QVERIFY(mail.contains(QStringLiteral("at 2026-11-22T03:00:07Z (exit code 3):\n")));
    QVERIFY(mail.contains(QStringLiteral("\n* no \"database\" answers\n")));
}

/// Whoever may deliver a file gives it its name.
void tst_MailHook::strangeName_makesNoHeader()
{
    GateRecord record = refusedRecord();
    record.exported.name = QStringLiteral("ron\nBcc: other@example.org");
    const QString header = sent(gateRecordJson(record)).section(QStringLiteral("\n\n"), 0, 0);
    QCOMPARE(trouble, QString());
    QVERIFY(header.contains(QStringLiteral("ron?Bcc: other@example.org")));
    QVERIFY(!header.contains(QStringLiteral("\nBcc")));
}

void tst_MailHook::sendmailThatFails_isAWarning()
{
    const QByteArray kept = [this] {
        QFile file(path("sendmail"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    writeSendmail("#!/bin/sh\ncat > /dev/null\necho queue is full >&2\nexit 75\n");
    sent(gateRecordJson(refusedRecord()));
    writeSendmail(kept);
    QCOMPARE(trouble, QStringLiteral("exit code 75: queue is full"));
}

void tst_MailHook::missingSendmail_isAWarning()
{
    if (QFile::exists(QStringLiteral("/usr/sbin/sendmail")))
        QSKIP("this machine has one", );
    QVERIFY(QFile::rename(path("sendmail"), path("kept")));
    sent(gateRecordJson(refusedRecord()));
    QVERIFY(QFile::rename(path("kept"), path("sendmail")));
    QCOMPARE(trouble, QStringLiteral("exit code 1: there is no sendmail"));
}

QTEST_GUILESS_MAIN(tst_MailHook)
#include "tst_mailhook.moc"
