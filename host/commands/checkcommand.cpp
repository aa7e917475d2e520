// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr check`: what the plugin will make of an export.
#include "host/commands/checkcommand.h"

#include "host/base/ownerfile.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/databaselook.h"
#include "host/exportcheck/checkhtml.h"
#include "host/exportcheck/checkpage.h"
#include "host/exportcheck/checkreport.h"
#include "host/exportcheck/checktexts.h"
#include "host/exportcheck/exportsource.h"
#include "host/exportcheck/rejects.h"
#include "host/plugin/settingsfile.h"
#include "host/report/console.h"
#include "host/report/htmlpage.h"
#include "host/report/logwriter.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CheckCommand)
};

/// The values of the options.
struct CheckOptions
{
    QString file;
    QString against; ///< empty: no other export
    QString rejects; ///< empty: not written
    QString html; ///< empty: not written
    int shownInHtml = 100; ///< findings of a kind
    QString dataDirectory; ///< of TalvenHR.ini; empty: not known
    DatabaseChoice database; ///< the default one stands for none
    ReportForm form = ReportForm::Text;
    CheckPageStyle style;
    PersonalTexts texts = PersonalTexts::Shown;
};

Failure read(const Options &options, CheckOptions *check)
{
    check->file = options.argument(0);
    check->against = options.value(QStringLiteral("against"));
    check->rejects = options.value(QStringLiteral("rejects"));
    check->html = options.value(QStringLiteral("html"));
    check->form = reportForm(options);
    check->style.width = outputWidth();
    if (options.isSet(QStringLiteral("all")))
        check->shownInHtml = check->style.shown = std::numeric_limits<int>::max();
    check->style.colour = outputTakesColour();
    check->style.headOnly = isQuiet(options);
    if (hidesNames(options))
        check->texts = PersonalTexts::Hidden;
    if (const Failure failure = readDataDirectory(options, &check->dataDirectory))
        return failure;
    return readDatabaseOptions(options, &check->database);
}

QString settingsFile(const CheckOptions &options)
{
    return options.dataDirectory.isEmpty()
        ? QString()
        : QDir(options.dataDirectory).filePath(QStringLiteral("TalvenHR.ini"));
}

Failure checkOutputs(const CheckOptions &options)
{
    return checkOutputFiles({options.html, options.rejects},
                            {options.file, options.against, settingsFile(options)});
}

/// None where there is no such file.
QHash<ushort, QString> stateTexts(const QString &file)
{
    return QFileInfo(file).isFile() ? SettingsFile(file).stateTexts() : QHash<ushort, QString>();
}

/// Compares with the last good export.
Failure compare(const CheckOptions &options, const ExportDigest &digest, CheckOutcome *outcome)
{
    if (options.against.isEmpty()) {
        outcome->columns = columnFigures(digest);
        return {};
    }
    ExportSource other(options.against);
    if (const Failure failure = other.open())
        return failure;
    const ExportDigest before = readDigest(other.device());
    if (before.empty())
        return {
            ExitUsage,
            Text::tr("'%1' has no usable line; name an export that was good").arg(options.against)};
    outcome->otherFile = other.name();
    outcome->comparison = compareExports(digest, before);
    outcome->columns = outcome->comparison->columns;
    outcome->findings = outcome->comparison->findings + outcome->findings;
    return {};
}

ExportCheckSettings settingsOf(ExportSource *source, LogWriter *writer)
{
    ExportCheckSettings settings;
    settings.today = QDate::currentDate();
    settings.progress = [source, writer](qint64 bytes) {
        if (ProgressBar::isPossible())
            writer->activity(Text::tr("reading %1: %2 %")
                                 .arg(source->name())
                                 .arg(100 * bytes / qMax(source->size(), bytes)));
    };
    return settings;
}

/// What concerns the file.
void addFileFindings(const CheckOptions &options, const ExportSource &source, CheckOutcome *outcome)
{
    if (!QFileInfo(settingsFile(options)).isFile())
        outcome->findings.prepend({&findingKind("N-FILE-STATES"), 0, 0, {}, {}});
    if (source.hasChanged())
        outcome->findings.prepend({&findingKind("W-FILE-CHANGES"), 0, 0, {}, {}});
}

/// Reads the database, the export and the other one. `seen` is why the database was not.
Failure look(const CheckOptions &options, ExportSource *source, CheckOutcome *outcome,
             Failure *seen)
{
    if (const Failure failure = source->open())
        return failure;
    DatabaseLook database;
    DatabaseCheck databaseCheck;
    const bool isNamed = !options.database.isDefault;
    Failure unreachable;
    if (isNamed)
        unreachable = database.open(options.database);
    if (isNamed && !unreachable)
        unreachable = databaseCheck.load(database.handle());
    // All that can be known without it is told.
    const bool asksDatabase = isNamed && !unreachable;
    LogWriter writer(LogFormat::Text);
    StatementTrial trial(stateTexts(settingsFile(options)));
    ExportCheckSettings settings = settingsOf(source, &writer);
    settings.trial = &trial;
    settings.database = asksDatabase ? &databaseCheck : nullptr;
    const ExportCheck check = checkExport(source->device(), settings);
    writer.wipeProgress();
    outcome->file = source->name();
    outcome->fates = check.fates;
    outcome->findings = check.findings;
    outcome->texts = options.texts;
    if (asksDatabase)
        outcome->database = databaseCheck.counts();
    addFileFindings(options, *source, outcome);
    if (const Failure failure = compare(options, check.digest, outcome))
        return failure;
    *seen = unreachable;
    return {};
}

void print(const CheckOptions &options, ExportSource *source, const CheckOutcome &outcome)
{
    if (options.form == ReportForm::Json) {
        printReport(checkReport(outcome), ReportForm::Json);
        return;
    }
    const QHash<int, QString> lines = source->lines(linesOfFindings(outcome, options.style.shown));
    writeCheckPage(outcome, options.style, lines, printText);
}

Failure run(const Options &commandOptions)
{
    CheckOptions options;
    if (const Failure failure = read(commandOptions, &options))
        return failure;
    if (const Failure failure = checkOutputs(options))
        return failure;
    ExportSource source(options.file);
    CheckOutcome outcome;
    Failure unreachable;
    if (const Failure failure = look(options, &source, &outcome, &unreachable))
        return failure;
    print(options, &source, outcome);
    if (!options.html.isEmpty()) {
        const QHash<int, QString> lines = source.lines(
            linesOfFindings(outcome, options.shownInHtml));
        if (const Failure failure = writeHtmlPage(
                options.html, QStringLiteral("check"),
                checkHtmlValues(outcome, lines, options.shownInHtml)))
            return failure;
    }
    if (!options.rejects.isEmpty()) {
        if (const Failure failure = writeRejects(options.rejects, source.device(),
                                                 outcome.findings))
            return failure;
    }
    if (unreachable)
        return unreachable;
    const bool isClean = outcome.count(Finding::Error) == 0 && outcome.count(Finding::Warning) == 0;
    return {isClean ? ExitClean : ExitErrors, QString()};
}

OptionGroup checkOptions()
{
    return {Text::tr("Check"),
            {{QStringLiteral("against"), QStringLiteral("FILE"),
              Text::tr("the last good export: people gained and lost, columns changed")},
             {QStringLiteral("all"), QString(),
              Text::tr("show every finding, not ten of a kind (JSON always has all)")},
             noNamesOption(),
             {QStringLiteral("html"), QStringLiteral("FILE"),
              Text::tr("write a page for a browser there, with a hundred of a kind and the columns "
                       "as charts")},
             {QStringLiteral("rejects"), QStringLiteral("FILE"),
              Text::tr("write the lines with errors and warnings there, with the reasons, for the "
                       "HR department")}}};
}

} // namespace

Command checkCommand()
{
    Command command;
    command.name = QStringLiteral("check");
    command.summary = Text::tr("tell what the plugin will make of an export");
    command.purpose = Text::tr(
        "Reads an export as the plugin does and tells the fate of its lines, what its cells "
        "become, and what in it is damaged, worst first. Changes nothing. docs/findings.md "
        "explains each code.");
    command.arguments = {{QStringLiteral("FILE"), Text::tr("the export; - for standard input")}};
    command.groups = {checkOptions(),
                      {Text::tr("Plugin"), {dataDirectoryOption()}},
                      lookedAtDatabaseOptions(),
                      quietReportOptions()};
    command.exitCodes = {ExitClean,    ExitErrors,  ExitUsage,
                         ExitDatabase, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr check ron.data"),
          QStringLiteral("talvenhr check ron.data --against yesterday.data --rejects back.txt"),
          QStringLiteral("ssh hr cat ron.data | talvenhr check - --json")}}};
    command.run = run;
    return command;
}
