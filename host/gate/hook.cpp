// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Somebody else's program that is told what has happened.
#include "host/gate/hook.h"

#include "host/base/childprocess.h"
#include "host/base/oneline.h"

#include <QDeadlineTimer>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Hook)
};

const int keptErrors = 500; // bytes: more would not be read in a line

/// Of what a program wrote to its standard error, fit for a line; empty if it wrote nothing.
QString lastLine(const QByteArray &errors)
{
    const QByteArray text = errors.trimmed();
    return oneLine(QString::fromLocal8Bit(text.mid(text.lastIndexOf('\n') + 1)));
}

QString withLastLine(const QString &what, const QByteArray &errors)
{
    const QString line = lastLine(errors);
    return line.isEmpty() ? what : what + QStringLiteral(": ") + line;
}

/// How it ended, given what it wrote to its standard error.
QString troubleOf(const QProcess &hook, const QByteArray &errors)
{
    if (hook.exitStatus() == QProcess::CrashExit)
        return withLastLine(Text::tr("it crashed"), errors);
    if (hook.exitCode() != 0)
        return withLastLine(Text::tr("exit code %1").arg(hook.exitCode()), errors);
    return {};
}

} // namespace

QString runHook(const QString &command, const QByteArray &json, int seconds)
{
    const QStringList words = QProcess::splitCommand(command);
    if (words.isEmpty())
        return {};
    ChildProcess hook;
    QByteArray errors;
    QObject::connect(&hook, &QProcess::readyReadStandardError, &hook, [&hook, &errors] {
        errors = (errors + hook.readAllStandardError()).right(keptErrors);
    });
    hook.setStandardOutputFile(QProcess::nullDevice());
    const QDeadlineTimer limit(1000 * static_cast<qint64>(seconds));
    hook.start(words.constFirst(), words.mid(1));
    if (!hook.waitForStarted(static_cast<int>(limit.remainingTime())))
        return Text::tr("it did not start: %1").arg(hook.errorString());
    hook.write(json);
    hook.closeWriteChannel();
    if (hook.state() != QProcess::NotRunning
        && !hook.waitForFinished(static_cast<int>(limit.remainingTime()))) {
        hook.killAll();
        return withLastLine(Text::tr("it was killed after %1 s").arg(seconds), errors);
    }
    return troubleOf(hook, errors);
}
