// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Damaged exports of generated companies get the finding that they are owed where the damage is,
// and sound ones get none.
//
// Environment: TALVENHR_COMPANIES, how many sound companies (default: 1000); the damages take two.
#include "host/company/damage.h"
#include "host/company/exportwriter.h"
#include "host/company/life.h"
#include "host/exportcheck/comparison.h"
#include "host/exportcheck/exportcheck.h"

#include <QBuffer>
#include <QtTest>

namespace {

const QDate today(2026, 3, 17);

Company company(quint32 seed)
{
    CompanyPlan plan;
    plan.people = 40 + static_cast<int>(seed % 60);
    plan.seed = seed;
    plan.day = today;
    return generatedCompany(plan);
}

ExportCheck check(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    static StatementTrial trial;
    ExportCheckSettings settings;
    settings.today = today;
    settings.trial = &trial;
    return checkExport(&buffer, settings);
}

/// What is no note.
QStringList complaints(const ExportFindings &findings)
{
    QStringList texts;
    for (const ExportFinding &found : findings) {
        if (found.kind->severity() != Finding::Note)
            texts.append(
                QStringLiteral("%1 in %2: %3")
                    .arg(QLatin1String(found.kind->code), told(found).about, told(found).text));
    }
    return texts;
}

/// Damages that change nothing for the plugin, or that only a database can tell.
const QStringList unseen {QStringLiteral("comment-signs"),
                          QStringLiteral("double-quote"),
                          QStringLiteral("backtick"),
                          QStringLiteral("header-missing"),
                          QStringLiteral("blank-name"),
                          QStringLiteral("text-too-long"),
                          QStringLiteral("number-and-ordinal-exchanged")};

/// The finding stands at the line; one of the file, or of a column of all lines, at any place.
bool isAt(const ExportFinding &found, const Hurt &hurt)
{
    if (hurt.line == 0)
        return hurt.column == 0 || found.column == 0 || found.column == hurt.column;
    return found.line == hurt.line || found.lines.contains(hurt.line) || found.line == 0;
}

bool holds(const ExportFindings &findings, const QString &code, const Hurt &hurt)
{
    return std::any_of(findings.cbegin(), findings.cend(), [&](const ExportFinding &found) {
        return code == QLatin1String(found.kind->code) && isAt(found, hurt);
    });
}

} // namespace

class tst_ExportDamage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void damage_getsItsFinding_data();
    void damage_getsItsFinding();
    void fates_addUpToTheLines();
    void soundExports_getNone();
    void soundDays_getNoneAgainstTheDayBefore();
};

void tst_ExportDamage::damage_getsItsFinding_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = damageNames();
    QVERIFY(names.size() >= 80);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void tst_ExportDamage::damage_getsItsFinding()
{
    QFETCH(QString, name);
    for (quint32 seed = 1; seed <= 2; ++seed) {
        const QByteArray sound = exportText(company(seed));
        const DamagedExport hurt = damaged(sound, name, seed);
        const ExportCheck found = check(hurt.text);
        if (hurt.againstOnly) {
            const ExportComparison compared = compareExports(found.digest, check(sound).digest);
            if (unseen.contains(name))
                QCOMPARE(complaints(compared.findings), QStringList());
            else
                QVERIFY2(holds(compared.findings, hurt.finding, {0, 0}),
                         qPrintable(complaints(compared.findings).join(QLatin1Char('\n'))));
            continue;
        }
        for (const Hurt &place : hurt.hurts) {
            // The second header of a file that is there twice is no person.
            const bool isHeader = name == QLatin1String("file-twice")
                && holds(found.findings, QStringLiteral("W-LINE-HEADER"), place);
            QVERIFY2(isHeader || holds(found.findings, hurt.finding, place),
                     qPrintable(QStringLiteral("%1 at %2:%3, but: %4")
                                    .arg(hurt.finding)
                                    .arg(place.line)
                                    .arg(place.column)
                                    .arg(complaints(found.findings).join(QLatin1Char('\n')))));
        }
    }
}

void tst_ExportDamage::fates_addUpToTheLines()
{
    const QByteArray sound = exportText(company(3));
    const QStringList names = damageNames();
    for (const QString &name : names) {
        const DamagedExport hurt = damaged(sound, name, 7);
        const int unended = hurt.text.isEmpty() || hurt.text.endsWith('\n') ? 0 : 1;
        QCOMPARE(check(hurt.text).fates.lines(), hurt.text.count('\n') + unended);
    }
}

void tst_ExportDamage::soundExports_getNone()
{
    const int companies = qEnvironmentVariableIsSet("TALVENHR_COMPANIES")
        ? qEnvironmentVariableIntValue("TALVENHR_COMPANIES")
        : 1000;
    for (int seed = 1; seed <= companies; ++seed) {
        const ExportCheck found = check(exportText(company(static_cast<quint32>(seed))));
        QVERIFY(found.fates.taken > 0);
        const QStringList wrong = complaints(found.findings);
        QVERIFY2(
            wrong.isEmpty(),
            qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(wrong.join(QLatin1Char('\n')))));
    }
}

void tst_ExportDamage::soundDays_getNoneAgainstTheDayBefore()
{
    for (quint32 seed = 1; seed <= 5; ++seed) {
        Life life(company(seed), seed);
        ExportDigest before = check(exportText(life.company())).digest;
        for (int day = 1; day <= 20; ++day) {
            life.nextDay();
            const ExportDigest now = check(exportText(life.company())).digest;
            const QStringList wrong = complaints(compareExports(now, before).findings);
            QVERIFY2(wrong.isEmpty(),
                     qPrintable(QStringLiteral("seed %1, day %2: %3")
                                    .arg(seed)
                                    .arg(day)
                                    .arg(wrong.join(QLatin1Char('\n')))));
            before = now;
        }
    }
}

QTEST_GUILESS_MAIN(tst_ExportDamage)
#include "tst_exportdamage.moc"
