// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The catalogue of findings, and the page that is made from it.
#include "host/catalogue/findings.h"
#include "host/catalogue/findingsdocument.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

class tst_Findings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codes_areOneToAKindAndTellTheSeverity();
    void examples_fillEveryPlace();
    void texts_endWithoutAFullStop();
    void values_mayLookLikePlaces();
    void codes_areUsedByTheProgram();
    void document_isTheCommittedOne();
};

namespace {

QVector<FindingKind> allKinds()
{
    QVector<FindingKind> kinds;
    for (const FindingTopic &topic : findingTopics()) {
        for (const FindingKind &kind : topic.kinds)
            kinds.append(kind);
    }
    return kinds;
}

/// All texts of the kind.
QStringList textsOf(const FindingKind &kind)
{
    QStringList texts;
    for (const char *text : {kind.title, kind.text, kind.becomes, kind.remedy}) {
        if (text)
            texts.append(QString::fromUtf8(text));
    }
    return texts;
}

/// The sources of the program but for its catalogue, as one text.
QByteArray sources()
{
    QByteArray text;
    QDirIterator files(QStringLiteral(TALVENHR_SOURCE_FOLDER "/host"), {QStringLiteral("*.cpp")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.fileName().contains(QLatin1String("/catalogue/"))
            && file.open(QIODevice::ReadOnly))
            text += file.readAll();
    }
    return text;
}

} // namespace

void tst_Findings::codes_areOneToAKindAndTellTheSeverity()
{
    const QRegularExpression form(QStringLiteral("^[EWN]-[A-Z]+-[A-Z0-9]+$"));
    QSet<QString> codes;
    const QVector<FindingKind> kinds = allKinds();
    for (const FindingKind &kind : kinds) {
        const QString code = QLatin1String(kind.code);
        QVERIFY2(form.match(code).hasMatch(), kind.code);
        QVERIFY2(!codes.contains(code), kind.code);
        codes.insert(code);
        const QString letter = severityName(kind.severity()).left(1).toUpper();
        QCOMPARE(code.left(1), letter);
    }
    QVERIFY(codes.size() > 30);
}

void tst_Findings::examples_fillEveryPlace()
{
    const QRegularExpression place(QStringLiteral("%([1-9])"));
    const QVector<FindingKind> kinds = allKinds();
    for (const FindingKind &kind : kinds) {
        int highest = 0;
        const QStringList texts = textsOf(kind);
        for (const QString &text : texts) {
            auto places = place.globalMatch(text);
            while (places.hasNext())
                highest = qMax(highest, places.next().captured(1).toInt());
        }
        const int examples = kind.examples
            ? QString::fromUtf8(kind.examples).count(QLatin1Char('\n')) + 1
            : 0;
        QVERIFY2(examples == highest, kind.code);
    }
}

void tst_Findings::texts_endWithoutAFullStop()
{
    const QVector<FindingKind> kinds = allKinds();
    for (const FindingKind &kind : kinds) {
        const QStringList texts = textsOf(kind);
        for (const QString &text : texts)
            QVERIFY2(!text.isEmpty() && !text.endsWith(QLatin1Char('.')), kind.code);
    }
}

void tst_Findings::values_mayLookLikePlaces()
{
    const Finding made = finding(
        "E-CELL-RANGE", QStringLiteral("line 3"),
        {QStringLiteral("%2"), QStringLiteral("%%1"), QStringLiteral("16"), QStringLiteral("%L4")});
    QCOMPARE(made.text, QStringLiteral("%2 '%%1' does not fit 16 bits"));
    QCOMPARE(made.becomes, QStringLiteral("it is read as %L4"));
    QCOMPARE(made.severity, Finding::Error);
    QCOMPARE(made.about, QStringLiteral("line 3"));
}

void tst_Findings::codes_areUsedByTheProgram()
{
    const QByteArray text = sources();
    QVERIFY(!text.isEmpty());
    const QVector<FindingKind> kinds = allKinds();
    for (const FindingKind &kind : kinds)
        QVERIFY2(text.contains(QByteArray("\"") + kind.code + '"'), kind.code);
}

void tst_Findings::document_isTheCommittedOne()
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/docs/findings.md"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QStringList committed = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    const QStringList written = findingsDocument().split(QLatin1Char('\n'));
    for (int i = 0; i < qMin(committed.size(), written.size()); ++i)
        QCOMPARE(committed.at(i), written.at(i));
    QCOMPARE(committed.size(), written.size());
}

QTEST_GUILESS_MAIN(tst_Findings)
#include "tst_findings.moc"
