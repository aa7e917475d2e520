// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The pages of a site as values for their templates.
#pragma once

#include "host/status/siteentries.h"

/// A page, and what the index tells of it.
struct SitePage
{
    QVariantHash values; ///< for the template "sitepage"
    SiteNote note;
};

/// The page about an export or a pass. Changes that cannot be read leave it without people.
SitePage sitePage(const SiteEntry &entry, PersonalTexts texts);
/// The name of the copy of the page of a check.
QString checkPageName(const SiteEntry &entry);

/// For the template "siteindex"; the notes stand beside the entries.
QVariantHash siteIndexValues(const Status &status, const QVector<SiteEntry> &entries,
                             const QVector<SiteNote> &notes, PersonalTexts texts);
