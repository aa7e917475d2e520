// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A report as text and as JSON.
#include "host/base/oneline.h"
#include "host/report/jsonreport.h"
#include "host/report/progressbar.h"
#include "host/report/report.h"
#include "host/report/textreport.h"

#include <QtTest>

namespace {

Report sampleReport()
{
    Section facts;
    facts.title = QStringLiteral("Facts");
    facts.figures = {
        {QStringLiteral("lines"), QStringLiteral("Lines"), 12, {}},
        {QStringLiteral("sound"), QStringLiteral("Is it sound"), true, QStringLiteral("yes")},
        {QStringLiteral("secret"), QString(), 3.5, {}}};
    Section fates;
    fates.name = QStringLiteral("fates");
    fates.figures = {{QStringLiteral("taken"), QStringLiteral("Taken"), 11, {}}};
    Section people;
    people.name = QStringLiteral("people");
    people.table.columns = {{QStringLiteral("pamId"), QStringLiteral("Person")},
                            {QStringLiteral("name"), QStringLiteral("Name")}};
    people.table.rows = {{QStringLiteral("4711.1"), QStringLiteral("Žofia \"Z\" \x1b[1m")},
                         {QStringLiteral("5.1"), QVariant()}};
    return {QStringLiteral("talvenhr.sample/1"),
            {facts, fates, people},
            {ExitErrors, QStringLiteral("one person is lost")}};
}

} // namespace

class tst_Report : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progressBar_showsATextUntilItChanges();
    void text();
    void text_keepsToTheWidth();
    void json();
    void json_values_data();
    void json_values();
};

void tst_Report::text()
{
    QCOMPARE(textReport(sampleReport(), 80),
             QStringLiteral("Facts\n"
                            "Lines        12\n"
                            "Is it sound  yes\n"
                            "\n"
                            "Taken  11\n"
                            "\n"
                            "Person  Name\n"
                            "4711.1  Žofia \"Z\" \\x1b[1m\n"
                            "5.1\n"
                            "\n"
                            "one person is lost\n"));
}

void tst_Report::text_keepsToTheWidth()
{
    Report report = sampleReport();
    report.verdict.text = QStringLiteral("a verdict that does not fit into a line");
    report.sections[2].table.rows.append(
        {QStringLiteral("6.1"), QStringLiteral("a name that is longer than all the others")});
    const QStringList lines = textReport(report, 24).split(QLatin1Char('\n'));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 24, qPrintable(line));
    QVERIFY(lines.contains(QStringLiteral("        longer than all")));
}

void tst_Report::json()
{
    QCOMPARE(QString::fromUtf8(jsonReport(sampleReport())),
             QStringLiteral("{\"format\":\"talvenhr.sample/1\","
                            "\"lines\":12,\"sound\":true,\"secret\":3.5,"
                            "\"fates\":{\"taken\":11},"
                            "\"people\":["
                            "{\"pamId\":\"4711.1\",\"name\":\"Žofia \\\"Z\\\" \\u001b[1m\"},"
                            "{\"pamId\":\"5.1\",\"name\":null}]}"));
}

void tst_Report::json_values_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("null") << QVariant() << QByteArray("null");
    QTest::newRow("number") << QVariant(-7) << QByteArray("-7");
    QTest::newRow("large") << QVariant(4294967295u) << QByteArray("4294967295");
    QTest::newRow("fraction") << QVariant(0.25) << QByteArray("0.25");
    QTest::newRow("list") << QVariant(QVariantList {1, QStringLiteral("a")})
                          << QByteArray("[1,\"a\"]");
    QTest::newRow("line end") << QVariant(QStringLiteral("a\nb")) << QByteArray("\"a\\nb\"");
}

void tst_Report::json_values()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, json);
    QCOMPARE(jsonValue(value), json);
}

void tst_Report::progressBar_showsATextUntilItChanges()
{
    ProgressBar bar;
    QElapsedTimer lasting;
    lasting.start();
    QCOMPARE(bar.wipe(), QByteArray());
    QCOMPARE(bar.draw(QStringLiteral("making"), lasting), QByteArray("\r\033[Kmaking, 0 s"));
    QCOMPARE(bar.draw(QStringLiteral("making"), lasting), QByteArray());
    QCOMPARE(bar.draw(QStringLiteral("filling"), lasting), QByteArray("\r\033[Kfilling, 0 s"));
    QCOMPARE(bar.wipe(), QByteArray("\r\033[K"));
    QCOMPARE(bar.draw(QStringLiteral("filling"), lasting), QByteArray("\r\033[Kfilling, 0 s"));
    // A line end in it would leave a piece behind.
    const QByteArray cut = bar.draw(QString(5000, QLatin1Char('x')), lasting);
    QVERIFY(cut.endsWith("x, 0 s") && cut.size() < 1000);
}

QTEST_APPLESS_MAIN(tst_Report)
#include "tst_report.moc"
