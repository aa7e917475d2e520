// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a site, and which of its files are ours.
#pragma once

#include "host/base/failure.h"
#include "host/base/ownerfile.h"
#include "host/exportcheck/exportfinding.h"

#include <QMap>
#include <QVariant>

/// Where a site is written, and for whom.
struct SiteTarget
{
    QString folder;
    PersonalTexts texts = PersonalTexts::Shown;
    FileReaders readers = FileReaders::Nobody;
};

/// What the index tells of a page.
struct SiteNote
{
    QByteArray madeOf; ///< differs when the page is to be another one; empty: it is not written
    QString severity; ///< "good", "warning", "error", or empty
    QString what;
    QString outcome;
    qint64 people = 0; ///< who changed
};

/// Keeps in "site.json" what each page was made of, so that only new ones are written, and only our
/// own go.
class SiteFolder
{
public:
    explicit SiteFolder(const SiteTarget &target);

    /// Makes the folder if it is missing. Fails where it holds somebody else's files.
    Failure open();
    /// Says which pages there are to be, each with what it is made of; the others are removed.
    Failure begin(const QMap<QString, QByteArray> &pages);
    /// What was noted of a page that is not stale, or has been since.
    SiteNote note(const QString &page) const { return notes.value(page); }
    void setNote(const QString &page, const SiteNote &note) { notes.insert(page, note); }
    /// The page is not there, or was made of something else.
    bool isStale(const QString &page) const;
    /// Writes a page by a template of host/report/html.
    Failure write(const QString &page, const QString &pattern, const QVariantHash &values);
    /// Copies a page that is there already. One that has gone is not copied.
    Failure copy(const QString &page, const QString &source);
    /// All is written.
    Failure end();

private:
    QString path(const QString &page) const;
    Failure writeNotes() const;
    void readNotes();

    const SiteTarget target;
    QMap<QString, SiteNote> notes; ///< by page
    QMap<QString, QByteArray> wanted; ///< what each page is to be made of
};
