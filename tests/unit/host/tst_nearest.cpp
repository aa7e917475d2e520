// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What somebody meant who wrote a word that nobody knows.
#include "host/base/nearest.h"

#include <QtTest>

class tst_Nearest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nearest_findsTheWord_data();
    void nearest_findsTheWord();
    void didYouMean_asksOnlyWhenOneIsNear();
};

void tst_Nearest::nearest_findsTheWord_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("meant");
    const auto row = [](const char *word, const char *meant) {
        QTest::newRow(word) << word << meant;
    };
    row("host", "host");
    row("hots", "host"); // exchanged
    row("hst", "host"); // left out
    row("hoost", "host"); // doubled
    row("HOST", "host");
    row("pasword-fiel", "password-file");
    row("prot", "port"); // nearer than "host"
    row("x", "");
    row("", "");
    row("elephants", "");
}

void tst_Nearest::nearest_findsTheWord()
{
    QFETCH(QString, word);
    QFETCH(QString, meant);
    const QStringList known {QStringLiteral("host"), QStringLiteral("port"),
                             QStringLiteral("password-file")};
    QCOMPARE(nearest(word, known), meant);
}

void tst_Nearest::didYouMean_asksOnlyWhenOneIsNear()
{
    const QStringList known {QStringLiteral("host")};
    QCOMPARE(didYouMean(QStringLiteral("hots"), known), QStringLiteral(" (did you mean 'host'?)"));
    QCOMPARE(didYouMean(QStringLiteral("elephant"), known), QString());
}

QTEST_APPLESS_MAIN(tst_Nearest)
#include "tst_nearest.moc"
