// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The sample company on a server, to be damaged, looked at, mended and restored.
#pragma once

#include "host/doctor/doctor.h"
#include "support/databasefixture.h"

#include <QMap>

#include <functional>

/// A function that looks at the schema of an open handle.
using DoctorLook = std::function<Diagnosis(const QSqlDatabase &)>;

class DoctorFixture : public DatabaseFixture
{
    Q_OBJECT

protected:
    explicit DoctorFixture(const DoctorLook &look);

    void prepare() override;

    /// What the look finds through a new connection: of a login that can only look, or of any other
    /// account without a password.
    Diagnosis diagnosis(const QString &user = QStringLiteral("look"));
    /// Those under which a pass works, for a column `mode`.
    static void addSqlModes();
    /// For new connections.
    void setSqlMode(const QString &mode);
    /// Runs statements as the administrator.
    void execute(const QStringList &statements);
    /// Does what the findings say, where that is SQL. Words in capitals are replaced. False if
    /// some finding's remedy is no SQL.
    bool mend(const Diagnosis &diagnosis, const QMap<QString, QString> &words = {});
    /// The tables as they were at the beginning, and no others.
    void restoreTables();

private:
    void restore(const QString &table);
    QString formOf(const QString &table);

    const DoctorLook look;
    QMap<QString, QString> forms; ///< of the tables as they were
};

/// In their order.
QStringList codesOf(const Diagnosis &diagnosis);
QStringList unknownOf(const Diagnosis &diagnosis);
/// Everything that it says, for the message of a test.
QString toText(const Diagnosis &diagnosis);
