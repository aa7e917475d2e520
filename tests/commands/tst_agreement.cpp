// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is rehearsed is what the pass that follows does, row for row.
//
// Environment: TALVENHR_COMPANIES, how many generated companies (default: 1); TALVENHR_SEED, the
// first of their seeds (default: 1).
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

const int days = 2;

int environmentNumber(const char *name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

QJsonObject objectOf(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

/// The one file of changes in the folder.
QJsonObject onlyChanges(const QString &folder)
{
    const QStringList names = QDir(folder).entryList({QStringLiteral("*.changes.json")});
    QFile file(QDir(folder).filePath(names.value(0)));
    return names.size() == 1 && file.open(QIODevice::ReadOnly) ? objectOf(file.readAll())
                                                               : QJsonObject();
}

} // namespace

class tst_Agreement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rehearsedChanges_areThoseOfThePass_data();
    void rehearsedChanges_areThoseOfThePass();
};

void tst_Agreement::rehearsedChanges_areThoseOfThePass_data()
{
    QTest::addColumn<int>("seed");
    const int first = environmentNumber("TALVENHR_SEED", 1);
    for (int i = 0; i < environmentNumber("TALVENHR_COMPANIES", 1); ++i)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(first + i))) << first + i;
}

void tst_Agreement::rehearsedChanges_areThoseOfThePass()
{
    QFETCH(int, seed);
    const Site site;
    const QString company = site.path(QStringLiteral("company"));
    TalvenhrProcess sandbox({QStringLiteral("sandbox"), company, QStringLiteral("--people"),
                             QString::number(5 + seed * 37 % 196), QStringLiteral("--seed"),
                             QString::number(seed), QStringLiteral("--days"),
                             QString::number(days)});
    QCOMPARE(sandbox.finish(), 0);
    const QDir exports(company + QStringLiteral("/exports"));
    const QStringList names = exports.entryList(QDir::Files, QDir::Name);
    QCOMPARE(names.size(), days);
    for (const QString &name : names) {
        QFile::remove(site.exportFile());
        QVERIFY(QFile::copy(exports.filePath(name), site.exportFile()));
        const bool force = (seed + names.indexOf(name)) % 3 == 0;
        const QStringList where {QStringLiteral("--private-db"), company + QStringLiteral("/db"),
                                 QStringLiteral("--data-dir"), site.dataDir()};
        const QStringList forced = force ? QStringList(QStringLiteral("--force")) : QStringList();

        TalvenhrProcess rehearse(QStringList {QStringLiteral("rehearse"), QStringLiteral("--json"),
                                              QStringLiteral("--no-limits")}
                                 + where + forced);
        const int rehearsedCode = rehearse.finish();
        QVERIFY2(rehearsedCode == 0 || rehearsedCode == 1, qPrintable(rehearse.lastLine()));
        const QJsonObject rehearsed = objectOf(rehearse.output().toUtf8());

        const QString folder = site.path(QStringLiteral("changes-") + name);
        TalvenhrProcess run(QStringList {QStringLiteral("run"), QStringLiteral("--once"),
                                         QStringLiteral("--changes"), folder}
                            + where + forced);
        run.finish();
        const QJsonObject real = onlyChanges(folder);
        QVERIFY(!real.isEmpty());
        QCOMPARE(rehearsed.value(QStringLiteral("summary")), real.value(QStringLiteral("summary")));
        const QString hash = real.value(QStringLiteral("plan"))[QLatin1String("change")].toString();
        QVERIFY(!hash.isEmpty());
        QCOMPARE(rehearsed.value(QStringLiteral("plan"))[QLatin1String("change")].toString(), hash);
    }
}

QTEST_GUILESS_MAIN(tst_Agreement)
#include "tst_agreement.moc"
