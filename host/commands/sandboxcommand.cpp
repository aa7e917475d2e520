// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr sandbox`: a company to play with.
#include "host/commands/sandboxcommand.h"

#include "host/cli/options.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"
#include "host/sandbox/sandbox.h"
#include "host/sandbox/sandboxpage.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SandboxCommand)
};

const int mostPeople = 100000;
const int mostDays = 1000;

/// As the user can call it: by its name alone, if that leads to this program.
QString programName()
{
    const QString program = QCoreApplication::applicationFilePath();
    const QString name = QFileInfo(program).fileName();
    const QString found = QStandardPaths::findExecutable(name);
    return QFileInfo(found).canonicalFilePath() == QFileInfo(program).canonicalFilePath() ? name
                                                                                          : program;
}

Failure read(const Options &options, SandboxOptions *sandbox)
{
    sandbox->folder = QFileInfo(options.argument(0)).absoluteFilePath();
    sandbox->program = programName();
    int seed = 1;
    if (const Failure failure = options.number(QStringLiteral("people"), 1, mostPeople,
                                               &sandbox->people))
        return failure;
    if (const Failure failure = options.number(QStringLiteral("seed"), 0,
                                               std::numeric_limits<int>::max(), &seed))
        return failure;
    sandbox->seed = static_cast<quint32>(seed);
    return options.number(QStringLiteral("days"), 1, mostDays, &sandbox->days);
}

Failure run(const Options &options)
{
    SandboxOptions sandbox;
    if (const Failure failure = read(options, &sandbox))
        return failure;
    LogWriter writer(LogFormat::Text);
    const Failure failure = makeSandbox(sandbox, [&writer](const QString &what) {
        if (ProgressBar::isPossible())
            writer.activity(what);
    });
    writer.wipeProgress();
    if (!failure)
        printText(shortPage(sandbox));
    return failure;
}

} // namespace

Command sandboxCommand()
{
    Command command;
    command.name = QStringLiteral("sandbox");
    command.summary = Text::tr("make a company to play with");
    command.purpose = Text::tr(
        "Fills a new or empty folder with a company of made-up people: a private database with two "
        "years of their attendance, the exports of some days of their lives, the settings for the "
        "plugin, an HR system that puts the next day's export in place before each pass, and a page "
        "of things to try. The same seed gives the same people.");
    command.arguments = {{QStringLiteral("DIR"), Text::tr("the folder")}};
    command.groups = {
        {Text::tr("Options"),
         {{QStringLiteral("people"), QStringLiteral("NUMBER"),
           Text::tr("so many people are employed (default: 200); beyond 1000 their attendance "
                    "goes back less than two years")},
          {QStringLiteral("seed"), QStringLiteral("NUMBER"),
           Text::tr("another number, another company (default: 1)")},
          {QStringLiteral("days"), QStringLiteral("NUMBER"),
           Text::tr("so many exports, one a day, the last one of today (default: 30)")}}}};
    command.exitCodes = {ExitClean, ExitErrors, ExitUsage, ExitDatabase, ExitRefused};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr sandbox /tmp/company"),
          QStringLiteral("talvenhr sandbox /tmp/large --people 1000 --seed 7 --days 90"),
          QStringLiteral(
              "talvenhr run --data-dir /tmp/company --private-db /tmp/company/db --passes 3")}}};
    command.run = run;
    return command;
}
