// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options by which a command is told in which form to speak.
#pragma once

#include "host/cli/command.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"

class Options;

/// --json, for a command that ends with a report.
OptionGroup reportOptions();
ReportForm reportForm(const Options &options);

/// --quiet, for a command whose report ends with a verdict.
Option quietOption();
/// --json and --quiet
OptionGroup quietReportOptions();
/// Nothing but the verdict is to be told to people. Machines get the whole document.
bool isQuiet(const Options &options);

/// --no-names, for a command that tells of many people.
Option noNamesOption();
bool hidesNames(const Options &options);

/// --log-level and --log-format, for a command that runs the plugin.
OptionGroup logOptions();
/// The form of the lines on standard error; text for a command without the option, and for a value
/// that is none.
LogFormat logFormat(const Options &options);
/// Takes both; fails on values that are none.
Failure readLogOptions(const Options &options, int *logLevel, LogFormat *format);
