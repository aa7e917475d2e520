// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The one place that writes to standard error while the plugin runs.
#include "host/report/logwriter.h"

#include "host/report/runfigures.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMutexLocker>
#include <QVector>

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

QString now()
{
    return QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
}

QString counted(int count, const char *one, const char *many)
{
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

struct Member
{
    const char *name;
    QJsonValue value;
};

/// Members in the given order, which QJsonObject would not keep. The names need no escaping.
QByteArray jsonObject(const QVector<Member> &members)
{
    QByteArray object;
    for (const Member &member : members) {
        QByteArray value = QJsonDocument(QJsonArray {member.value}).toJson(QJsonDocument::Compact);
        value = value.mid(1, value.size() - 2); // without the array's brackets
        object += (object.isEmpty() ? "{\"" : ",\"") + QByteArray(member.name) + "\":" + value;
    }
    return object + '}';
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

void LogWriter::summary(const RunFigures &figures, qint64 milliseconds)
{
    const double seconds = static_cast<double>(milliseconds) / 1000;
    if (format == LogFormat::Json) {
        writeLine("{\"summary\":"
                  + jsonObject({{"passes", figures.passes},
                                {"records", figures.records},
                                {"added", figures.added},
                                {"updated", figures.updated},
                                {"warnings", figures.warnings},
                                {"errors", figures.errors},
                                {"waiting", figures.waiting},
                                {"seconds", seconds}})
                  + '}');
        return;
    }
    const QStringList parts {counted(figures.passes, "pass", "passes"),
                             counted(figures.records, "record", "records"),
                             counted(figures.added, "person added", "persons added"),
                             QStringLiteral("%1 updated").arg(figures.updated),
                             counted(figures.warnings, "warning", "warnings"),
                             counted(figures.errors, "error", "errors"),
                             QStringLiteral("%1 waiting").arg(figures.waiting),
                             QStringLiteral("%1 s").arg(seconds, 0, 'f', 1)};
    own(QtInfoMsg, QString(), parts.join(QStringLiteral(", ")));
}

void LogWriter::progress(int done, int total)
{
    const QMutexLocker locker(&mutex);
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
    if (format == LogFormat::Json)
        writeLine(jsonLine(type, text));
    else
        writeLine(QStringLiteral("talvenhr: %1%2").arg(opening, oneLine(text)).toLocal8Bit());
}

QByteArray LogWriter::jsonLine(QtMsgType type, const QString &text) const
{
    return jsonObject({{"time", now()}, {"level", levelName(type)}, {"text", text}});
}

void LogWriter::writeLine(const QByteArray &line)
{
    const QMutexLocker locker(&mutex);
    // In one go, so that the lines of other processes do not get in between.
    writeAll(bar.wipe() + line + '\n');
}

QString oneLine(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code == '\n')
            line += QLatin1String("\\n");
        else if (code == '\t')
            line += QLatin1String("\\t");
        else if (code == '\r')
            line += QLatin1String("\\r");
        else if (code < 0x20 || (code >= 0x7f && code < 0xa0))
            line += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        else
            line += character;
    }
    return line;
}
