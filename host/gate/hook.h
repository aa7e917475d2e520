// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Somebody else's program that is told what has happened.
#pragma once

#include <QByteArray>
#include <QString>

/// What a hook of the gate has.
const int hookSeconds = 30;

/// Runs the command's program, without a shell, with the JSON on its standard input; it need not
/// read it. What it prints is dropped. After so many seconds it is killed with all that it has
/// started; what it leaves running when it ends in time stays. The result is what went wrong,
/// without the hook's name; empty if nothing did, or if there is no command.
QString runHook(const QString &command, const QByteArray &json, int seconds);
