// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The site of a status.
#include "host/base/zonedtext.h"
#include "host/changes/changesjson.h"
#include "host/status/folderstatus.h"
#include "host/status/siteentries.h"
#include "host/status/statussite.h"
#include "support/passchanges.h"
#include "support/status/madestatus.h"

#include <QDir>
#include <QtTest>
#include <QXmlStreamReader>

class tst_StatusSite : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pages_tellOfExportsAndPasses();
    void hostileNames_stayTexts();
    void namesThatTurnText_doNot();
    void lostAndWaiting_standOnTheIndex();
    void siteCutOff_isCompletedLater();
    void onlyNewPages_areWritten();
    void index_saysItsTimeZone();
    void withoutNames_noneStays();
    void people_goWithTheirChanges();
    void oldPages_go();
    void foreignFolder_isRefused();
    void foreignFiles_stay();
    void readers_areLetIn();

private:
    static QStringList pages(const GateFolder &folder);
};

namespace {

const char *const hostile = "<script>\"'&{{ x }}{% now %}";

SiteTarget target(const GateFolder &folder)
{
    return {folder.path(QStringLiteral("www")), PersonalTexts::Shown, FileReaders::Nobody};
}

void write(const GateFolder &folder, const SiteTarget &siteTarget)
{
    if (const Failure failure = writeSite(folder.status(), siteTarget))
        QTest::qFail(qPrintable(failure.text), __FILE__, __LINE__);
}

Changes newcomer(const QString &name)
{
    return changesOf(SnapshotBuilder(),
                     SnapshotBuilder().with(QString::fromLatin1(somebody),
                                            {QStringLiteral("1|10011|1001.1|Eva|%1|1").arg(name)}));
}

/// Empty if it is.
QString faultOfXml(const QByteArray &page)
{
    QXmlStreamReader reader(page);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("script"))
            return QStringLiteral("a script");
    }
    return reader.hasError()
        ? QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString())
        : QString();
}

} // namespace

QStringList tst_StatusSite::pages(const GateFolder &folder)
{
    return QDir(folder.path(QStringLiteral("www"))).entryList(QDir::Files, QDir::Name);
}

void tst_StatusSite::pages_tellOfExportsAndPasses()
{
    const GateFolder folder;
    const GateRecord passed = folder.record(30, "a");
    GateRecord refused = folder.record(2, "b", GateRecord::Refused);
    refused.reasons = {{QStringLiteral("limit:ended"), QStringLiteral("too many end"),
                        QStringLiteral("look at them")}};
    refused.limits = {{{QStringLiteral("ended"), 5, true}, 10, 31}};
    folder.keep(passed);
    folder.keep(refused);
    folder.keep(refused, newcomer(QStringLiteral("Malá")));
    folder.write(QStringLiteral("refused/") + refused.name + QStringLiteral(".check.html"),
                 "found");
    Changes pass = newcomer(QStringLiteral("Vlk"));
    pass.header.how = ChangesHeader::Run;
    QVERIFY(!writeChangesFile(
        pass, folder.path(QStringLiteral("archive/20261122T110000Z-3.changes.json"))));
    write(folder, target(folder));

    const QString refusedPage = refused.name + QStringLiteral(".html");
    const QStringList expected {passed.name + QStringLiteral(".html"),
                                refused.name + QStringLiteral(".check.html"),
                                refusedPage,
                                QStringLiteral("index.html"),
                                QStringLiteral("pass-20261122T110000Z-3.html"),
                                QStringLiteral("site.json")};
    QCOMPARE(pages(folder), expected);
    const QByteArray index = folder.read(QStringLiteral("www/index.html"));
    for (const QString &page : {expected.at(0), expected.at(2), expected.at(4)})
        QVERIFY2(index.contains("href=\"" + page.toUtf8() + '"'), qPrintable(page));
    QCOMPARE(index.count("<rect "), siteDays);
    QCOMPARE(index.count("<rect class=\"good\""), 1);
    QCOMPARE(index.count("<rect class=\"error\""), 1);
    const QByteArray page = folder.read(QStringLiteral("www/") + refusedPage);
    for (const char *text :
         {"too many end", "look at them", "Eva Mal", "tr class=\"marked\"", ".check.html\""})
        QVERIFY2(page.contains(text), text);
    QVERIFY(folder.read(QStringLiteral("www/") + expected.at(4)).contains("Eva Vlk"));
    QCOMPARE(folder.read(QStringLiteral("www/") + expected.at(1)), QByteArray("found"));
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
    QVERIFY(!(QFile::permissions(folder.path(QStringLiteral("www"))) & others));
    for (const QString &file : expected)
        QVERIFY(!(QFile::permissions(folder.path(QStringLiteral("www/") + file)) & others));
}

void tst_StatusSite::hostileNames_stayTexts()
{
    const GateFolder folder;
    const QString text = QLatin1String(hostile);
    GateRecord record = folder.record(2, "b", GateRecord::Refused);
    record.exported.name = text;
    record.reasons = {{text, text, text}};
    record.release = Release {text, text, {}};
    record.findings = {{text, Finding::Error, 1}};
    folder.keep(record);
    folder.keep(record, newcomer(text));
    GateRecord outside = folder.record(3, "c");
    outside.name = QStringLiteral("../outside");
    QVERIFY(!writeGateRecord(outside, folder.path(QStringLiteral("archive/x.gate.json"))));
    folder.write(QStringLiteral("archive/20261122T110000Z-\"><b>.changes.json"), "{");
    write(folder, target(folder));
    const QStringList written = pages(folder);
    QCOMPARE(written.size(), 3);
    QVERIFY(!QFileInfo::exists(folder.path(QStringLiteral("outside.html"))));
    for (const QString &page : written.mid(0, 2)) {
        const QByteArray html = folder.read(QStringLiteral("www/") + page);
        QCOMPARE(faultOfXml(html.mid(html.indexOf("<html"))), QString());
        QVERIFY(html.contains("{{ x }}{% now %}"));
        QVERIFY(!html.contains("<script"));
    }
}

void tst_StatusSite::namesThatTurnText_doNot()
{
    const GateFolder folder;
    const QString name = QString::fromUtf8("Vlk \u202egnp.exe\u2066");
    const GateRecord record = folder.record(2, "a");
    folder.keep(record);
    folder.keep(record, newcomer(name));
    Status status = folder.status();
    status.lost = {lostEva()};
    status.lost[0].person.name = name;
    QVERIFY(!writeSite(status, target(folder)));
    for (const QString &page :
         {record.name + QStringLiteral(".html"), QStringLiteral("index.html")}) {
        const QString text = QString::fromUtf8(folder.read(QStringLiteral("www/") + page));
        QVERIFY(text.contains(QStringLiteral("gnp.exe")));
        QVERIFY2(!text.contains(QChar(0x202e)) && !text.contains(QChar(0x2066)), qPrintable(page));
    }
}

void tst_StatusSite::lostAndWaiting_standOnTheIndex()
{
    const GateFolder folder;
    GateRecord record = folder.record(2, "a");
    record.release = Release {QStringLiteral("anna"), QStringLiteral("Vlk leaves"), {}};
    folder.keep(record);
    Status status = folder.status();
    status.lost = {lostEva()};
    status.lost[0].record = record.name;
    status.lost[0].uncertain = QStringList {QStringLiteral("Twice there.")};
    status.waiting = {{lostEva().person, NotDone::Group, QStringLiteral("Malá")}};
    SiteTarget site = target(folder);
    QVERIFY(!writeSite(status, site));
    const QString page = QStringLiteral("www/%1.html").arg(record.name);
    QString index = QString::fromUtf8(folder.read(QStringLiteral("www/index.html")));
    for (const char *text : {"Lost by a pass", "Twice there.", "a forced pass", "Vlk leaves",
                             "Waiting for somebody", ".settled"})
        QVERIFY2(index.contains(QLatin1String(text)), text);
    QCOMPARE(index.count(QStringLiteral("1001.1 Eva Malá")), 2);
    QVERIFY(folder.read(page).contains("Vlk leaves"));

    site.texts = PersonalTexts::Hidden;
    QVERIFY(!writeSite(status, site));
    index = QString::fromUtf8(folder.read(QStringLiteral("www/index.html")))
        + QString::fromUtf8(folder.read(page));
    QCOMPARE(index.count(QStringLiteral("1001.1")), 2);
    for (const char *text : {"Mal", "Vlk"})
        QVERIFY2(!index.contains(QLatin1String(text)), text);
}

/// A page cannot be written, as on a full disk.
void tst_StatusSite::siteCutOff_isCompletedLater()
{
    const GateFolder folder;
    const GateRecord older = folder.record(30, "a");
    const GateRecord newer = folder.record(2, "b");
    folder.keep(older);
    folder.keep(newer);
    write(folder, target(folder));
    const QByteArray index = folder.read(QStringLiteral("www/index.html"));
    const QString blocked = QStringLiteral("www/%1.html").arg(older.name);
    QVERIFY(QFile::remove(folder.path(blocked)));
    QVERIFY(QDir(folder.path(QString())).mkpath(blocked + QStringLiteral("/in the way")));
    folder.keep(refused(folder.record(1, "c", GateRecord::Refused)));
    GateRecord changed = older;
    changed.mendedCells = 77;
    folder.keep(changed);
    QVERIFY(writeSite(folder.status(), target(folder)));
    // What was there is whole; the index is the old one.
    QCOMPARE(folder.read(QStringLiteral("www/index.html")), index);
    const QStringList rest = QDir(folder.path(QStringLiteral("www")))
                                 .entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString &file : rest)
        QVERIFY2(file.endsWith(QLatin1String(".html")) || file == QLatin1String("site.json"),
                 qPrintable(file));

    QVERIFY(QDir(folder.path(blocked)).removeRecursively());
    write(folder, target(folder));
    QVERIFY(folder.read(blocked).contains("77"));
    QCOMPARE(pages(folder).size(), 5);
}

void tst_StatusSite::onlyNewPages_areWritten()
{
    const GateFolder folder;
    GateRecord record = folder.record(30, "a");
    folder.keep(record);
    write(folder, target(folder));
    const QString first = QStringLiteral("www/%1.html").arg(record.name);
    folder.write(first, "as it was");
    folder.keep(folder.record(2, "b"));
    write(folder, target(folder));
    QCOMPARE(pages(folder).size(), 4);
    QCOMPARE(folder.read(first), QByteArray("as it was"));
    QVERIFY(folder.read(QStringLiteral("www/index.html")).contains(record.name.toUtf8()));

    record.mendedCells = 77;
    folder.keep(record);
    write(folder, target(folder));
    QVERIFY(folder.read(first).contains("77"));

    QVERIFY(QFile::remove(folder.path(first)));
    write(folder, target(folder));
    QVERIFY(folder.read(first).contains("77"));
}

void tst_StatusSite::index_saysItsTimeZone()
{
    const GateFolder folder;
    write(folder, target(folder));
    const QString taken = QStringLiteral("Taken at %1; all moments are of this time zone.")
                              .arg(zonedText(folder.now()));
    QVERIFY(folder.read(QStringLiteral("www/index.html")).contains(taken.toUtf8()));
}

void tst_StatusSite::withoutNames_noneStays()
{
    const GateFolder folder;
    const GateRecord record = folder.record(2, "a");
    folder.keep(record);
    folder.keep(record, newcomer(QStringLiteral("Vlk")));
    folder.write(QStringLiteral("archive/") + record.name + QStringLiteral(".check.html"), "Vlk");
    SiteTarget site = target(folder);
    write(folder, site);
    const QString page = QStringLiteral("www/%1.html").arg(record.name);
    QVERIFY(folder.read(page).contains("Eva Vlk"));
    site.texts = PersonalTexts::Hidden;
    write(folder, site);
    const QStringList left = pages(folder);
    QCOMPARE(left.size(), 3);
    for (const QString &file : left)
        QVERIFY2(!folder.read(QStringLiteral("www/") + file).contains("Vlk"), qPrintable(file));
    QVERIFY(folder.read(page).contains("1001.1"));
}

void tst_StatusSite::people_goWithTheirChanges()
{
    const GateFolder folder;
    const GateRecord record = folder.record(2, "a");
    folder.keep(record);
    folder.keep(record, newcomer(QStringLiteral("Vlk")));
    write(folder, target(folder));
    QVERIFY(QFile::remove(
        folder.path(QStringLiteral("archive/") + record.name + QStringLiteral(".changes.json"))));
    write(folder, target(folder));
    const QByteArray page = folder.read(QStringLiteral("www/%1.html").arg(record.name));
    QVERIFY(page.contains(record.name.toUtf8()));
    QVERIFY(!page.contains("Vlk"));
}

void tst_StatusSite::oldPages_go()
{
    const GateFolder folder;
    const GateRecord record = folder.record(24 * 89, "a");
    folder.keep(record);
    write(folder, target(folder));
    QCOMPARE(pages(folder).size(), 3);
    Status later = readStatus(folder.sources(), folder.now().addDays(2));
    QVERIFY(!writeSite(later, target(folder)));
    const QStringList left {QStringLiteral("index.html"), QStringLiteral("site.json")};
    QCOMPARE(pages(folder), left);
}

void tst_StatusSite::foreignFolder_isRefused()
{
    const GateFolder folder;
    SiteTarget site = target(folder);
    site.folder = folder.path(QStringLiteral("archive"));
    folder.keep(folder.record(2, "a"));
    const Failure failure = writeSite(folder.status(), site);
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY(failure.text.contains(QStringLiteral("holds other files")));
    QVERIFY(!QFileInfo::exists(folder.path(QStringLiteral("archive/index.html"))));
    site.folder = folder.path(
        QStringLiteral("archive/%1.gate.json").arg(folder.record(2, "a").name));
    QVERIFY(writeSite(folder.status(), site).text.contains(QStringLiteral("is no folder")));
}

/// A list that names other files leads to none of them.
void tst_StatusSite::foreignFiles_stay()
{
    const GateFolder folder;
    write(folder, target(folder));
    folder.write(QStringLiteral("www/logo.html"), "theirs");
    folder.write(QStringLiteral("outside.html"), "theirs");
    folder.write(QStringLiteral("www/site.json"),
                 R"({"pages": {"../outside.html": {"madeOf": "1"}, "ours.html": {}}})");
    folder.write(QStringLiteral("www/ours.html"), "ours");
    write(folder, target(folder));
    QCOMPARE(folder.read(QStringLiteral("www/logo.html")), QByteArray("theirs"));
    QCOMPARE(folder.read(QStringLiteral("outside.html")), QByteArray("theirs"));
    QVERIFY(!pages(folder).contains(QStringLiteral("ours.html")));
}

void tst_StatusSite::readers_areLetIn()
{
    const GateFolder folder;
    SiteTarget site = target(folder);
    site.readers = FileReaders::Group;
    write(folder, site);
    const QString index = folder.path(QStringLiteral("www/index.html"));
    QVERIFY(QFile::permissions(index) & QFileDevice::ReadGroup);
    QVERIFY(!(QFile::permissions(index) & QFileDevice::ReadOther));
    QVERIFY(QFile::permissions(folder.path(QStringLiteral("www"))) & QFileDevice::ExeGroup);
    site.readers = FileReaders::Everybody;
    write(folder, site);
    QVERIFY(QFile::permissions(index) & QFileDevice::ReadOther);
}

QTEST_GUILESS_MAIN(tst_StatusSite)
#include "tst_statussite.moc"
