// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// This build, installed, and what others make of it.
#pragma once

#include <QStringList>
#include <QTemporaryDir>

/// What the program says on standard output. One that fails, or cannot be started, fails the test
/// with all that it said.
QString outputOf(const QString &program, const QStringList &arguments);

/// An installation of this build in a temporary folder, which goes with the object.
class Installation
{
public:
    /// Of one component, or of all.
    explicit Installation(const QString &component = QString());

    QString path(const QString &name) const { return folder.filePath(name); }
    /// All files, seen from the prefix and sorted.
    QStringList files() const;
    QString program() const { return path(QStringLiteral("bin/talvenhr")); }
    QString plugin() const;
    QString library() const;

    /// Builds the examples with the installed package, in a folder of their own. That folder.
    QString buildExamples() const;

private:
    /// The path of the only file with the name, wherever it lies.
    QString found(const QString &name) const;

    QTemporaryDir folder;
};
