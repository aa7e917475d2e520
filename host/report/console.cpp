// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Standard output.
#include "host/report/console.h"

#include "host/report/jsonreport.h"
#include "host/report/terminal.h"
#include "host/report/textreport.h"

#include <cstdio>
#include <unistd.h>

void printReport(const Report &report, ReportForm form)
{
    if (form == ReportForm::Json) {
        const QByteArray json = jsonReport(report) + '\n';
        std::fwrite(json.constData(), 1, static_cast<size_t>(json.size()), stdout);
        return;
    }
    const int widthWithoutTerminal = 100;
    printText(textReport(report, terminalWidth(STDOUT_FILENO, widthWithoutTerminal)));
}

void printText(const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

bool outputHasArrived()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}
