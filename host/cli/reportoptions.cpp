// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options by which a command is told in which form to speak.
#include "host/cli/reportoptions.h"

#include "host/cli/options.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ReportOptions)
};

QString formatOption()
{
    return QStringLiteral("log-format");
}

} // namespace

OptionGroup reportOptions()
{
    return {Text::tr("Report, on standard output"),
            {{QStringLiteral("json"), QString(), Text::tr("as one JSON document")}}};
}

ReportForm reportForm(const Options &options)
{
    return options.isSet(QStringLiteral("json")) ? ReportForm::Json : ReportForm::Text;
}

Option quietOption()
{
    return {QStringLiteral("quiet"), QString(), Text::tr("show the verdict only")};
}

OptionGroup quietReportOptions()
{
    OptionGroup group = reportOptions();
    group.options.append(quietOption());
    return group;
}

bool isQuiet(const Options &options)
{
    return options.isSet(QStringLiteral("quiet")) && reportForm(options) == ReportForm::Text;
}

Option noNamesOption()
{
    return {QStringLiteral("no-names"), QString(),
            Text::tr("show no texts of people, only their numbers")};
}

bool hidesNames(const Options &options)
{
    return options.isSet(QStringLiteral("no-names"));
}

OptionGroup logOptions()
{
    return {
        Text::tr("Log, on standard error"),
        {{QStringLiteral("log-level"), QStringLiteral("NUMBER"),
          Text::tr("0 warnings and errors only, 1 passes and writes (default), 2 also ticks and "
                   "database operations, 3 also each record. Hidden below 2: a line for every "
                   "settings key, which the plugin itself prints at every level")},
         {formatOption(), QStringLiteral("NAME"),
          Text::tr("text (default), or json: one object a line")}}};
}

LogFormat logFormat(const Options &options)
{
    return options.value(formatOption()) == QLatin1String("json") ? LogFormat::Json
                                                                  : LogFormat::Text;
}

Failure readLogOptions(const Options &options, int *logLevel, LogFormat *format)
{
    *format = logFormat(options);
    const QString name = options.value(formatOption());
    if (options.isSet(formatOption()) && name != QLatin1String("text")
        && name != QLatin1String("json"))
        return options.usageFailure(
            Text::tr("--log-format takes 'text' or 'json', not '%1'").arg(name));
    return options.number(QStringLiteral("log-level"), 0, 3, logLevel);
}
