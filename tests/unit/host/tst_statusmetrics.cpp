// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as figures.
#include "host/status/folderstatus.h"
#include "host/status/metrics.h"
#include "support/status/madestatus.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

class tst_StatusMetrics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metrics_haveHelpAndTypeOnce();
    void metrics_areThoseOfTheDocument();
    void metrics_areForEverybodyToRead();
};

namespace {

QString sourceFile(const QByteArray &name)
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/") + QString::fromLatin1(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    return QString::fromUtf8(file.readAll());
}

/// The families as rows of the table in docs/status.md.
QStringList documentRows(const QByteArray &metrics)
{
    static const QRegularExpression family(
        QStringLiteral("# HELP (\\S+) (.*)\n# TYPE \\S+ (\\S+)\n"));
    QStringList rows;
    auto found = family.globalMatch(QString::fromUtf8(metrics));
    while (found.hasNext()) {
        const auto match = found.next();
        rows.append(QStringLiteral("| `%1` | %2 | %3 |")
                        .arg(match.captured(1), match.captured(3), match.captured(2)));
    }
    return rows;
}

} // namespace

void tst_StatusMetrics::metrics_haveHelpAndTypeOnce()
{
    const GateFolder folder;
    GateRecord record = rehearsed(folder.record(5, "a"), 4);
    record.findings = {{QStringLiteral("W-\"\\\n"), Finding::Warning, 3}};
    folder.keep(record);
    folder.keep(refused(folder.record(4, "b", GateRecord::Refused)));
    keepPass(folder, 1, toldError());
    Status status = folder.status();
    status.database = DatabaseStatus {true, 12, {}};
    status.lossesAreKnown = true;
    const QStringList lines = QString::fromUtf8(metricsText(status))
                                  .split(QLatin1Char('\n'), QString::SkipEmptyParts);
    const QRegularExpression help(QStringLiteral("^# HELP (talvenhr_[a-z_]+) \\S.*\\.$"));
    const QRegularExpression type(QStringLiteral("^# TYPE (talvenhr_[a-z_]+) (gauge|counter)$"));
    const QRegularExpression sample(
        QStringLiteral("^(talvenhr_[a-z_]+)(\\{([a-z]+=\"([^\"\\\\]|\\\\.)*\",?)+\\})? -?\\d+$"));
    QSet<QString> families;
    for (int i = 0; i < lines.size(); ++i) {
        const auto begun = help.match(lines.at(i));
        if (!begun.hasMatch()) {
            QVERIFY2(sample.match(lines.at(i)).hasMatch(), qPrintable(lines.at(i)));
            continue;
        }
        const QString name = begun.captured(1);
        QVERIFY2(!families.contains(name), qPrintable(name));
        families.insert(name);
        const auto typed = type.match(lines.value(++i));
        QCOMPARE(typed.captured(1), name);
        QCOMPARE(typed.captured(2) == QLatin1String("counter"),
                 name.endsWith(QLatin1String("_total")));
        QCOMPARE(sample.match(lines.value(i + 1)).captured(1), name);
    }
    for (const char *line :
         {"talvenhr_status_level 2", "talvenhr_export_lines{fate=\"taken\"} 11",
          "talvenhr_gate_exports_total{outcome=\"refused\"} 1",
          "talvenhr_gate_refusals_total{reason=\"limit:ended\"} 1",
          "talvenhr_pass_errors{code=\"1062\"} 1", "talvenhr_pass_changes{kind=\"waiting\"} 2",
          "talvenhr_pass_seconds 7", "talvenhr_terminal_queue_rows 12", "talvenhr_lost_people 0",
          "talvenhr_pass_is_forced 1", "talvenhr_last_export_refused 1"})
        QVERIFY2(lines.contains(QLatin1String(line)), line);
    QVERIFY(!lines.join(QLatin1Char(' ')).contains(QStringLiteral("last_success")));
}

/// Alerts and dashboard name no others.
void tst_StatusMetrics::metrics_areThoseOfTheDocument()
{
    const GateFolder folder;
    GateRecord record = rehearsed(folder.record(5, "a"), 4);
    record.findings = {{QStringLiteral("W-CELL-DATE"), Finding::Warning, 3}};
    folder.keep(record);
    folder.keep(refused(folder.record(4, "b", GateRecord::Refused)));
    keepPass(folder, 2, toldError());
    folder.write(QStringLiteral("site/ron.data"), "c", 1);
    Status status = folder.status();
    record.fileTime = status.now;
    status.records.append(record);
    status.database = DatabaseStatus {true, 12, {}};
    status.lossesAreKnown = true;
    status.pass.rows.insert(QStringLiteral("people"), 1);
    status.pass.statements = 7;
    QStringList rows = documentRows(metricsText(status));
    status.pass.summary = KindCounts();
    rows += documentRows(metricsText(status));
    status.pass.source = PassStatus::FromPlace;
    const QByteArray rehearsal = metricsText(status);
    QVERIFY(rehearsal.contains("\ntalvenhr_rehearsal_statements 7\n"));
    QVERIFY(rehearsal.contains("\ntalvenhr_rehearsal_errors{code=\"1062\"} 1\n"));
    QVERIFY(!rehearsal.contains("talvenhr_pass_errors"));
    rows += documentRows(rehearsal);
    rows.removeDuplicates();
    rows.sort();
    const QString page = sourceFile("docs/status.md");
    QStringList told = page.split(QLatin1Char('\n')).filter(QStringLiteral("| `talvenhr_"));
    told.sort();
    QCOMPARE(told, rows);
    for (const char *name : {"alerts.yml", "alerts_test.yml", "dashboard.json"}) {
        const QString text = sourceFile("examples/monitoring/" + QByteArray(name));
        auto used = QRegularExpression(QStringLiteral("talvenhr_[a-z_]+")).globalMatch(text);
        QVERIFY(used.hasNext());
        while (used.hasNext()) {
            const QString metric = QStringLiteral("| `%1` |").arg(used.next().captured());
            QVERIFY2(page.contains(metric), qPrintable(metric));
        }
    }
}

void tst_StatusMetrics::metrics_areForEverybodyToRead()
{
    const GateFolder folder;
    const QString path = folder.path(QStringLiteral("talvenhr.prom"));
    QVERIFY(!writeMetrics(folder.status(), path));
    QVERIFY(QFile::permissions(path) & QFileDevice::ReadOther);
    QVERIFY(!(QFile::permissions(path) & QFileDevice::WriteOther));
    QCOMPARE(folder.read(QStringLiteral("talvenhr.prom")), metricsText(folder.status()));
    QVERIFY(writeMetrics(folder.status(), folder.path(QStringLiteral("no/folder"))));
}

QTEST_GUILESS_MAIN(tst_StatusMetrics)
#include "tst_statusmetrics.moc"
