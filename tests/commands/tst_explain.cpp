// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr explain`: the rehearsal of one person is that of everybody, as far as it is about them.
//
// Environment: TALVENHR_COMPANIES, how many generated companies (default: 1); TALVENHR_SEED, the
// first of their seeds (default: 1); TALVENHR_PEOPLE, how many people of each (default: 2).
#include "support/commands/jsonschema.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <algorithm>

namespace {

int environmentNumber(const char *name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

QJsonObject objectOf(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

/// Without what no two passes have in common: moments, and ids that the server makes up.
QJsonObject withoutMoments(QJsonObject row, bool isNewPerson)
{
    for (const char *column : {"created", "edited", "calc", "since", "id"})
        row.remove(str(column));
    if (isNewPerson) {
        for (const char *column : {"uid", "ref_id"})
            row.remove(str(column));
    }
    return row;
}

QStringList rowsOf(const QJsonObject &person)
{
    const bool isNew = person.value(str("kinds")).toArray().contains(str("added"));
    QStringList rows;
    const QJsonArray all = person.value(str("rows")).toArray();
    for (const QJsonValue &value : all) {
        const QJsonObject row = value.toObject();
        QJsonObject shown {{str("table"), row.value(str("table"))}};
        for (const char *side : {"before", "after"})
            shown.insert(str(side), withoutMoments(row.value(str(side)).toObject(), isNew));
        rows.append(QString::fromUtf8(QJsonDocument(shown).toJson(QJsonDocument::Compact)));
    }
    rows.sort();
    return rows;
}

/// The person with this number among those of whom the changes tell.
QJsonObject personIn(const QJsonObject &changes, const QString &pamId)
{
    const QJsonArray people = changes.value(str("people")).toArray();
    for (const QJsonValue &person : people) {
        if (person[QLatin1String("pamId")].toString() == pamId)
            return person.toObject();
    }
    return {};
}

/// Those who change in most ways first, each with other kinds than those before.
QStringList worthATry(const QJsonObject &changes, int count)
{
    QStringList chosen;
    QStringList seen;
    const QJsonArray people = changes.value(str("people")).toArray();
    for (const bool isForNews : {true, false}) {
        for (const QJsonValue &person : people) {
            const QString kinds = QString::fromUtf8(
                QJsonDocument(person[QLatin1String("kinds")].toArray()).toJson());
            const QString pamId = person[QLatin1String("pamId")].toString();
            if (chosen.size() == count || (isForNews && seen.contains(kinds))
                || chosen.contains(pamId) || pamId.isEmpty())
                continue;
            seen.append(kinds);
            chosen.append(pamId);
        }
    }
    return chosen;
}

} // namespace

class tst_Explain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void person_isLookedForInExportAndDatabase();
    void onePerson_isAsAmongAll_data();
    void onePerson_isAsAmongAll();
};

void tst_Explain::person_isLookedForInExportAndDatabase()
{
    const Site site;
    const QStringList where {str("--private-db"), site.path(str("db")), str("--data-dir"),
                             site.dataDir()};
    TalvenhrProcess makesDatabase(QStringList {str("run"), str("--once")} + where);
    QCOMPARE(makesDatabase.finish(), 0);
    // The pid of the second one is the uid of somebody else.
    site.writeFile(str("ron.data"),
                   QStringList({Site::header(), Site::employee(1001, str("Dáša")),
                                Site::employee(1, str("Nula"))})
                       .join(QLatin1Char('\n')));

    // Earlier exports are about others as well, of whom the copy has nobody.
    TalvenhrProcess later(
        QStringList {str("explain"), str("10011"), str("--after"), site.exportFile()} + where);
    QCOMPARE(later.finish(), 2);
    QVERIFY2(later.lastLine().contains(str("unknown option '--after'")),
             qPrintable(later.lastLine()));
    TalvenhrProcess story(QStringList {str("explain"), str("10011")} + where);
    QCOMPARE(story.finish(), 0);
    const QString text = story.output();
    QVERIFY2(text.startsWith(str("1001.1 ")), qPrintable(text));
    for (const char *part : {"taken by pid", "Line 2 of ron.data is taken: 1001.1", "The pass\n",
                             "Their row is written.", "name: ", "becomes Dáša"})
        QVERIFY2(text.contains(str(part)), qPrintable(text));
    const QStringList shown = text.split(QLatin1Char('\n'));
    for (const QString &line : shown)
        QVERIFY2(line.size() <= 100, qPrintable(line));

    TalvenhrProcess machine(
        QStringList {str("explain"), str("1001.1"), str("--json"), str("--no-names")} + where);
    QCOMPARE(machine.finish(), 0);
    QCOMPARE(schemaFault(machine.output().toUtf8(), str("explain")), QString());
    const QJsonObject changes = objectOf(machine.output()).value(str("changes")).toObject();
    QCOMPARE(schemaFault(QJsonDocument(changes).toJson(), str("changes")), QString());
    QVERIFY2(!machine.output().contains(str("Dáša")), qPrintable(machine.output()));

    TalvenhrProcess several(QStringList {str("explain"), str("11")} + where);
    QCOMPARE(several.finish(), 2);
    QVERIFY2(several.lastLine().contains(str("11 may mean several people: 1.1, whose pid it is; ")),
             qPrintable(several.lastLine()));

    TalvenhrProcess byNumber(QStringList {str("explain"), str("1001"), str("--quiet")} + where);
    QCOMPARE(byNumber.finish(), 0);
    TalvenhrProcess empty(QStringList {str("explain"), QString()} + where);
    QCOMPARE(empty.finish(), 2);
    QVERIFY2(empty.lastLine().contains(str("PERSON is empty; name somebody, such as 4711.1")),
             qPrintable(empty.lastLine()));

    TalvenhrProcess nobody(QStringList {str("explain"), str("9999.1")} + where);
    QCOMPARE(nobody.finish(), 1);
    QVERIFY(nobody.lastLine().contains(str("nor a row of the database is about 9999.1")));
}

void tst_Explain::onePerson_isAsAmongAll_data()
{
    QTest::addColumn<int>("seed");
    const int first = environmentNumber("TALVENHR_SEED", 1);
    for (int i = 0; i < environmentNumber("TALVENHR_COMPANIES", 1); ++i)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(first + i))) << first + i;
}

void tst_Explain::onePerson_isAsAmongAll()
{
    QFETCH(int, seed);
    const Site site;
    const QString company = site.path(str("company"));
    TalvenhrProcess sandbox({str("sandbox"), company, str("--people"),
                             QString::number(20 + seed * 37 % 80), str("--seed"),
                             QString::number(seed), str("--days"), str("5")});
    QCOMPARE(sandbox.finish(), 0);
    const QDir exports(company + str("/exports"));
    const QStringList where {str("--private-db"), company + str("/db"), str("--data-dir"),
                             site.dataDir(), str("--json")};
    const QStringList force = seed % 3 == 0 ? QStringList(str("--force")) : QStringList();
    // Of the last day, with all that has happened in those before.
    QFile::remove(site.exportFile());
    QVERIFY(QFile::copy(exports.filePath(exports.entryList(QDir::Files, QDir::Name).last()),
                        site.exportFile()));
    TalvenhrProcess rehearse(QStringList {str("rehearse"), str("--no-limits")} + where + force);
    const int code = rehearse.finish();
    QVERIFY2(code == 0 || code == 1, qPrintable(rehearse.lastLine()));
    const QJsonObject all = objectOf(rehearse.output());
    const QStringList people = worthATry(all, environmentNumber("TALVENHR_PEOPLE", 2));
    QVERIFY(!people.isEmpty());
    for (const QString &pamId : people) {
        TalvenhrProcess explain(QStringList {str("explain"), pamId} + where + force);
        const int explainCode = explain.finish();
        QVERIFY2(explainCode == 0 || explainCode == 1, qPrintable(explain.lastLine()));
        const QJsonObject one = personIn(
            objectOf(explain.output()).value(str("changes")).toObject(), pamId);
        const QJsonObject amongAll = personIn(all, pamId);
        QVERIFY2(!amongAll.isEmpty(), qPrintable(pamId));
        QCOMPARE(rowsOf(one), rowsOf(amongAll));
        for (const char *member : {"kinds", "notDone", "leave", "reopened"})
            QCOMPARE(one.value(str(member)), amongAll.value(str(member)));
    }
}

QTEST_GUILESS_MAIN(tst_Explain)
#include "tst_explain.moc"
