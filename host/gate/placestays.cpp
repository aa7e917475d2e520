// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When exports lay in their place, and when they were gone.
#include "host/gate/placestays.h"

#include "host/base/ownerfile.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

const int keptStays = 200;

QString pathIn(const QString &stateFolder)
{
    return QDir(stateFolder).filePath(QStringLiteral("place"));
}

/// "-" for none.
QString momentWord(const QDateTime &moment)
{
    return moment.isValid() ? moment.toUTC().toString(Qt::ISODateWithMs) : QStringLiteral("-");
}

QDateTime momentOf(const QString &word)
{
    return QDateTime::fromString(word, Qt::ISODateWithMs);
}

Failure writeStays(const QString &stateFolder, const QVector<PlaceStay> &stays)
{
    QString text;
    for (const PlaceStay &stay : stays.mid(qMax(0, stays.size() - keptStays)))
        text += QStringLiteral("%1 %2 %3\n")
                    .arg(stay.record, momentWord(stay.seen), momentWord(stay.gone));
    return writeOwnerFile(pathIn(stateFolder),
                          [&text](QIODevice *file) { file->write(text.toUtf8()); });
}

} // namespace

QVector<PlaceStay> readPlaceStays(const QString &stateFolder)
{
    QFile file(pathIn(stateFolder));
    if (stateFolder.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    QVector<PlaceStay> stays;
    const QStringList lines = QString::fromUtf8(file.readAll())
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.size() == 3)
            stays.append({words.at(0), momentOf(words.at(1)), momentOf(words.at(2))});
    }
    return stays;
}

const PlaceStay *stayOf(const QVector<PlaceStay> &stays, const QString &record)
{
    const auto found = std::find_if(
        stays.crbegin(), stays.crend(),
        [&record](const PlaceStay &stay) { return stay.record == record; });
    return found == stays.crend() ? nullptr : &*found;
}

Failure notePlace(const QString &stateFolder, const QString &record, bool isThere,
                  const QDateTime &folderChanged, const QDateTime &now)
{
    QVector<PlaceStay> stays = readPlaceStays(stateFolder);
    if (stays.isEmpty() || stays.constLast().record != record)
        stays.append({record, {}, {}});
    PlaceStay &stay = stays.last();
    if (!isThere && stay.gone.isValid())
        return {};
    if (isThere) {
        stay.seen = now;
        stay.gone = QDateTime();
    } else {
        // A change before it was last seen is none of its going: a clock was set back.
        const bool tells = folderChanged.isValid() && folderChanged <= now
            && (!stay.seen.isValid() || folderChanged >= stay.seen);
        stay.gone = tells ? folderChanged : now;
    }
    return writeStays(stateFolder, stays);
}
