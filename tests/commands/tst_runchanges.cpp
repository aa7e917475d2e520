// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run --changes`: a file for each pass with what it changed.
#include "host/changes/changesjson.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"
#include "support/patience.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>

namespace {

const ChangedPerson *personOf(const Changes &changes, const char *pamId)
{
    const auto found = std::find_if(changes.people.cbegin(), changes.people.cend(),
                                    [pamId](const ChangedPerson &person) {
                                        return person.person.pamId == QLatin1String(pamId);
                                    });
    return found == changes.people.cend() ? nullptr : &*found;
}

QString schemaFaults(const QString &file)
{
    QProcess validator;
    validator.start(QStringLiteral("python3"),
                    {QStringLiteral("-W"), QStringLiteral("ignore"), QStringLiteral("-m"),
                     QStringLiteral("jsonschema"), QStringLiteral("-i"), file,
                     QStringLiteral(TALVENHR_SOURCE_FOLDER "/docs/changes.schema.json")});
    if (!validator.waitForFinished(longestWait))
        return QStringLiteral("no validator");
    return QString::fromUtf8(validator.readAllStandardError());
}

} // namespace

class tst_RunChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void files_holdWhatEachPassChanged();
    void filesAndPage_areServedTogether();
    void passWithoutAnExport_leavesNoFile();
    void folderThatCannotBe_endsTheRunBeforeAnyPass();
    void fileThatCannotBeWritten_isTold();

private:
    QStringList options(const QStringList &others) const
    {
        return site.runOptions(
            QStringList {QStringLiteral("--private-db"), site.path(QStringLiteral("db"))} + others);
    }
    QString changesPath() const { return site.path(QStringLiteral("a/changes")); }
    QStringList changeFiles() const
    {
        return QDir(changesPath()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    Site site;
};

void tst_RunChanges::files_holdWhatEachPassChanged()
{
    site.writeFile(QStringLiteral("ron.data"),
                   Site::header() + QLatin1Char('\n') + Site::employee(7101, QStringLiteral("Malá"))
                       + QLatin1Char('\n') + QStringLiteral("7102|too short\n")
                       + Site::employee(7103, QStringLiteral("O'Neill")));
    TalvenhrProcess program(options({QStringLiteral("--passes"), QStringLiteral("2"),
                                     QStringLiteral("--changes"), changesPath()}));
    QCOMPARE(program.finish(), 1);
    QCOMPARE(program.output(), QString());
    const QStringList files = changeFiles();
    QCOMPARE(files.size(), 2);
    QVERIFY2(QRegularExpression(QStringLiteral("\\A\\d{8}T\\d{6}Z-1\\.changes\\.json\\z"))
                 .match(files.first())
                 .hasMatch(),
             qPrintable(files.first()));
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup
        | QFileDevice::ExeGroup | QFileDevice::ReadOther | QFileDevice::WriteOther
        | QFileDevice::ExeOther;
    QVERIFY(!(QFile::permissions(changesPath()) & others));

    const QString path = QDir(changesPath()).filePath(files.first());
    QVERIFY(!(QFile::permissions(path) & others));
    QCOMPARE(schemaFaults(path), QString());
    Changes first;
    QVERIFY(!readChangesFile(path, &first));
    QCOMPARE(int(first.header.how), int(ChangesHeader::Run));
    QCOMPARE(first.header.exported.name, QStringLiteral("ron.data"));
    QCOMPARE(first.header.exported.lines, 4);
    QVERIFY(first.header.since <= first.header.when);
    QVERIFY(first.header.server.contains(QLatin1String("MariaDB")));
    QVERIFY(!first.header.plugin.isEmpty());
    QCOMPARE(first.header.settings.size(), 64);
    QCOMPARE(first.summary[ChangeKind::Added], qint64(1));
    QCOMPARE(first.summary[ChangeKind::Dropped], qint64(1));
    QCOMPARE(first.summary[ChangeKind::Errors], qint64(1));
    const ChangedPerson *added = personOf(first, "7101.1");
    QVERIFY(added);
    QVERIFY(added->kinds.has(ChangeKind::Added));
    QVERIFY(added->kinds.has(ChangeKind::Memberships));
    QVERIFY(added->kinds.has(ChangeKind::Notices));
    QVERIFY(!added->messages.isEmpty() || added->notDone.size() > 0);
    const ChangedPerson *refused = personOf(first, "7103.1");
    QVERIFY(refused);
    QVERIFY(refused->kinds.has(ChangeKind::Errors));
    QVERIFY(refused->messages.first().isError);
    QCOMPARE(int(refused->notDone.first().what), int(NotDone::Refused));

    // Who was new gets the leave.
    Changes second;
    QVERIFY(!readChangesFile(QDir(changesPath()).filePath(files.last()), &second));
    QCOMPARE(second.header.firstPass, 2);
    QCOMPARE(second.header.since, first.header.when);
    added = personOf(second, "7101.1");
    QVERIFY(added);
    QVERIFY(added->kinds.has(ChangeKind::Leave));
    QVERIFY(added->leave != 0);
}

void tst_RunChanges::filesAndPage_areServedTogether()
{
    const int files = changeFiles().size();
    site.writeFile(QStringLiteral("ron.data"),
                   Site::header() + QLatin1Char('\n')
                       + Site::employee(7201, QStringLiteral("Nová")));
    TalvenhrProcess program(options({QStringLiteral("--once"), QStringLiteral("--show-changes"),
                                     QStringLiteral("--changes"), changesPath()}));
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.output().contains(QStringLiteral("\n7201.1 ")));
    QCOMPARE(changeFiles().size(), files + 1);
}

void tst_RunChanges::passWithoutAnExport_leavesNoFile()
{
    const QStringList files = changeFiles();
    const QString kept = site.path(QStringLiteral("kept.data"));
    QVERIFY(QFile::rename(site.exportFile(), kept));
    TalvenhrProcess program(
        options({QStringLiteral("--once"), QStringLiteral("--changes"), changesPath()}));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.linesWith(QStringLiteral("no export file at '")).size(), 1);
    QCOMPARE(changeFiles(), files);
    QVERIFY(QFile::rename(kept, site.exportFile()));
}

void tst_RunChanges::folderThatCannotBe_endsTheRunBeforeAnyPass()
{
    TalvenhrProcess program(
        options({QStringLiteral("--once"), QStringLiteral("--changes"), site.exportFile()}));
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().contains(QStringLiteral("' is no folder; name another one")),
             qPrintable(program.lastLine()));
    QCOMPARE(program.linesWith(QStringLiteral("synchronization")), QStringList());
}

/// The folder goes while the pass waits.
void tst_RunChanges::fileThatCannotBeWritten_isTold()
{
    const QString folder = site.path(QStringLiteral("gone"));
    site.holdPasses();
    TalvenhrProcess program(
        options({QStringLiteral("--once"), QStringLiteral("--changes"), folder}));
    program.start();
    QVERIFY(program.waitForLine(QStringLiteral("BEGIN synchronization")));
    QVERIFY(QDir().rmdir(folder));
    site.endPass();
    QCOMPARE(program.finish(), 1);
    QCOMPARE(
        program.linesWith(QStringLiteral("the changes of pass 1 are lost: cannot write '")).size(),
        1);
    QVERIFY2(program.lastLine().contains(QStringLiteral("the changes of a pass are not kept")),
             qPrintable(program.lastLine()));
}

QTEST_GUILESS_MAIN(tst_RunChanges)
#include "tst_runchanges.moc"
