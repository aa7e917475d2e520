// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of exports, to be had by name.
#include "host/company/damage.h"

#include "host/company/celldamage.h"
#include "host/company/sheetdamage.h"

#include <QStringList>

namespace {

const QVector<CellDamage> &cellDamages()
{
    static const QVector<CellDamage> all = valueDamages() + textDamages();
    return all;
}

const QVector<SheetDamage> &sheetDamages()
{
    static const QVector<SheetDamage> all = lineDamages() + personDamages() + fileDamages();
    return all;
}

/// Null for an unknown name.
template <typename Damage>
const Damage *named(const QVector<Damage> &damages, const QString &name)
{
    for (const Damage &damage : damages) {
        if (name == QLatin1String(damage.name))
            return &damage;
    }
    return nullptr;
}

DamagedExport owed(const char *finding, const HurtText &hurt)
{
    const QString code = QLatin1String(finding);
    const bool isSeenInFile = !code.isEmpty() && !code.startsWith(QLatin1String("W-AGAINST-"))
        && !code.startsWith(QLatin1String("W-DATA-"));
    return {hurt.text, hurt.hurts, code, !isSeenInFile};
}

HurtText hurtCell(ExportSheet *sheet, const CellDamage &damage, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    QByteArray &cell = sheet->cell(line, damage.column);
    cell = damage.change(cell);
    return {sheet->text(), {{line, damage.column}}};
}

} // namespace

QStringList damageNames()
{
    QStringList names;
    for (const CellDamage &damage : cellDamages())
        names.append(QLatin1String(damage.name));
    for (const SheetDamage &damage : sheetDamages())
        names.append(QLatin1String(damage.name));
    return names;
}

QString damageMeaning(const QString &name)
{
    if (const CellDamage *damage = named(cellDamages(), name))
        return QString::fromUtf8(damage->meaning);
    const SheetDamage *damage = named(sheetDamages(), name);
    return damage ? QString::fromUtf8(damage->meaning) : QString();
}

DamagedExport damaged(const QByteArray &soundExport, const QString &name, quint32 seed)
{
    ExportSheet sheet(soundExport);
    Draw draw(seed);
    if (const CellDamage *damage = named(cellDamages(), name))
        return owed(damage->finding, hurtCell(&sheet, *damage, &draw));
    if (const SheetDamage *damage = named(sheetDamages(), name))
        return owed(damage->finding, damage->change(&sheet, &draw));
    return {soundExport, {}, QString(), false};
}
