// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rehearsal of one person, from the word that names them to their story.
#include "host/commands/explainsession.h"

#include "export/exportcells.h"
#include "host/base/ownerfile.h"
#include "host/base/signalwatch.h"
#include "host/copy/databasecopy.h"
#include "host/explain/storyjson.h"
#include "host/exportcheck/exportcheck.h"
#include "host/exportcheck/exportsource.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExplainSession)
};

uint personalNumber(const QString &pamId)
{
    return numberFromCell(QStringRef(&pamId).left(pamId.indexOf(QLatin1Char('.'))));
}

/// Those of the word, and of the rows that it may mean.
QSet<uint> personalNumbers(const QString &word, const QSet<uint> &pids,
                           const QVector<KnownPerson> &people)
{
    QSet<uint> numbers;
    if (word.contains(QLatin1Char('.')))
        numbers.insert(personalNumber(word));
    for (const KnownPerson &person : people) {
        if (pids.contains(person.pid) || pids.contains(person.key))
            numbers.insert(personalNumber(person.pamId));
    }
    numbers.remove(0);
    return numbers;
}

bool isAboutOne(const ExportFinding &found, const QVector<PersonLine> &lines)
{
    return std::any_of(lines.cbegin(), lines.cend(), [&found](const PersonLine &line) {
        return !line.isHeader && (found.line == line.number || found.lines.contains(line.number));
    });
}

} // namespace

ExplainSession::ExplainSession(const ExplainOptions &explainOptions) :
    options(explainOptions)
{
    facts.today = options.wishes.today.isValid() ? options.wishes.today : QDate::currentDate();
}

Failure ExplainSession::run()
{
    removeLeftScratchFolders();
    if (!folder.failure().isEmpty())
        return {ExitUsage, folder.failure()};
    const SignalWatch signalWatch;
    isInterrupted = [&signalWatch] { return signalWatch.hasCaught(); };
    if (const Failure failure = findPerson())
        return failure;
    if (const Failure failure = checkLines())
        return failure;
    if (const Failure failure = rehearse())
        return failure;
    tell();
    return {code, QString()};
}

Failure ExplainSession::findPerson()
{
    show(Text::tr("looking for %1").arg(options.person));
    if (const Failure failure = source.open(options.database))
        return failure;
    QVector<KnownPerson> people;
    if (const Failure failure = readKnownPeople(source.handle(), &people))
        return failure;
    if (const Failure failure = readExport(people))
        return failure;
    return choose(people);
}

Failure ExplainSession::readExport(const QVector<KnownPerson> &people)
{
    ExportSource file(options.wishes.exportFile);
    if (const Failure failure = file.open())
        return failure;
    WantedLines wanted;
    wanted.pids = possiblePids(options.person, people);
    wanted.orphans = personalNumbers(options.person, wanted.pids, people);
    wanted.number = options.person;
    lines = readPersonLines(file.device(), wanted);
    facts.exportName = QFileInfo(options.wishes.exportFile).fileName();
    return {};
}

Failure ExplainSession::choose(const QVector<KnownPerson> &people)
{
    const QVector<ChosenPerson> meant = peopleMeant(options.person, people, peopleOf(lines));
    if (meant.isEmpty())
        return {ExitErrors,
                Text::tr("neither a line of '%1' nor a row of the database is about %2")
                    .arg(options.wishes.exportFile, options.person)};
    if (meant.size() > 1) {
        QStringList choices;
        for (const ChosenPerson &person : meant)
            choices.append(choiceText(person));
        return {ExitUsage,
                Text::tr("%1 may mean several people: %2; name one by pamId")
                    .arg(options.person, choices.join(QStringLiteral("; ")))};
    }
    facts.person = meant.first();
    facts.lines = linesOf(lines, facts.person);
    return {};
}

/// All lines of the export are looked at, for some findings are about several.
Failure ExplainSession::checkLines()
{
    if (facts.lines.isEmpty())
        return {};
    show(Text::tr("looking at the export"));
    ExportSource file(options.wishes.exportFile);
    if (const Failure failure = file.open())
        return failure;
    StatementTrial trial(SettingsFile(options.wishes.settingsFile).stateTexts());
    ExportCheckSettings settings;
    settings.today = facts.today;
    settings.trial = &trial;
    const ExportFindings findings = checkExport(file.device(), settings).findings;
    std::copy_if(findings.cbegin(), findings.cend(), std::back_inserter(facts.findings),
                 [this](const ExportFinding &found) { return isAboutOne(found, facts.lines); });
    return {};
}

Failure ExplainSession::rehearse()
{
    DatabaseCopy copy(folder.filePath(QStringLiteral("copy")));
    copy.setInterruption(isInterrupted);
    QObject::connect(&copy, &DatabaseCopy::progress, [this](const QString &what) { show(what); });
    CopyWishes wishes = options.copy;
    wishes.onlyPeople = true;
    wishes.uids = facts.person.uids;
    if (const Failure failure = copy.make(source.parameters(), wishes, &facts.copied))
        return failure;
    const Failure failure = rehearseOn(copy.parameters(), copy.administratorParameters());
    copy.discard();
    return failure;
}

Failure ExplainSession::rehearseOn(const ConnectionParameters &copy,
                                   const ConnectionParameters &administrator)
{
    Connection connection(QStringLiteral("explain"));
    if (const Failure failure = connection.open(copy))
        return failure;
    if (const Failure failure = readSnapshot(connection.handle(), SnapshotRows::Touchable,
                                             &facts.before))
        return failure;
    connection.close();
    RehearsalWishes wishes = options.wishes;
    wishes.exportName = wishes.exportFile;
    wishes.exportFile = folder.filePath(QStringLiteral("export.data"));
    wishes.traced = true;
    if (const Failure failure = writeOwnerFile(
            wishes.exportFile, [this](QIODevice *file) { file->write(exportOf(facts.lines)); }))
        return failure;
    show(Text::tr("running the pass on the copy"));
    Rehearsal rehearsal(wishes);
    rehearsal.setInterruption(isInterrupted);
    const Failure failure = rehearsal.run(copy, administrator, &facts.changes);
    facts.changes.header.state = QString::fromLatin1(facts.copied.digest);
    facts.steps = rehearsal.trace();
    return failure;
}

void ExplainSession::show(const QString &what)
{
    if (ProgressBar::isPossible())
        writer.activity(what);
}

void ExplainSession::tell()
{
    writer.wipeProgress();
    if (options.texts == PersonalTexts::Hidden)
        hideNames(&facts);
    const Story story = tellStory(facts);
    code = story.exitCode;
    if (options.form == ReportForm::Json) {
        writeStory(facts, story, printBytes);
        flushOutput();
    } else if (options.isQuiet) {
        printText(story.verdict + QLatin1Char('\n'));
    } else {
        printText(storyText(story, options.withStatements, outputWidth()));
    }
}
