// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The programs of MariaDB that a private server consists of.
#pragma once

#include <QString>
#include <QStringList>

class QProcess;

/// The path of a program, also where only administrators have it in their PATH. Empty, with the
/// reason, if it is not installed.
QString findProgram(const QString &name, QString *error);

/// Options for a server that is to start in a moment, to stay small, and to run as this user.
QStringList sizeOptions();

/// A server greets whoever connects to this socket. Waits for the greeting for at most a second.
bool answers(const QString &socketPath);

/// The process was started, was not killed, and ended without an error.
bool startedAndEndedWell(const QProcess &process);

/// What a client says is wrong; it quotes the statement before that.
QString faultLine(const QByteArray &output);
