// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Standard output.
#include "host/report/console.h"

#include "host/report/jsonreport.h"
#include "host/report/terminal.h"
#include "host/report/textreport.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

int writeError = 0; // the first one, as errno tells it

void write(const QByteArray &bytes)
{
    errno = 0;
    const auto size = static_cast<size_t>(bytes.size());
    const bool arrived = std::fwrite(bytes.constData(), 1, size, stdout) == size
        && std::fflush(stdout) == 0;
    if (!arrived && writeError == 0)
        writeError = errno == 0 ? EIO : errno;
}

} // namespace

void printReport(const Report &report, ReportForm form)
{
    if (form == ReportForm::Json) {
        write(jsonReport(report) + '\n');
        return;
    }
    const int widthWithoutTerminal = 100;
    printText(textReport(report, terminalWidth(STDOUT_FILENO, widthWithoutTerminal)));
}

void printText(const QString &text)
{
    write(text.toLocal8Bit());
}

QString outputTrouble()
{
    return writeError == 0 ? QString() : QString::fromLocal8Bit(std::strerror(writeError));
}
