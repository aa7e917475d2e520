// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Messages: operations of the library that no pass uses.
#include "host/catalogue/messagetexts.h"

namespace {

std::vector<PluginMessage> workerMessages()
{
    return {
        debug(2, "THRWorker::dbCheckPerson(%s)").names(Naming::PamId, 0),
        error("THRWorker::dbCheckPerson() - SQL ERROR [%s]: %s"),
    };
}

std::vector<PluginMessage> membershipMessages()
{
    return {
        info(1, "BranchesRepository::delPeopleFromBranch(%u, '%s')").names(Naming::Uids, 1),
        info(1, "BranchesRepository::addBranchToTerms(%u, '%s')"),
        info(1, "BranchesRepository::delBranchFromTerms(%u, '%s')"),
        info(1, "BranchesRepository::addAdminsToBranch(%u, '%s')"),
        info(1, "BranchesRepository::delAdminsFromBranch(%u, '%s')"),
        info(1, "BranchesRepository::addSectionsToBranch(%u, '%s')"),
        info(1, "BranchesRepository::delSectionsFromBranch(%u, '%s')"),
        warning("BranchesRepository::addBranch() -  branch name can not be empty!"),
        error("BranchesRepository::addBranch - ERROR: %s"),
        error("BranchesRepository::updateBranch - ERROR: %s"),
        error("BranchesRepository::delPeopleFromBranch - ERROR: %s"),
        error("BranchesRepository::addBranchToTerms - ERROR: %s"),
        error("BranchesRepository::delBranchFromTerms - ERROR: %s"),
        error("BranchesRepository::addAdminsToBranch - ERROR: %s"),
        error("BranchesRepository::delAdminsFromBranch - ERROR: %s"),
        error("BranchesRepository::addSectionsToBranch - ERROR: %s"),
        error("BranchesRepository::delSectionsFromBranch [bas] - ERROR: %s"),
        error("BranchesRepository::delSectionsFromBranch [sec_branch] - ERROR: %s"),
    };
}

std::vector<PluginMessage> propagationMessages()
{
    return {
        info(1, "BranchesRepository::slotDeletedPeopleFromBranch(%u, '%s')").names(Naming::Uids, 1),
        info(1, "BranchesRepository::slotAddedBranchToTerms(%u, '%s')"),
        info(1, "BranchesRepository::slotDeletedBranchFromTerms(%u, '%s')"),
        info(1, "BranchesRepository::slotAddedAdminsToBranch(%u, '%s')"),
        info(1, "BranchesRepository::slotDeletedAdminsFromBranch(%u, '%s')"),
        info(1, "BranchesRepository::getUids4Branch(%u)"),
        info(1, "BranchesRepository::getAids4Uid(%u)").names(Naming::Uid, 0),
        info(1, "BranchesRepository::deletePeopleFromTerm(%u, '%s')").names(Naming::Uids, 1),
        info(1, "BranchesRepository::deletePeopleFromTerms(%u, '%s')").names(Naming::Uids, 1),
        info(1, "BranchesRepository::deletePeopleFromAdmin(aid: %u, uid: %u)")
            .names(Naming::Uid, 1),
        info(1, "BranchesRepository::deletePeopleFromAdmin(%u, '%s')").names(Naming::Uids, 1),
        info(1, "BranchesRepository::deletePeopleFromAdmins(%u, '%s')").names(Naming::Uids, 1),
        error("BranchesRepository::getUids4Branch - ERROR: %s"),
        error("BranchesRepository::deletePeopleFromTerm - ERROR: %s"),
        error("BranchesRepository::deletePeopleFromAdmin - ERROR: %s"),
    };
}

std::vector<PluginMessage> tripleMessages()
{
    return {
        info(1, "BranchesRepository::addBAS(%s)"),
        info(1, "BranchesRepository::deleteBAS(%s)"),
        error("BranchesRepository::addBAS() - prepare failed, SQL ERROR: \"%s\""),
        error("BranchesRepository::addBAS() - exec failed, SQL ERROR: \"%s\""),
        error("BranchesRepository::addBAS() - execBatch failed, SQL ERROR: \"%s\""),
        error("BranchesRepository::deleteBAS() - prepare failed, SQL ERROR: \"%s\""),
        error("BranchesRepository::deleteBAS() - exec failed, SQL ERROR: \"%s\""),
        error("BranchesRepository::deleteBAS() - execBatch failed, SQL ERROR: \"%s\""),
    };
}

std::vector<PluginMessage> planAndVariableMessages()
{
    return {
        debug(2, "GroupsPlanRepo::del(%s)").names(Naming::PlannedUid, 0),
        error("GroupsPlanRepo::del - ERROR[%i]: %s"),
        error("GroupsPlanRepo::getCurrentGid [groups_plan] - ERROR[%i]: %s"),
        error("GroupsPlanRepo::getCurrentGid [people] - ERROR[%i]: %s"),
        error("OrvDbSettings::variableDel - SQL ERROR:"),
        error("OrvDbSettings Database Error: \"%s\"").by("OrvDbSettings::dbOpen"),
    };
}

std::vector<PluginMessage> queueMessages()
{
    return {
        error("TermSyncRepository::addTermSyncPerson() ERROR: %s"),
        error("TermSyncRepository::addTermSyncPerson() - updateTermsSync() FAILED! ERROR: %s"),
        error("TermSyncRepository::addTermSyncInter() ERROR: %s"),
        error("TermSyncRepository::addTermSyncInter() - updateTermsSync() FAILED! ERROR: %s"),
        error("TermSyncRepository::addTermSyncTimezone() ERROR: %s"),
        error("TermSyncRepository::addTermSyncTimezone() - update terminals FAILED! ERROR: %s"),
        error("TermSyncRepository::addTermSyncPZT() ERROR: %s"),
        error("TermSyncRepository::addTermSyncPZT() - update terminals FAILED! ERROR: %s"),
        error("TermSyncRepository::addColorGroupsToTermSync() - INSERT INTO `term_sync` FAILED! "
              "ERROR: %s"),
        error("TermSyncRepository::addColorGroupsToTermSync() - Update `term` FAILED! ERROR: %s"),
        error("TermSyncRepository::addColorGroup() ERROR: %s"),
        error("TermSyncRepository::addColorGroup() - INSERT INTO `term_sync` FAILED! ERROR: %s"),
    };
}

} // namespace

MessageTopic libraryMessages()
{
    std::vector<PluginMessage> all;
    for (const auto &some : {workerMessages(), membershipMessages(), propagationMessages(),
                             tripleMessages(), planAndVariableMessages(), queueMessages()})
        all.insert(all.end(), some.begin(), some.end());
    return {"Only in other programs",
            "These come from operations of the library that no pass uses. The operation that a "
            "message names has failed; the error says why.",
            false, all};
}
