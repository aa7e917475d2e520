// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What was mended, in words.
#include "host/base/oneline.h"
#include "host/gate/mend.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(MendReport)
};

QString kindName(MendedCell::Kind kind)
{
    switch (kind) {
    case MendedCell::Apostrophe:
        return QStringLiteral("apostrophe");
    case MendedCell::ByteOrderMark:
        return QStringLiteral("bom");
    case MendedCell::CarriageReturn:
        return QStringLiteral("cr");
    case MendedCell::Encoding:
        break;
    }
    return QStringLiteral("encoding");
}

QString placeOf(const MendedCell &cell)
{
    return cell.column.isEmpty() ? Text::tr("line %1").arg(cell.line)
                                 : Text::tr("line %1, %2").arg(cell.line).arg(cell.column);
}

QString lineOf(const MendedCell &cell)
{
    switch (cell.kind) {
    case MendedCell::ByteOrderMark:
        return Text::tr("the byte order mark before the first line is dropped");
    case MendedCell::CarriageReturn:
        return Text::tr("carriage returns before line ends are dropped: %1").arg(cell.count);
    case MendedCell::Apostrophe:
    case MendedCell::Encoding:
        break;
    }
    // Both at once: a name may hold a marker.
    return Text::tr("%1 (%2): '%3' becomes '%4'")
        .arg(placeOf(cell), kindName(cell.kind), oneLine(cell.before), oneLine(cell.after));
}

} // namespace

QByteArray mendedText(const QVector<MendedCell> &mended)
{
    QByteArray text;
    for (const MendedCell &cell : mended)
        text += lineOf(cell).toUtf8() + '\n';
    return text;
}
