// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr check`: what the plugin will make of an export.
#include "host/commands/checkcommand.h"

#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/exportcheck/checkpage.h"
#include "host/exportcheck/checkreport.h"
#include "host/exportcheck/exportsource.h"
#include "host/exportcheck/rejects.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"

#include <QCoreApplication>
#include <QDate>

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
    ReportForm form = ReportForm::Text;
    CheckPageStyle style;
    PersonalTexts texts = PersonalTexts::Shown;
};

CheckOptions read(const Options &options)
{
    CheckOptions check;
    check.file = options.argument(0);
    check.against = options.value(QStringLiteral("against"));
    check.rejects = options.value(QStringLiteral("rejects"));
    check.form = reportForm(options);
    check.style.width = outputWidth();
    check.style.all = options.isSet(QStringLiteral("all"));
    check.style.colour = outputTakesColour();
    if (options.isSet(QStringLiteral("no-names")))
        check.texts = PersonalTexts::Hidden;
    return check;
}

/// Reads the export, and the other one.
Failure look(const CheckOptions &options, ExportSource *source, CheckOutcome *outcome)
{
    if (const Failure failure = source->open())
        return failure;
    LogWriter writer(LogFormat::Text);
    ExportCheckSettings settings;
    settings.today = QDate::currentDate();
    settings.progress = [&](qint64 bytes) {
        writer.progress(static_cast<int>(bytes / 1024), static_cast<int>(source->size() / 1024));
    };
    const ExportCheck check = checkExport(source->device(), settings);
    outcome->file = source->name();
    outcome->fates = check.fates;
    outcome->findings = check.findings;
    outcome->texts = options.texts;
    if (source->hasChanged())
        outcome->findings.prepend({&findingKind("W-FILE-CHANGES"), 0, 0, {}, {}});
    if (options.against.isEmpty()) {
        outcome->columns = columnFigures(check.digest);
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
    outcome->comparison = compareExports(check.digest, before);
    outcome->columns = outcome->comparison->columns;
    outcome->findings = outcome->comparison->findings + outcome->findings;
    return {};
}

void print(const CheckOptions &options, ExportSource *source, const CheckOutcome &outcome)
{
    if (options.form == ReportForm::Json) {
        printReport(checkReport(outcome), ReportForm::Json);
        return;
    }
    const QHash<int, QString> lines = source->lines(linesOnPage(outcome, options.style));
    writeCheckPage(outcome, options.style, lines, printText);
}

Failure run(const Options &commandOptions)
{
    const CheckOptions options = read(commandOptions);
    ExportSource source(options.file);
    CheckOutcome outcome;
    if (const Failure failure = look(options, &source, &outcome))
        return failure;
    print(options, &source, outcome);
    if (!options.rejects.isEmpty()) {
        if (const Failure failure = writeRejects(options.rejects, source.device(),
                                                 outcome.findings))
            return failure;
    }
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
             {QStringLiteral("no-names"), QString(),
              Text::tr("show no texts of people, only their numbers")},
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
    command.groups = {checkOptions(), reportOptions()};
    command.exitCodes = {ExitClean, ExitErrors, ExitUsage};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr check ron.data"),
          QStringLiteral("talvenhr check ron.data --against yesterday.data --rejects back.txt"),
          QStringLiteral("ssh hr cat ron.data | talvenhr check - --json")}}};
    command.run = run;
    return command;
}
