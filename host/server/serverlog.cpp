// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the log of a MariaDB server tells of a failure.
#include "host/server/serverlog.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <cerrno>
#include <cstring>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerLog)
};

const qint64 longestSection = 1 << 20; // bytes

struct LogLine
{
    QString level; ///< "ERROR", "Warning", "Note"; empty where the line has none
    QString text;
};

LogLine takeApart(const QString &line)
{
    static const QRegularExpression opening(
        QStringLiteral("^(?:\\d{4}-\\d\\d-\\d\\d|\\d{6})\\s+\\d+:\\d\\d:\\d\\d(?: \\d+)? "
                       "\\[(\\w+)\\] (.*)$"));
    const QRegularExpressionMatch match = opening.match(line);
    return match.hasMatch() ? LogLine {match.captured(1), match.captured(2)}
                            : LogLine {QString(), line};
}

bool isWaitForSpace(const QString &text)
{
    return text.contains(QLatin1String("Disk is full"));
}

/// A line without a level is a complaint if it names an error.
bool namesError(const QString &text)
{
    return text.startsWith(QLatin1String("ERROR")) || text.startsWith(QLatin1String("FATAL ERROR"))
        || text.contains(QLatin1String("(Errcode: ")) || text.contains(QLatin1String("(errno: "));
}

bool isComplaint(const LogLine &line)
{
    if (line.level == QLatin1String("ERROR"))
        return line.text != QLatin1String("Aborting");
    return line.level.isEmpty() ? namesError(line.text) : isWaitForSpace(line.text);
}

/// What the script that makes the data says by itself, before its advice. A server at work has no
/// such words: its lines have a level.
QString wordsOfScript(const QStringList &lines)
{
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("Installation of system tables failed"))
            || !takeApart(line).level.isEmpty())
            break;
        if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1String("Installing ")))
            return line.trimmed();
    }
    return QString();
}

QString withSystemsWord(const QString &text)
{
    // "OS error" is a number of the server's own.
    static const QRegularExpression number(
        QStringLiteral("(?<!OS )\\berror(?: number|:)? (\\d+)\\b"));
    const QRegularExpressionMatch match = number.match(text);
    return match.hasMatch() ? QStringLiteral("%1 (%2)").arg(
               text, QString::fromLocal8Bit(std::strerror(match.captured(1).toInt())))
                            : text;
}

/// The server's promise to go on is none: nobody knows when.
QString withoutPromise(const QString &text)
{
    return text.section(QStringLiteral(". Waiting for"), 0, 0);
}

bool isAboutSpace(const QString &complaint)
{
    return isWaitForSpace(complaint) || complaint.contains(QLatin1String("No space left on device"))
        || complaint.contains(QLatin1String("No more room in record file"))
        || complaint.contains(QString::fromLocal8Bit(std::strerror(ENOSPC)))
        || complaint.contains(QString::fromLocal8Bit(std::strerror(EDQUOT)));
}

} // namespace

QString decisiveLine(const QByteArray &log)
{
    const QStringList lines = QString::fromLocal8Bit(log).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const LogLine parts = takeApart(line);
        if (isComplaint(parts))
            return withSystemsWord(withoutPromise(parts.text.simplified()));
    }
    return wordsOfScript(lines);
}

bool waitsForSpace(const QByteArray &log)
{
    return log.contains("Disk is full") && log.contains("Waiting for someone to free space");
}

QString withRemedy(const QString &complaint)
{
    return isAboutSpace(complaint)
        ? Text::tr("%1; make room on its disk and run again").arg(complaint)
        : complaint;
}

LogSection::LogSection(const QString &path) :
    name(path),
    begin(QFileInfo(path).size())
{ }

QByteArray LogSection::text() const
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) && file.seek(begin) ? file.read(longestSection)
                                                              : QByteArray();
}
