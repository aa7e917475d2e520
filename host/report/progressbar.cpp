// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A line at the bottom of the terminal that shows how far a pass has come, or what goes on.
#include "host/report/progressbar.h"

#include "host/report/terminal.h"

#include <unistd.h>

namespace {

const int shortestPause = 100; // milliseconds
const int widestBar = 40; // characters
const char wipeLine[] = "\r\033[K";

} // namespace

QByteArray ProgressBar::draw(int done, int total)
{
    if (total <= 0 || (sinceDrawn.isValid() && sinceDrawn.elapsed() < shortestPause))
        return QByteArray();
    sinceDrawn.start();
    visible = true;

    const QByteArray figures = QByteArray::number(done) + " of " + QByteArray::number(total)
        + " records, " + QByteArray::number(100LL * done / total) + " %";
    // Brackets, a blank and the last column, which some terminals answer with a new line.
    const int room = terminalWidth(STDERR_FILENO, 80) - figures.size() - 4;
    QByteArray line(wipeLine);
    if (room >= 8) {
        const int width = qMin(room, widestBar);
        const int full = static_cast<int>(static_cast<long long>(width) * done / total);
        line += '[' + QByteArray(full, '#') + QByteArray(width - full, '-') + "] ";
    }
    return line + figures;
}

QByteArray ProgressBar::draw(const QString &text, const QElapsedTimer &lasting)
{
    const QString seconds = QStringLiteral(", %1 s").arg(lasting.elapsed() / 1000);
    const int room = terminalWidth(STDERR_FILENO, 80) - 1 - seconds.size();
    const QByteArray line = (text.left(room) + seconds).toLocal8Bit();
    if (visible && line == drawnText)
        return QByteArray();
    visible = true;
    drawnText = line;
    return wipeLine + line;
}

QByteArray ProgressBar::wipe()
{
    if (!visible)
        return QByteArray();
    visible = false;
    return QByteArray(wipeLine);
}

bool ProgressBar::isPossible()
{
    const QByteArray terminal = qgetenv("TERM");
    return ::isatty(STDERR_FILENO) == 1 && !terminal.isEmpty() && terminal != "dumb";
}
