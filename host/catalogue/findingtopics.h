// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The parts of the catalogue of findings, each in a file of its own.
#pragma once

#include "host/catalogue/findings.h"

#include <QtGlobal>

/// Marks a text of a finding for translation.
#define FINDING_TEXT(text) QT_TRANSLATE_NOOP("Findings", text)

FindingTopic exportFileFindings();
FindingTopic exportLineFindings();
FindingTopic exportCellFindings();
FindingTopic exportTextFindings();
FindingTopic exportPeopleFindings();
FindingTopic exportComparisonFindings();
FindingTopic exportDatabaseFindings();
FindingTopic settingFileFindings();
FindingTopic settingValueFindings();
FindingTopic settingCommandFindings();
FindingTopic settingStateFindings();
FindingTopic exportPlaceFindings();
FindingTopic serverKindFindings();
FindingTopic serverModeFindings();
FindingTopic serverTimeFindings();
FindingTopic serverLimitFindings();
FindingTopic connectionFindings();
FindingTopic clusterFindings();
FindingTopic machineFindings();
FindingTopic pluginFileFindings();
FindingTopic tableFindings();
FindingTopic keyFindings();
FindingTopic routineFindings();
FindingTopic rightsFindings();
FindingTopic variableFindings();
FindingTopic branchFindings();
FindingTopic peopleFindings();
