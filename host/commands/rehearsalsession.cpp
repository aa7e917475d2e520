// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One rehearsal from the copy to what is told of it.
#include "host/commands/rehearsalsession.h"

#include "host/base/scratchfolder.h"
#include "host/base/shellword.h"
#include "host/base/signalwatch.h"
#include "host/changes/changesjson.h"
#include "host/changes/passnotes.h"
#include "host/changes/planhash.h"
#include "host/commands/databaselook.h"
#include "host/commands/missingpeople.h"
#include "host/commands/rehearsalpage.h"
#include "host/commands/rehearsaltext.h"
#include "host/copy/databasecopy.h"
#include "host/rehearsal/verdict.h"
#include "host/report/htmlpage.h"
#include "host/report/logwriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalSession)
};

/// Before anything is copied: a private server would only say so afterwards.
Failure checkKeptFolder(const QString &folder)
{
    const QFileInfo info(folder);
    if (!info.exists())
        return {};
    if (!info.isDir())
        return {ExitUsage, Text::tr("--keep takes a folder, and '%1' is none").arg(folder)};
    const bool isEmpty = QDir(folder).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden
                                              | QDir::System);
    if (isEmpty)
        return {};
    return {ExitUsage,
            Text::tr("--keep takes a new or an empty folder, and '%1' holds something already; "
                     "name another one")
                .arg(folder)};
}

QStringList columnsOfPeople(const QSqlDatabase &database)
{
    QSqlQuery query(database);
    QStringList columns;
    if (!query.exec(QStringLiteral("SELECT * FROM people LIMIT 0")))
        return columns;
    const QSqlRecord record = query.record();
    for (int i = 0; i < record.count(); ++i)
        columns.append(record.fieldName(i));
    return columns;
}

/// The folder was empty or not there before, and would only be in the way of the next copy.
void removeInterrupted(const QString &folder, const Failure &failure)
{
    if (failure.exitCode == ExitInterrupted)
        QDir(folder).removeRecursively();
}

Failure readPeople(const ConnectionParameters &parameters, QVector<KnownPerson> *people)
{
    Connection connection(QStringLiteral("talvenhr.people"));
    if (const Failure failure = connection.open(parameters))
        return failure;
    return readKnownPeople(connection.handle(), people);
}

} // namespace

RehearsalSession::RehearsalSession(const RehearsalOptions &rehearsalOptions) :
    options(rehearsalOptions)
{ }

Failure RehearsalSession::run()
{
    if (const Failure failure = rehearse())
        return failure;
    if (const Failure failure = tell())
        return failure;
    return {verdictCode(changes, options.tellsChanges), QString()};
}

Failure RehearsalSession::rehearse()
{
    Failure failure = checkFirst();
    if (!failure)
        failure = copyAndRun();
    if (failure.exitCode == ExitInterrupted)
        failure.text = Text::tr("interrupted; nothing was changed");
    if (!failure)
        failure = checkExport();
    if (failure)
        return failure;
    changes.header.state = QString::fromLatin1(copied.digest);
    changes.plan.read = readHash(changes.header);
    changes.plan.hash = planHash(changes.header, changes.plan.change);
    const QDate &day = options.wishes.today;
    changes.totals.missing = missingPeople(known, exported.lines,
                                           day.isValid() ? day : QDate::currentDate());
    changes.rehearsal = {limitOutcomes(options.limits, changes), copied.leftOut, copied.warnings,
                         exported.findings};
    return {};
}

/// What can be told without a copy.
Failure RehearsalSession::checkFirst()
{
    removeLeftScratchFolders();
    if (!options.keep.isEmpty()) {
        if (const Failure failure = checkKeptFolder(options.keep))
            return failure;
    }
    looked = identityOf(options.wishes.exportFile).digest;
    return lookAtExport(options.wishes, &exported);
}

/// Another one than that of the pass must neither be judged by it nor go through in its place.
Failure RehearsalSession::checkExport() const
{
    const QString &file = options.wishes.exportFile;
    if (changes.header.exported.digest == looked && identityOf(file).digest == looked)
        return {};
    return {ExitRefused,
            Text::tr("the export '%1' was replaced while its pass was rehearsed; try again once it "
                     "stays")
                .arg(file)};
}

Failure RehearsalSession::copyAndRun()
{
    if (!options.keep.isEmpty())
        return copyAndRunIn(options.keep);
    const ScratchFolder folder;
    if (!folder.failure().isEmpty())
        return {ExitUsage, folder.failure()};
    return copyAndRunIn(folder.filePath(QStringLiteral("copy")));
}

Failure RehearsalSession::copyAndRunIn(const QString &folder)
{
    const SignalWatch signalWatch;
    const auto interrupted = [&signalWatch] { return signalWatch.hasCaught(); };
    LogWriter writer(LogFormat::Text);
    const auto show = [&writer](const QString &what) {
        if (ProgressBar::isPossible())
            writer.activity(what);
    };
    DatabaseLook source;
    if (const Failure failure = source.open(options.database))
        return failure;
    // Where the people cannot be read, the copy says so in better words.
    const QStringList columns = columnsOfPeople(source.handle());
    if (const Failure failure = columns.isEmpty() ? Failure()
                                                  : checkColumns(options.limits, columns))
        return failure;
    DatabaseCopy copy(folder);
    copy.setInterruption(interrupted);
    QObject::connect(&copy, &DatabaseCopy::progress, show);
    if (const Failure failure = copy.make(source.parameters(), options.copy, &copied)) {
        copy.stop();
        removeInterrupted(folder, failure);
        return failure;
    }
    show(Text::tr("running the pass on the copy"));
    const Failure failure = runPass(copy.parameters(), copy.administratorParameters(), interrupted);
    writer.wipeProgress();
    if (options.keep.isEmpty())
        copy.discard();
    else
        copy.stop();
    removeInterrupted(folder, failure);
    return failure;
}

Failure RehearsalSession::runPass(const ConnectionParameters &copy,
                                  const ConnectionParameters &administrator,
                                  const std::function<bool()> &interrupted)
{
    if (const Failure failure = readPeople(administrator, &known))
        return failure;
    Rehearsal rehearsal(options.wishes);
    rehearsal.setInterruption(interrupted);
    return rehearsal.run(copy, administrator, &changes);
}

Failure RehearsalSession::writeFiles() const
{
    if (!options.changesFile.isEmpty()) {
        if (const Failure failure = writeChangesFile(changes, options.changesFile))
            return failure;
    }
    if (!options.html.isEmpty()) {
        if (const Failure failure = writeHtmlPage(options.html, QStringLiteral("rehearsal"),
                                                  rehearsalHtmlValues(changes)))
            return failure;
    }
    return {};
}

Failure RehearsalSession::tell() const
{
    if (const Failure failure = writeFiles())
        return failure;
    if (options.form == ReportForm::Json) {
        writeChanges(changes, printBytes);
        flushOutput();
        return {};
    }
    printText(options.isQuiet ? briefText() : fullText());
    return {};
}

QString RehearsalSession::briefText() const
{
    RehearsalText text(changes, outputWidth());
    if (!options.person.isEmpty())
        text.addPerson(options.person, known, exported.lines, true);
    return text.result() + verdictLine(changes) + QLatin1Char('\n');
}

QString RehearsalSession::fullText() const
{
    RehearsalText text(changes, outputWidth());
    if (options.person.isEmpty()) {
        text.addPage();
    } else {
        text.addPerson(options.person, known, exported.lines, false);
        text.addExceeded();
    }
    text.addLine(verdictLine(changes));
    if (!options.keep.isEmpty())
        text.addLine(Text::tr("The copy is kept: talvenhr sql --private-db %1")
                         .arg(shellWord(options.keep)));
    return text.result();
}
