// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is rehearsed is what the pass that follows does, row for row.
//
// Environment: TALVENHR_COMPANIES, how many generated companies (default: 1); TALVENHR_SEED, the
// first of their seeds (default: 1).
#include "support/commands/jsonschema.h"
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
    void outputs_replaceNothingThatIsRead();
    void plan_letsOnlyTheSamePassThrough();
    void rehearsedChanges_areThoseOfThePass_data();
    void rehearsedChanges_areThoseOfThePass();
};

void tst_Agreement::outputs_replaceNothingThatIsRead()
{
    const Site site;
    const QString before = site.readFile(QStringLiteral("ron.data"));
    for (const char *option : {"--html", "--changes"}) {
        TalvenhrProcess program({QStringLiteral("rehearse"), QStringLiteral("--data-dir"),
                                 site.dataDir(), QLatin1String(option), site.exportFile()});
        QCOMPARE(program.finish(), 2);
        QVERIFY(program.lastLine().contains(QStringLiteral("is read, and would be lost")));
    }
    QCOMPARE(site.readFile(QStringLiteral("ron.data")), before);
}

void tst_Agreement::plan_letsOnlyTheSamePassThrough()
{
    Site site;
    site.set({QStringLiteral("syncCommandRun=2")});
    TalvenhrProcess fetched(
        site.runOptions({QStringLiteral("--once"), QStringLiteral("--plan"), QStringLiteral("x")}));
    QCOMPARE(fetched.finish(), 2);
    QVERIFY(fetched.lastLine().contains(QStringLiteral("set syncCommandRun=0 in ")));
    site.set({QStringLiteral("syncCommandRun=0")});
    const QStringList where {QStringLiteral("--private-db"), site.path(QStringLiteral("db")),
                             QStringLiteral("--data-dir"), site.dataDir()};
    // Makes the database.
    TalvenhrProcess first(QStringList {QStringLiteral("run"), QStringLiteral("--once")} + where);
    QCOMPARE(first.finish(), 0);

    site.writeFile(QStringLiteral("ron.data"), Site::employee(7001, QStringLiteral("Daria")));
    TalvenhrProcess rehearse(QStringList {QStringLiteral("rehearse"), QStringLiteral("--quiet")}
                             + where);
    QCOMPARE(rehearse.finish(), 0);
    const QString plan = rehearse.output().section(QStringLiteral("plan: "), 1).trimmed();
    QCOMPARE(plan.size(), 49);
    // The page has the numbers of the document.
    const QString pagePath = site.path(QStringLiteral("page.html"));
    TalvenhrProcess page(QStringList {QStringLiteral("rehearse"), QStringLiteral("--json"),
                                      QStringLiteral("--html"), pagePath}
                         + where);
    QCOMPARE(page.finish(), 0);
    QCOMPARE(schemaFault(page.output().toUtf8(), QStringLiteral("changes")), QString());
    const QString html = site.readFile(QStringLiteral("page.html"));
    const QJsonObject summary
        = objectOf(page.output().toUtf8()).value(QStringLiteral("summary")).toObject();
    QVERIFY(summary.value(QStringLiteral("updated")).toInt() > 0);
    for (auto kind = summary.begin(); kind != summary.end(); ++kind) {
        const QRegularExpression row(QStringLiteral("<th>%1</th>.*<td class=\"number\">%2</td>")
                                         .arg(kind.key())
                                         .arg(kind.value().toInt()));
        const bool isShown = html.contains(QStringLiteral("<th>%1</th>").arg(kind.key()));
        QVERIFY2(!isShown || html.contains(row), qPrintable(kind.key()));
        QVERIFY2(isShown || kind.value().toInt() == 0, qPrintable(kind.key()));
    }
    const QStringList planned = QStringList {QStringLiteral("run"), QStringLiteral("--once"),
                                             QStringLiteral("--plan"), plan}
        + where;

    site.writeFile(QStringLiteral("ron.data"), Site::employee(7001, QStringLiteral("Other")));
    TalvenhrProcess other(planned);
    QCOMPARE(other.finish(), 5);
    QVERIFY2(other.lastLine().contains(QStringLiteral("something else would change now")),
             qPrintable(other.lastLine()));

    site.writeFile(QStringLiteral("ron.data"), Site::employee(7001, QStringLiteral("Daria")));
    TalvenhrProcess same(planned);
    QCOMPARE(same.finish(), 0);
    QVERIFY2(same.lastLine().contains(QStringLiteral("1 pass")), qPrintable(same.lastLine()));
}

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
