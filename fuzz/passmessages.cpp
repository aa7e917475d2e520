// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass may log, and at which level.
#include "passmessages.h"

#include <algorithm>
#include <iterator>

namespace {

/// A message that comes from a log level on.
struct GatedMessage
{
    int level;
    const char *front;
    const char *inside; ///< what must follow somewhere behind the front; null for anything
};

/// The first that fits decides: where one operation speaks at several levels, the longer comes
/// first.
const GatedMessage gatedMessages[] = {
    {1, "debug THRWorker: BEGIN synchronization #", nullptr},
    {1, "debug THRWorker: END synchronization #", nullptr},
    {1, "debug THRWorker::dbAddPerson(", nullptr},
    {1, "warning THRWorker::dbAddPerson(", " - Testing mode is active"},
    {1, "debug THRWorker::dbUpdatePerson(", nullptr},
    {1, "warning THRWorker::dbUpdatePerson(", " - Testing mode is active"},
    {1, "debug THRWorker::dbAddPersonIntoPam(pid: ", nullptr},
    {1, "warning THRWorker::dbAddPersonIntoPam(pid: ", nullptr},
    {1, "info THRWorker::checkDovolenkaFond(): fid=", nullptr},
    {1, "info THRWorker::dbCheckFundMove(pid: ", "): "},
    {1, "info THRWorker::dbCheckAttendance(pid: ", "): "},
    {1, "info THRWorker::loadFundStatusAndMove3(pid: ", ", load OK: "},
    {1, "debug THRWorker::writeFundMove3(uid: ", nullptr},
    {1, "debug THRWorker::processNadOsCis(", ", NOC: "},
    {1, "debug THRWorker::dbGetAidByOsCis(uid: ", "): "},
    {1, "debug THRWorker::dbResetAdminPeopleRequest(aid: ", ") - affected: "},
    {1, "debug THRWorker::dbSetAdminPeopleRequest(aid: ", ") - affected: "},
    {1, "info BranchesRepository::addPeopleToBranch(", nullptr},
    {1, "info BranchesRepository::slotAddedPeopleToBranch(", nullptr},
    {1, "info BranchesRepository::getTids4Branch(", nullptr},
    {1, "info BranchesRepository::getAids4Branch(", nullptr},
    {3, "debug THRWorker::loadAndParseData() - fields: ", nullptr},
    {3, "info THRWorker::loadAndParseData() - loading data from file: ", nullptr},
    {3, "debug THRWorker::parseLine('", nullptr},
    {3, "warning THRWorker::parseLine() - parts count (", nullptr},
    {3, "debug THRWorker::doSyncRecord(", nullptr},
    {3, "debug THRWorker::doSyncBranchAndCalendar(", nullptr},
    {2, "debug THRWorker::dbCheckOpen()", nullptr},
    {2, "debug THRWorker::checkSync(): #", nullptr},
    {2, "debug THRWorker::loadAndParseData()", nullptr},
    {2, "debug THRWorker::doSync() - stack count: ", nullptr},
    {2, "debug THRWorker::dbLoadPeople()", nullptr},
    {2, "debug THRWorker::dbLoadBranches()", nullptr},
    {2, "debug THRWorker::dbGetUidByPid(", nullptr},
    {2, "debug THRWorker::dbChangeLastCalc(", nullptr},
    {2, "debug THRWorker::addPersonIntoPam(", nullptr},
    {2, "debug THRWorker::addTermSyncPerson(", nullptr},
    {2, "debug THRWorker::dbCheckPersonInBranch(", nullptr},
    {2, "debug THRWorker::getGroupIdByCalendar(", nullptr},
    {2, "debug THRWorker::dbCheckGroupsPlan(", nullptr},
    {2, "debug THRWorker::checkDovolenkaFond()", nullptr},
    {2, "debug THRWorker::dbCheckFundMove(pid: ", nullptr},
    {2, "debug THRWorker::dbCheckAttendance(pid: ", nullptr},
    {2, "debug THRWorker::loadFundStatusAndMove3(pid: ", nullptr},
    {2, "debug THRWorker::dbGetAidByOsCis(uid: ", nullptr},
    {2, "debug THRWorker::dbResetAdminPeopleRequest(aid: ", nullptr},
    {2, "debug THRWorker::dbResetAdminPeopleRequest - query '", "' - affected rows: "},
    {2, "debug THRWorker::dbSetAdminPeopleRequest(aid: ", nullptr},
    {2, "debug THRWorker - query '", "' - affected rows: "},
    {2, "debug GroupsPlanRepo::add(", nullptr},
    {2, "debug GroupsPlanRepo::updateGroupsMonth(", nullptr},
};

/// Whose warnings and errors come at every level.
const char *const names[] = {
    "warning THRWorker",
    "critical THRWorker",
    "warning BranchesRepository::",
    "critical BranchesRepository::",
    "critical GroupsPlanRepo::",
    "critical TermSyncRepository::",
    "critical OrvDbSettings::",
    "critical variableSet ERROR:",
};

bool fits(const QString &message, const GatedMessage &gated)
{
    const QLatin1String front(gated.front);
    return message.startsWith(front)
        && (!gated.inside || message.indexOf(QLatin1String(gated.inside), front.size()) >= 0);
}

} // namespace

std::optional<int> lowestLevelOf(const QString &message, const QString &databaseError)
{
    const auto gated = std::find_if(
        std::begin(gatedMessages), std::end(gatedMessages),
        [&message](const GatedMessage &candidate) { return fits(message, candidate); });
    if (gated != std::end(gatedMessages))
        return gated->level;
    const bool known = std::any_of(
        std::begin(names), std::end(names),
        [&message](const char *name) { return message.startsWith(QLatin1String(name)); });
    if (known || message == QLatin1String("critical ") + databaseError)
        return 0;
    return {};
}
