// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The sample company on a server, to be damaged, looked at, mended and restored.
#include "support/doctor/doctorfixture.h"

#include "host/doctor/grants.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QtTest>

DoctorFixture::DoctorFixture(const DoctorLook &diagnosisLook) :
    DatabaseFixture(TestDatabase::Sample),
    look(diagnosisLook)
{ }

void DoctorFixture::prepare()
{
    // Nothing of it has to outlive the server.
    execute({QStringLiteral("SET GLOBAL innodb_flush_log_at_trx_commit = 0"),
             QStringLiteral("SET foreign_key_checks = 0, sql_mode = ''"),
             QStringLiteral("CREATE DATABASE pristine"),
             QStringLiteral("CREATE USER 'look'@'localhost'")});
    execute(grantStatements(QStringLiteral("'look'@'localhost'"), database->databaseName(),
                            GrantPurpose::Look));
    const QStringList tables = database->rows(QStringLiteral("SHOW TABLES"));
    for (const QString &table : tables) {
        forms.insert(table, formOf(table));
        database->execute(QStringLiteral("CREATE TABLE pristine.`%1` LIKE `%1`").arg(table));
        database->execute(
            QStringLiteral("INSERT INTO pristine.`%1` SELECT * FROM `%1`").arg(table));
    }
}

Diagnosis DoctorFixture::diagnosis(const QString &user)
{
    Diagnosis found;
    const QString name = QStringLiteral("diagnosis");
    {
        QSqlDatabase handle = QSqlDatabase::cloneDatabase(database->handle(), name);
        handle.setUserName(user);
        if (handle.open())
            found = look(handle);
        else
            QTest::qFail(qPrintable(handle.lastError().text()), __FILE__, __LINE__);
    }
    QSqlDatabase::removeDatabase(name);
    return found;
}

void DoctorFixture::addSqlModes()
{
    QTest::addColumn<QString>("mode");
    for (const char *mode : {"", "TRADITIONAL", "ANSI,ONLY_FULL_GROUP_BY", "NO_BACKSLASH_ESCAPES"})
        QTest::newRow(mode) << QString::fromLatin1(mode);
}

void DoctorFixture::setSqlMode(const QString &mode)
{
    database->execute(QStringLiteral("SET GLOBAL sql_mode = '%1'").arg(mode));
}

void DoctorFixture::execute(const QStringList &statements)
{
    for (const QString &statement : statements)
        database->execute(statement);
}

bool DoctorFixture::mend(const Diagnosis &diagnosis, const QMap<QString, QString> &words)
{
    static const QRegularExpression sql(
        QStringLiteral("(?:^|; then: )((?:ALTER|CREATE|DELETE|GRANT|INSERT|REVOKE|UPDATE) .*)$"));
    for (const Finding &finding : diagnosis.findings) {
        QString remedy = sql.match(finding.remedy).captured(1);
        if (remedy.isEmpty())
            return false;
        for (auto it = words.begin(); it != words.end(); ++it)
            remedy.replace(it.key(), it.value());
        execute(remedy.split(QStringLiteral("; ")));
    }
    return true;
}

void DoctorFixture::restoreTables()
{
    const QStringList triggers = database->rows(QStringLiteral(
        "SELECT trigger_name FROM information_schema.triggers WHERE trigger_schema = DATABASE()"));
    for (const QString &trigger : triggers)
        database->execute(QStringLiteral("DROP TRIGGER `%1`").arg(trigger));
    const QStringList present = database->rows(QStringLiteral("SHOW TABLES"));
    for (const QString &table : present) {
        if (formOf(table) != forms.value(table))
            database->execute(QStringLiteral("DROP TABLE `%1`").arg(table));
    }
    for (auto form = forms.begin(); form != forms.end(); ++form)
        restore(form.key());
}

void DoctorFixture::restore(const QString &table)
{
    database->execute(
        QStringLiteral("CREATE TABLE IF NOT EXISTS `%1` LIKE pristine.`%1`").arg(table));
    const QStringList sums = database->rows(
        QStringLiteral("CHECKSUM TABLE `%1`, pristine.`%1`").arg(table));
    if (sums.first().section(QLatin1Char('|'), 1) == sums.last().section(QLatin1Char('|'), 1))
        return;
    database->execute(QStringLiteral("DELETE FROM `%1`").arg(table));
    database->execute(QStringLiteral("INSERT INTO `%1` SELECT * FROM pristine.`%1`").arg(table));
}

/// As CREATE TABLE states it, without the next number of a generated key.
QString DoctorFixture::formOf(const QString &table)
{
    static const QRegularExpression counter(QStringLiteral(" AUTO_INCREMENT=\\d+"));
    return database->rows(QStringLiteral("SHOW CREATE TABLE `%1`").arg(table))
        .first()
        .remove(counter);
}

QStringList codesOf(const Diagnosis &diagnosis)
{
    QStringList codes;
    for (const Finding &finding : diagnosis.findings)
        codes.append(finding.code);
    return codes;
}

QStringList unknownOf(const Diagnosis &diagnosis)
{
    QStringList abouts;
    for (const Unseen &unseen : diagnosis.unknown)
        abouts.append(unseen.about);
    return abouts;
}

QString toText(const Diagnosis &diagnosis)
{
    QStringList lines;
    for (const Finding &finding : diagnosis.findings)
        lines.append(QStringLiteral("%1: %2").arg(finding.about, codedLine(finding)));
    for (const Unseen &unseen : diagnosis.unknown)
        lines.append(QStringLiteral("unknown %1: %2").arg(unseen.about, unseen.reason));
    return lines.join(QLatin1Char('\n'));
}
