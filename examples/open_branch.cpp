// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Opens a branch in the attendance database: terminals, an administrator and people move in, and
// the library tells the terminals.
//
// Usage: open_branch SOCKET DATABASE USER NUMBER NAME TERMINALS ADMINISTRATORS PEOPLE
// The last three are lists of ids, such as 1,2,3.
#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"

#include <QCoreApplication>
#include <QDate>
#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 9) {
        std::fputs("Usage: open_branch SOCKET DATABASE USER NUMBER NAME TERMINALS ADMINISTRATORS "
                   "PEOPLE\n",
                   stderr);
        return 2;
    }

    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"));
    db.setConnectOptions(QStringLiteral("UNIX_SOCKET=") + arguments.at(1));
    db.setDatabaseName(arguments.at(2));
    db.setUserName(arguments.at(3));
    if (!db.open()) {
        std::fprintf(stderr, "open_branch: %s\n", qPrintable(db.lastError().text()));
        return 1;
    }

    // The added-signals carry each change on; nothing is deleted here.
    BranchesRepository branches(nullptr, true, false);
    branches.setDb(db);
    BranchRecord branch;
    branch.number = arguments.at(4).toUInt();
    branch.name = arguments.at(5);
    branch.wh1b = 480;
    branch.wh1e = 960;
    const ushort bid = branches.addBranch(branch);
    if (bid == 0)
        return 1;

    // In this order: people who come last are put on the terminals and under the administrators
    // that are there already.
    const bool opened = branches.addBranchToTerms(bid, arguments.at(6))
        && branches.addAdminsToBranch(bid, arguments.at(7))
        && branches.addPeopleToBranch(bid, arguments.at(8));
    std::printf("Branch %u has bid %u, %d terminals in service, %d administrators, %d people, "
                "from month %u on.\n",
                branch.number, bid, branches.getTids4Branch(bid).size(),
                branches.getAids4Branch(bid).size(), branches.getUids4Branch(bid).size(),
                GroupsPlanRepo::monthFromDate(QDate::currentDate()));
    return opened ? 0 : 1;
}
