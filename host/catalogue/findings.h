// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The kinds of findings, and no others: their codes and all their texts.
#pragma once

#include "host/base/finding.h"

#include <QStringList>

#include <vector>

/// What findings of one code have in common. All texts are constants, English, for tr(); %1 to %9
/// stand for values, the same ones in all of them.
struct FindingKind
{
    const char *code; ///< severity (E, W or N), area, matter, such as "W-SET-SWITCH"
    const char *title; ///< the matter in a few words
    const char *text; ///< what is wrong
    const char *becomes; ///< what the plugin makes of it, or what follows; null if nothing does
    const char *remedy; ///< what to do; null if nothing is to be done
    const char *examples; ///< a value for each place, a line each; null without places

    Finding::Severity severity() const;
};

/// Kinds that belong together, in the order in which they are explained.
struct FindingTopic
{
    const char *title;
    const char *introduction;
    std::vector<FindingKind> kinds;
};

const std::vector<FindingTopic> &findingTopics();

/// The kind of the code, which has to be one of the catalogue. For any thread.
const FindingKind &findingKind(const char *code);

/// A finding of the kind. Values may hold anything, also what looks like a place.
Finding finding(const FindingKind &kind, const QString &about, const QStringList &values = {});
Finding finding(const char *code, const QString &about, const QStringList &values = {});

/// The title of the kind, for people.
QString findingTitle(const FindingKind &kind);
