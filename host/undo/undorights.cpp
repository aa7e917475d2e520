// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The account that takes a pass back.
#include "host/undo/undorights.h"

#include "host/database/errortext.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoRights)
};

} // namespace

/// `doctor --grants` names the accounts after that of the plugin.
Failure missingUndoRight(const QString &user, const QSqlError &error)
{
    const QString ending = QStringLiteral("_undo");
    if (user.endsWith(ending))
        return {ExitDatabase,
                Text::tr("nothing was taken back: the account '%1' lacks a right: %2; give it "
                         "those that 'talvenhr doctor --grants' prints for it")
                    .arg(user, errorText(error))};
    QString plugin = user;
    if (plugin.endsWith(QLatin1String("_read")))
        plugin.chop(5);
    return {ExitDatabase,
            Text::tr("nothing was taken back: the account '%1' has no right to do so: %2; use the "
                     "one for undo, with --user %3 and its --password-file; 'talvenhr doctor "
                     "--grants --user %4' prints the statements that make it")
                .arg(user, errorText(error), plugin + ending, plugin)};
}
