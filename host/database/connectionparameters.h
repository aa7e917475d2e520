// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How to reach a database.
#pragma once

#include <QString>

/// How to reach a database, in the terms of Qt's drivers.
struct ConnectionParameters
{
    QString driver = QStringLiteral("QMYSQL");
    QString host;
    int port = -1; ///< -1 for the driver's default
    QString socket; ///< of the driver QMYSQL only
    QString database = QStringLiteral("attendance");
    QString user = QStringLiteral("talvenhr");
    QString password;
    QString connectOptions;
};
