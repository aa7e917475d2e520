// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Temporary folders with data of people: they go, whatever ends their process.
#include "host/base/scratchfolder.h"

#include <QDir>
#include <QScopedPointer>
#include <QtTest>

class tst_ScratchFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void folder_isForItsOwnerAndGoes();
    void leftFolder_isRemovedByTheNext();
    void otherFolders_stay();
    void placeThatIsClosed_isTold();

private:
    QString path(const char *name) const { return place->filePath(QLatin1String(name)); }
    /// A folder as a killed process leaves it.
    void leave(const char *name) const;

    const QByteArray usualPlace = QFile::encodeName(QDir::tempPath());
    QScopedPointer<QTemporaryDir> place;
};

void tst_ScratchFolder::init()
{
    qputenv("TMPDIR", usualPlace);
    place.reset(new QTemporaryDir);
    qputenv("TMPDIR", QFile::encodeName(place->path()));
}

void tst_ScratchFolder::leave(const char *name) const
{
    QVERIFY(QDir().mkpath(path(name) + QStringLiteral("/copy/data")));
    for (const char *file : {"/scratch.lock", "/copy/data/people.ibd"}) {
        QFile made(path(name) + QLatin1String(file));
        QVERIFY(made.open(QIODevice::WriteOnly));
    }
}

void tst_ScratchFolder::folder_isForItsOwnerAndGoes()
{
    QString kept;
    {
        const ScratchFolder folder;
        QCOMPARE(folder.failure(), QString());
        kept = folder.path();
        QCOMPARE(QFileInfo(kept).path(), place->path());
        QVERIFY(!(QFile::permissions(kept)
                  & (QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther)));
        removeLeftScratchFolders();
        QVERIFY(QFileInfo::exists(kept));
    }
    QVERIFY(!QFileInfo::exists(kept));
}

void tst_ScratchFolder::leftFolder_isRemovedByTheNext()
{
    leave("talvenhr-scratch-aBcDeF");
    const ScratchFolder other;
    removeLeftScratchFolders();
    QVERIFY(!QFileInfo::exists(path("talvenhr-scratch-aBcDeF")));
    QVERIFY(QFileInfo::exists(other.path()));
}

void tst_ScratchFolder::otherFolders_stay()
{
    leave("talvenhr-other");
    QVERIFY(QDir().mkdir(path("talvenhr-scratch-young"))); // its lock is still to come
    leave("else");
    QVERIFY(QFile::link(path("else"), path("talvenhr-scratch-link")));
    removeLeftScratchFolders();
    for (const char *name : {"talvenhr-other", "talvenhr-scratch-young", "else"})
        QVERIFY2(QFileInfo::exists(path(name)), name);
    QVERIFY(QFileInfo::exists(path("else/copy/data/people.ibd")));
}

void tst_ScratchFolder::placeThatIsClosed_isTold()
{
    QFile file(path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    qputenv("TMPDIR", QFile::encodeName(file.fileName()));
    const ScratchFolder folder;
    QVERIFY2(folder.failure().startsWith(QStringLiteral("cannot make a temporary folder: ")),
             qPrintable(folder.failure()));
}

QTEST_GUILESS_MAIN(tst_ScratchFolder)
#include "tst_scratchfolder.moc"
