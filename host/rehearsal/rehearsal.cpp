// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The next pass, run on a copy.
#include "host/rehearsal/rehearsal.h"

#include "host/base/childprocess.h"
#include "host/catalogue/messages.h"
#include "host/database/connection.h"
#include "host/rehearsal/pretendedday.h"
#include "host/rehearsal/rehearsalsite.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Rehearsal)
};

const int pollInterval = 50; // milliseconds

QtMsgType typeOf(const QString &level)
{
    if (level == QLatin1String("critical"))
        return QtCriticalMsg;
    if (level == QLatin1String("warning"))
        return QtWarningMsg;
    return level == QLatin1String("info") ? QtInfoMsg : QtDebugMsg;
}

Failure readAll(const ConnectionParameters &parameters, Snapshot *snapshot)
{
    Connection connection(QStringLiteral("talvenhr.rehearsal"));
    if (const Failure failure = connection.open(parameters))
        return failure;
    return readSnapshot(connection.handle(), SnapshotRows::All, snapshot);
}

/// The last lines of what the process has said, for a failure.
QString lastWords(const RehearsedPass &pass)
{
    return pass.warnings.isEmpty() ? Text::tr("it said nothing") : pass.warnings.constLast();
}

} // namespace

Rehearsal::Rehearsal(const RehearsalWishes &rehearsalWishes) :
    wishes(rehearsalWishes)
{ }

Failure Rehearsal::run(const ConnectionParameters &copy, const ConnectionParameters &administrator,
                       RehearsedPass *pass)
{
    if (wishes.today.isValid()) {
        if (const Failure failure = pretendDay(administrator, wishes.today))
            return failure;
    }
    if (const Failure failure = readAll(administrator, &pass->before))
        return failure;
    if (const Failure failure = runPass(copy, pass))
        return failure;
    return readAll(administrator, &pass->after);
}

QStringList Rehearsal::arguments(const ConnectionParameters &copy, const QString &folder) const
{
    QStringList words {QStringLiteral("run"),          QStringLiteral("--once"),
                       QStringLiteral("--data-dir"),   folder,
                       QStringLiteral("--plugin"),     wishes.pluginFile,
                       QStringLiteral("--socket"),     copy.socket,
                       QStringLiteral("--database"),   copy.database,
                       QStringLiteral("--user"),       copy.user,
                       QStringLiteral("--log-format"), QStringLiteral("json"),
                       QStringLiteral("--log-level"),  QStringLiteral("1"),
                       QStringLiteral("--timeout"),    QString::number(wishes.timeout)};
    if (wishes.force)
        words.append(QStringLiteral("--force"));
    return words;
}

Failure Rehearsal::runPass(const ConnectionParameters &copy, RehearsedPass *pass)
{
    RehearsalSite site;
    if (const Failure failure = site.make(wishes.settingsFile, wishes.exportFile))
        return failure;
    QElapsedTimer clock;
    clock.start();
    ChildProcess process;
    process.setProcessEnvironment(environmentOfDay(wishes.today));
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationFilePath(), arguments(copy, site.path()));
    while (!process.waitForFinished(pollInterval) && process.state() != QProcess::NotRunning) {
        if (isInterrupted && isInterrupted()) {
            process.killAll();
            return {ExitInterrupted, Text::tr("interrupted while the pass was rehearsed")};
        }
    }
    pass->milliseconds = clock.elapsed();
    readRunLog(process.readAllStandardError(), pass);
    const int code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    // 1 is a pass with errors, and those are what a rehearsal is for.
    if (code == ExitClean || code == ExitErrors)
        return {};
    return {code < 0 ? ExitErrors : static_cast<ExitCode>(code),
            Text::tr("the rehearsed pass did not come to its end: %1").arg(lastWords(*pass))};
}

void readRunLog(const QByteArray &log, RehearsedPass *pass)
{
    const QList<QByteArray> lines = log.split('\n');
    for (const QByteArray &line : lines) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QString text = object.value(QStringLiteral("text")).toString();
        const QtMsgType type = typeOf(object.value(QStringLiteral("level")).toString());
        const QDateTime time = QDateTime::fromString(
            object.value(QStringLiteral("time")).toString(), Qt::ISODateWithMs);
        if (findMessage(type, text))
            pass->log.append({time, type, text});
        else if (!text.isEmpty() && type != QtDebugMsg && type != QtInfoMsg)
            pass->warnings.append(text);
    }
}
