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

void noteTrouble(bool arrived)
{
    if (!arrived && writeError == 0)
        writeError = errno == 0 ? EIO : errno;
}

/// May stay in the stream's buffer.
void put(const QByteArray &bytes)
{
    errno = 0;
    const auto size = static_cast<size_t>(bytes.size());
    noteTrouble(std::fwrite(bytes.constData(), 1, size, stdout) == size);
}

void flush()
{
    errno = 0;
    noteTrouble(std::fflush(stdout) == 0);
}

} // namespace

void printReport(const Report &report, ReportForm form)
{
    if (form == ReportForm::Json) {
        writeJsonReport(report, put);
        put("\n");
        flush();
        return;
    }
    printText(textReport(report, outputWidth()));
}

int outputWidth()
{
    const int widthWithoutTerminal = 100;
    return terminalWidth(STDOUT_FILENO, widthWithoutTerminal);
}

bool outputTakesColour()
{
    return isatty(STDOUT_FILENO) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR");
}

void printBytes(const QByteArray &bytes)
{
    put(bytes);
}

void flushOutput()
{
    flush();
}

void printText(const QString &text)
{
    put(text.toLocal8Bit());
    flush();
}

QString outputTrouble()
{
    return writeError == 0 ? QString() : QString::fromLocal8Bit(std::strerror(writeError));
}
