// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// This build, installed, and what others make of it.
#include "support/package/installation.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QtTest>

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(-1);
    const QByteArray output = process.readAllStandardOutput();
    if (process.error() != QProcess::UnknownError || process.exitCode() != 0) {
        const QString call = program + QLatin1Char(' ') + arguments.join(QLatin1Char(' '));
        QTest::qFail(
            (call.toLocal8Bit() + '\n' + output + process.readAllStandardError()).constData(),
            __FILE__, __LINE__);
    }
    return QString::fromLocal8Bit(output);
}

Installation::Installation(const QString &component)
{
    QStringList arguments {QStringLiteral("--install"), QStringLiteral(TALVENHR_BUILD_FOLDER),
                           QStringLiteral("--prefix"), folder.path()};
    if (!component.isEmpty())
        arguments += {QStringLiteral("--component"), component};
    outputOf(QStringLiteral(TALVENHR_CMAKE), arguments);
}

QStringList Installation::files() const
{
    QStringList names;
    QDirIterator entries(folder.path(), QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        names.append(QDir(folder.path()).relativeFilePath(entries.next()));
    names.sort();
    return names;
}

QString Installation::plugin() const
{
    return found(QStringLiteral("libTalvenHR.so"));
}

QString Installation::library() const
{
    return found(QStringLiteral("libtalvenhr_core.a"));
}

QString Installation::found(const QString &name) const
{
    const QStringList paths = files().filter(QLatin1Char('/') + name);
    if (paths.size() != 1)
        QTest::qFail(qPrintable(name + QStringLiteral(" is installed elsewhere, or not once")),
                     __FILE__, __LINE__);
    return path(paths.value(0));
}

QString Installation::buildExamples() const
{
    const QString build = path(QStringLiteral("examples-build"));
    outputOf(QStringLiteral(TALVENHR_CMAKE),
             {QStringLiteral("-G"), QStringLiteral(TALVENHR_GENERATOR), QStringLiteral("-S"),
              QStringLiteral(TALVENHR_SOURCE_FOLDER "/examples"), QStringLiteral("-B"), build,
              QStringLiteral("-DCMAKE_PREFIX_PATH=") + folder.path(),
              QStringLiteral("-DCMAKE_CXX_COMPILER=" TALVENHR_CXX)});
    outputOf(QStringLiteral(TALVENHR_CMAKE), {QStringLiteral("--build"), build});
    return build;
}
