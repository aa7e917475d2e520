// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts that all pages of a status have.
#pragma once

#include "host/status/status.h"

/// "2026-11-22 13:40:02" in local time; empty for no moment.
QString momentText(const QDateTime &moment);
/// "3 days", "5 h 12 min", "40 s"; two parts at most.
QString durationText(qint64 seconds);
QString ageText(const QDateTime &since, const QDateTime &now);
/// "1.4 MB"
QString sizeText(qint64 bytes);

/// Why an export was refused, in one line; empty for one that was not.
QString reasonText(const GateRecord &record);
/// What to do about a refusal: what its first reason asks for, and how it can be let through.
QString refusalRemedy(const GateRecord &record);
/// "passed", "refused", … for people.
QString outcomeText(const GateRecord &record);
/// What something waits for.
QString whatText(NotDone::What what);
/// The person's number, and the name unless it is to be left out.
QString personText(const Person &person, PersonalTexts texts);

/// Somebody, and what they wait for: each thing once.
struct WaitingFor
{
    Person person;
    QStringList reasons;
};

/// Those who wait for somebody, each once.
QVector<WaitingFor> waitingForSomebody(const Status &status);

/// What is missing of somebody: in words, or, without names, in kinds.
QStringList missingWords(const LostPerson &lost, PersonalTexts texts);
/// The same in one line, with what is not certain of it.
QString missingText(const LostPerson &lost, PersonalTexts texts);
/// What brings it back, in a few words.
QString remedyText(Remedy remedy);
/// The commands and statements that bring back all that is lost, in their order; a line that
/// begins with "#" is for the reader. Empty if nothing is lost.
QStringList recoverySteps(const Status &status, PersonalTexts texts);
