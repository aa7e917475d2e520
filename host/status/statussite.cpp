// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a small site.
#include "host/status/statussite.h"

#include "host/status/sitepages.h"

namespace {

/// What each page is made of; a copy of a check changes with its export's page.
QMap<QString, QByteArray> pagesOf(const QVector<SiteEntry> &entries)
{
    QMap<QString, QByteArray> pages;
    for (const SiteEntry &entry : entries) {
        pages.insert(entry.page, entry.madeOf);
        if (!entry.checkPage.isEmpty())
            pages.insert(checkPageName(entry), entry.madeOf);
    }
    return pages;
}

Failure bringUpToDate(const SiteEntry &entry, PersonalTexts texts, SiteFolder *folder)
{
    const SitePage page = sitePage(entry, texts);
    if (!entry.checkPage.isEmpty()) {
        if (const Failure failure = folder->copy(checkPageName(entry), entry.checkPage))
            return failure;
        folder->setNote(checkPageName(entry), page.note);
    }
    if (const Failure failure = folder->write(entry.page, QStringLiteral("sitepage"), page.values))
        return failure;
    folder->setNote(entry.page, page.note);
    return {};
}

} // namespace

Failure writeSite(const Status &status, const SiteTarget &target)
{
    SiteFolder folder(target);
    if (const Failure failure = folder.open())
        return failure;
    const QVector<SiteEntry> entries = siteEntries(status, target);
    if (const Failure failure = folder.begin(pagesOf(entries)))
        return failure;
    QVector<SiteNote> notes;
    for (const SiteEntry &entry : entries) {
        const bool isStale = folder.isStale(entry.page)
            || (!entry.checkPage.isEmpty() && folder.isStale(checkPageName(entry)));
        if (isStale) {
            if (const Failure failure = bringUpToDate(entry, target.texts, &folder))
                return failure;
        }
        notes.append(folder.note(entry.page));
    }
    if (const Failure failure = folder.write(QStringLiteral("index.html"),
                                             QStringLiteral("siteindex"),
                                             siteIndexValues(status, entries, notes, target.texts)))
        return failure;
    return folder.end();
}
