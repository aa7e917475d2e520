// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a site, and which of its files are ours.
#include "host/status/sitefolder.h"

#include "host/report/htmlpage.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/stat.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SiteFolder)
};

QString listName()
{
    return QStringLiteral("site.json");
}

mode_t folderMode(FileReaders readers)
{
    switch (readers) {
    case FileReaders::Everybody:
        return 0755;
    case FileReaders::Group:
        return 0750;
    case FileReaders::Nobody:
        break;
    }
    return 0700;
}

/// A list that somebody has written by hand leads nowhere else.
bool isPageName(const QString &name)
{
    return name.endsWith(QLatin1String(".html")) && !name.contains(QLatin1Char('/'))
        && !name.startsWith(QLatin1Char('.'));
}

} // namespace

SiteFolder::SiteFolder(const SiteTarget &siteTarget) :
    target(siteTarget)
{ }

QString SiteFolder::path(const QString &page) const
{
    return QDir(target.folder).filePath(page);
}

Failure SiteFolder::open()
{
    const QFileInfo info(target.folder);
    if (info.exists() && !info.isDir())
        return {ExitUsage, Text::tr("'%1' is no folder for a site").arg(target.folder)};
    const QByteArray name = QFile::encodeName(target.folder);
    if (!info.exists()) {
        QDir().mkpath(info.absolutePath());
        // Group and others count whatever the umask of the caller says.
        if (::mkdir(name.constData(), 0700) != 0
            || ::chmod(name.constData(), folderMode(target.readers)) != 0)
            return {ExitUsage,
                    Text::tr("the folder '%1' for the site cannot be made: %2")
                        .arg(target.folder, qt_error_string(errno))};
        return {};
    }
    if (QFileInfo::exists(path(listName()))) {
        readNotes();
        return {};
    }
    if (QDir(target.folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        return {};
    return {ExitUsage,
            Text::tr("'%1' holds other files than those of a site; name a new or empty folder")
                .arg(target.folder)};
}

void SiteFolder::readNotes()
{
    QFile file(path(listName()));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QJsonObject pages = QJsonDocument::fromJson(file.readAll())
                                  .object()
                                  .value(QStringLiteral("pages"))
                                  .toObject();
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        const QJsonObject note = page.value().toObject();
        const auto text = [&note](const char *name) {
            return note.value(QLatin1String(name)).toString();
        };
        if (isPageName(page.key()))
            notes.insert(page.key(),
                         {text("madeOf").toLatin1(), text("severity"), text("what"),
                          text("outcome"), note.value(QStringLiteral("people")).toInt()});
    }
}

Failure SiteFolder::writeNotes() const
{
    QJsonObject pages;
    for (auto page = notes.begin(); page != notes.end(); ++page)
        pages.insert(page.key(),
                     QJsonObject {{QStringLiteral("madeOf"), QString::fromLatin1(page->madeOf)},
                                  {QStringLiteral("severity"), page->severity},
                                  {QStringLiteral("what"), page->what},
                                  {QStringLiteral("outcome"), page->outcome},
                                  {QStringLiteral("people"), page->people}});
    const QByteArray text = QJsonDocument(QJsonObject {{QStringLiteral("format"),
                                                        QStringLiteral("talvenhr.site/1")},
                                                       {QStringLiteral("pages"), pages}})
                                .toJson(QJsonDocument::Compact);
    return writeOwnerFile(path(listName()), [&text](QIODevice *file) { file->write(text + '\n'); });
}

/// Pages are noted before they are written: those of a run that was cut off are ours.
Failure SiteFolder::begin(const QMap<QString, QByteArray> &pages)
{
    wanted = pages;
    const QStringList known = notes.keys();
    for (const QString &page : known) {
        if (!wanted.contains(page)) {
            QFile::remove(path(page));
            notes.remove(page);
        }
    }
    const QStringList names = wanted.keys();
    for (const QString &page : names) {
        if (isStale(page))
            notes.insert(page, SiteNote());
    }
    return writeNotes();
}

bool SiteFolder::isStale(const QString &page) const
{
    return notes.value(page).madeOf != wanted.value(page) || !QFileInfo::exists(path(page));
}

Failure SiteFolder::write(const QString &page, const QString &pattern, const QVariantHash &values)
{
    return writeHtmlPage(path(page), pattern, values, target.readers);
}

Failure SiteFolder::copy(const QString &page, const QString &source)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    return writeOwnerFile(
        path(page), [&bytes](QIODevice *copied) { copied->write(bytes); }, target.readers);
}

Failure SiteFolder::end()
{
    return writeNotes();
}
