// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass needs of the schema, against the statements of the catalogue.
#include "host/catalogue/neededschema.h"
#include "host/catalogue/statementforms.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

class tst_NeededSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objects_areThoseOfTheStatements();
    void columns_areNamedInStatements();
    void writtenColumns_comeFromTheForms_data();
    void writtenColumns_comeFromTheForms();
    void rights_haveColumns();
    void lookups_fillTheirForms();
    void lookups_areOfEveryStatementThatSearches();
};

namespace {

QString formsOf(PassStatement statement)
{
    QStringList forms;
    for (const StatementForm &row : statementForms()) {
        if (row.statement == statement)
            forms.append(QString::fromLatin1(row.form));
    }
    return forms.join(QLatin1Char('\n'));
}

QStringList columnsWith(const QString &table, bool NeededColumn::*flag)
{
    QStringList names;
    for (const NeededColumn &column : neededTable(table)->columns) {
        if (column.*flag)
            names.append(column.name);
    }
    return names;
}

} // namespace

void tst_NeededSchema::objects_areThoseOfTheStatements()
{
    QSet<QString> needed;
    for (const NeededTable &table : neededTables())
        needed.insert(table.name);
    for (const NeededRoutine &routine : neededRoutines())
        needed.insert(routine.name);
    QSet<QString> named;
    for (const StatementFacts &facts : allStatements()) {
        for (const StatementNeed &need : facts.needs)
            named.insert(need.object);
    }
    QCOMPARE(needed, named);
}

void tst_NeededSchema::columns_areNamedInStatements()
{
    for (const NeededTable &table : neededTables()) {
        QString texts;
        for (const StatementFacts &facts : allStatements()) {
            for (const StatementNeed &need : facts.needs) {
                if (need.object == table.name || need.object == QLatin1String("updateTermsSync"))
                    texts += formsOf(facts.statement);
            }
        }
        for (const NeededColumn &column : table.columns) {
            const QRegularExpression name(QStringLiteral("\\b%1\\b").arg(column.name));
            QVERIFY2(name.match(texts).hasMatch(), qPrintable(table.name + column.name));
        }
        QVERIFY(!table.find(QStringLiteral("nothing")));
    }
}

void tst_NeededSchema::writtenColumns_comeFromTheForms_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QString>("updated");
    const auto add = [](const char *table, const char *inserted, const char *updated) {
        QTest::newRow(table) << QString::fromLatin1(table) << QString::fromLatin1(inserted)
                             << QString::fromLatin1(updated);
    };
    add("people",
        "pid pamId title name surname title2 phone begin end rsBegin rsEnd rsText type did bid "
        "calendarID created",
        "pid pamId title name surname title2 phone begin end rsBegin rsEnd rsText type status did "
        "bid calendarID lastCalc calc created edited editor");
    add("branches", "", "");
    add("term", "", "syn");
    add("term_sync", "tid type ref ref_col ref_id created flags", "");
    add("atten", "", "ok");
    add("admins_people", "aid uid request", "aid uid request");
    add("funds_move", "uid fid day type month value", "uid fid day type month value");
}

void tst_NeededSchema::writtenColumns_comeFromTheForms()
{
    QFETCH(QString, table);
    QFETCH(QString, inserted);
    QFETCH(QString, updated);
    QCOMPARE(columnsWith(table, &NeededColumn::isInserted).join(QLatin1Char(' ')), inserted);
    QCOMPARE(columnsWith(table, &NeededColumn::isUpdated).join(QLatin1Char(' ')), updated);
    QCOMPARE(neededTable(table)->isWritten(), !inserted.isEmpty() || !updated.isEmpty());
}

void tst_NeededSchema::rights_haveColumns()
{
    for (const NeededRight &needed : neededRights()) {
        const bool isRoutine = needed.right == QLatin1String("EXECUTE");
        QVERIFY2(needed.columns.isEmpty() == isRoutine, qPrintable(needed.object));
    }
}

void tst_NeededSchema::lookups_fillTheirForms()
{
    const QRegularExpression place(QStringLiteral("\\{[a-z]\\}"));
    for (const Lookup &lookup : lookups()) {
        const QString form = formsOf(lookup.statement);
        const QStringList values = QString::fromLatin1(lookup.values)
                                       .split(QLatin1Char(' '), QString::SkipEmptyParts);
        QVERIFY2(form.count(place) == values.size(), qPrintable(form));
        const NeededTable *const table = neededTable(QString::fromLatin1(lookup.table));
        QVERIFY2(table, lookup.table);
        const QStringList columns = QString::fromLatin1(lookup.columns).split(QLatin1Char(' '));
        for (const QString &column : columns)
            QVERIFY2(table->find(column), qPrintable(column));
    }
}

/// But for those that take whole tables, those that another one of the same form stands for, and
/// those whose many places have no value of their own; they find a person by the key.
void tst_NeededSchema::lookups_areOfEveryStatementThatSearches()
{
    using S = PassStatement;
    QSet<int> known {static_cast<int>(S::Branches), static_cast<int>(S::UpdatePerson),
                     static_cast<int>(S::PersonForPam), static_cast<int>(S::PersonForTerminals)};
    for (const Lookup &lookup : lookups())
        known.insert(static_cast<int>(lookup.statement));
    for (const StatementFacts &facts : allStatements()) {
        const QString form = formsOf(facts.statement);
        QVERIFY2(known.contains(static_cast<int>(facts.statement))
                     == form.contains(QLatin1String("WHERE")),
                 qPrintable(form));
    }
    QCOMPARE(tableOfAlias(QStringLiteral("fm")), QStringLiteral("funds_move"));
    QCOMPARE(tableOfAlias(QStringLiteral("term")), QStringLiteral("term"));
}

QTEST_GUILESS_MAIN(tst_NeededSchema)
#include "tst_neededschema.moc"
