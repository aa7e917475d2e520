// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// From which log level on the plugin prints which message.
#include "host/catalogue/messagegate.h"

namespace {

struct Gate
{
    QtMsgType type;
    const char *beginning;
    const char *ending; ///< empty if the beginning alone tells
    int logLevel;
};

// What differs from the rule: debug and info lines from level 1 on, warnings and errors always. Of
// two entries for one text the first one counts.
const Gate gates[] = {
    // Settings
    {QtDebugMsg, "EnviroSettings::value() - key: '", "", 0},
    // Tick and pass
    {QtDebugMsg, "THRWorker::checkSync(): #", "", 2},
    {QtDebugMsg, "THRWorker::dbCheckOpen()", "", 2},
    {QtDebugMsg, "THRWorker::doSync() - stack count: ", "", 2},
    {QtDebugMsg, "THRWorker::runCommand(): '", "", 2},
    // Export file
    {QtDebugMsg, "THRWorker::loadAndParseData() - fields: ", "", 3},
    {QtInfoMsg, "THRWorker::loadAndParseData() - loading data from file: '", "", 3},
    {QtDebugMsg, "THRWorker::loadAndParseData()", "", 2},
    {QtWarningMsg, "THRWorker::loadAndParseData() - file '", "' NOT found!", 2},
    {QtDebugMsg, "THRWorker::parseLine('", "", 3},
    {QtWarningMsg, "THRWorker::parseLine() - parts count (", "", 3},
    // One record
    {QtDebugMsg, "THRWorker::doSyncRecord(", "", 3},
    // Person store
    {QtDebugMsg, "THRWorker::dbLoadPeople()", "", 2},
    {QtDebugMsg, "THRWorker::dbCheckPerson(", "", 2},
    {QtDebugMsg, "THRWorker::dbGetUidByPid(", "", 2},
    {QtDebugMsg, "THRWorker::dbChangeLastCalc(", "", 2},
    {QtWarningMsg, "THRWorker::dbAddPerson(", "Testing mode is active, person not really add!", 1},
    {QtWarningMsg, "THRWorker::dbUpdatePerson(",
     "Testing mode is active, person not really update!", 1},
    // PaM
    {QtDebugMsg, "THRWorker::addPersonIntoPam(", "", 2},
    {QtWarningMsg, "THRWorker::dbAddPersonIntoPam(pid: ",
     "Testing mode is active, person not really add into PaM!", 1},
    {QtWarningMsg,
     "THRWorker::dbAddPersonIntoPam(pid: ", "Unique person ID ([people].uid) not found!", 1},
    // Branch and calendar
    {QtDebugMsg, "THRWorker::dbLoadBranches()", "", 2},
    {QtDebugMsg, "THRWorker::doSyncBranchAndCalendar(", "", 3},
    {QtDebugMsg, "THRWorker::dbCheckPersonInBranch(", "", 2},
    {QtDebugMsg, "THRWorker::getGroupIdByCalendar(", "", 2},
    {QtDebugMsg, "THRWorker::dbCheckGroupsPlan(", "", 2},
    // Leave fund: the entries, whereas the results are info lines
    {QtDebugMsg, "THRWorker::checkDovolenkaFond()", "", 2},
    {QtDebugMsg, "THRWorker::dbCheckFundMove(", "", 2},
    {QtDebugMsg, "THRWorker::dbCheckAttendance(", "", 2},
    {QtDebugMsg, "THRWorker::loadFundStatusAndMove3(", "", 2},
    // Supervisor: the entries end with the bracket, the results go on behind it
    {QtDebugMsg, "THRWorker::dbGetAidByOsCis(", ")", 2},
    {QtDebugMsg, "THRWorker::dbResetAdminPeopleRequest(", ")", 2},
    {QtDebugMsg, "THRWorker::dbResetAdminPeopleRequest - query '", "", 2},
    {QtDebugMsg, "THRWorker::dbSetAdminPeopleRequest(", ")", 2},
    {QtDebugMsg, "THRWorker - query '", "", 2},
    // Terminals
    {QtDebugMsg, "THRWorker::addTermSyncPerson(", "", 2},
    // Group plans
    {QtDebugMsg, "GroupsPlanRepo::add(", "", 2},
    {QtDebugMsg, "GroupsPlanRepo::del(", "", 2},
    {QtDebugMsg, "GroupsPlanRepo::updateGroupsMonth(", "", 2},
};

} // namespace

int messageGate(QtMsgType type, const QString &text)
{
    for (const Gate &gate : gates) {
        if (type == gate.type && text.startsWith(QLatin1String(gate.beginning))
            && text.endsWith(QLatin1String(gate.ending)))
            return gate.logLevel;
    }
    return type == QtDebugMsg || type == QtInfoMsg ? 1 : 0;
}

bool isShown(QtMsgType type, const QString &text, int logLevel)
{
    if (type == QtDebugMsg && text.startsWith(QLatin1String("EnviroSettings::value() - key: '")))
        return logLevel > 1;
    return messageGate(type, text) <= logLevel;
}
