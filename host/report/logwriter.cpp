// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The one place that writes to standard error while the plugin runs.
#include "host/report/logwriter.h"

#include "host/base/oneline.h"
#include "host/report/jsonreport.h"
#include "host/report/report.h"

#include <QDateTime>
#include <QMutexLocker>

#include <cerrno>
#include <unistd.h>

namespace {

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("info");
    case QtWarningMsg:
        return QStringLiteral("warning");
    case QtCriticalMsg:
        return QStringLiteral("critical");
    case QtFatalMsg:
        break;
    }
    return QStringLiteral("fatal");
}

/// With the offset from UTC, of one width.
QString now()
{
    const QDateTime moment = QDateTime::currentDateTime();
    return moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

void writeAll(const QByteArray &bytes)
{
    const char *position = bytes.constData();
    size_t left = static_cast<size_t>(bytes.size());
    while (left > 0) {
        const ssize_t written = ::write(STDERR_FILENO, position, left);
        if (written < 0 && errno != EINTR)
            return; // Nobody is left to be told.
        if (written > 0) {
            position += written;
            left -= static_cast<size_t>(written);
        }
    }
}

} // namespace

LogWriter::LogWriter(LogFormat lineFormat) :
    format(lineFormat)
{ }

LogWriter::~LogWriter()
{
    wipeProgress();
}

void LogWriter::message(QtMsgType type, const QString &text)
{
    if (format == LogFormat::Json)
        writeLine(jsonLine(type, text));
    else
        writeLine(QStringLiteral("%1 %2 %3")
                      .arg(now(), levelName(type).leftJustified(8), oneLine(text))
                      .toLocal8Bit());
}

void LogWriter::say(const QString &text)
{
    own(QtInfoMsg, QString(), text);
}

void LogWriter::warn(const QString &text)
{
    own(QtWarningMsg, QStringLiteral("warning: "), text);
}

void LogWriter::fail(const QString &text)
{
    own(QtCriticalMsg, QString(), text);
}

void LogWriter::activity(const QString &what)
{
    const bool isNew = what != lastActivity;
    if (isNew) {
        lastActivity = what;
        sinceActivity.start();
    }
    if (format == LogFormat::Text && ProgressBar::isPossible()) {
        const QMutexLocker locker(&mutex);
        writeAll(bar.draw(QStringLiteral("talvenhr: ") + oneLine(what), sinceActivity));
    } else if (isNew) {
        say(what);
    }
}

void LogWriter::summary(const Report &report)
{
    const QByteArray line = format == LogFormat::Json
        ? jsonObject({{QStringLiteral("summary"), jsonReport(report)}})
        : ownLine(QtInfoMsg, QString(), report.verdict.text);
    const QMutexLocker locker(&mutex);
    writeAll(bar.wipe() + line + '\n');
    isOver = true;
}

void LogWriter::progress(int done, int total)
{
    const QMutexLocker locker(&mutex);
    if (!isOver)
        writeAll(bar.draw(done, total));
}

void LogWriter::wipeProgress()
{
    const QMutexLocker locker(&mutex);
    writeAll(bar.wipe());
}

/// In the text form without time and level, so that the command's voice stands out from the log.
void LogWriter::own(QtMsgType type, const QString &opening, const QString &text)
{
    writeLine(ownLine(type, opening, text));
}

QByteArray LogWriter::ownLine(QtMsgType type, const QString &opening, const QString &text) const
{
    return format == LogFormat::Json
        ? jsonLine(type, text)
        : QStringLiteral("talvenhr: %1%2").arg(opening, oneLine(text)).toLocal8Bit();
}

QByteArray LogWriter::jsonLine(QtMsgType type, const QString &text) const
{
    return jsonObject({{QStringLiteral("time"), jsonValue(now())},
                       {QStringLiteral("level"), jsonValue(levelName(type))},
                       {QStringLiteral("text"), jsonValue(text)}});
}

void LogWriter::writeLine(const QByteArray &line)
{
    const QMutexLocker locker(&mutex);
    // In one go, so that the lines of other processes do not get in between.
    if (!isOver)
        writeAll(bar.wipe() + line + '\n');
}
