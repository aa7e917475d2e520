// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: the export file, from its lines to records.
#include "worker/thrworker.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace {

/// Only their number and their log line matter: names are not compared with the file's first line.
QStringList exportFields()
{
    return {QStringLiteral("OsobniCislo"),
            QStringLiteral("PoradoveCisloPP"),
            QStringLiteral("Titul"),
            QStringLiteral("Jmeno"),
            QStringLiteral("Prijmeni"),
            QStringLiteral("TitulZa"),
            QStringLiteral("Telefon"),
            QStringLiteral("DatumNastupu"),
            QStringLiteral("DatumVystupu"),
            QStringLiteral("Stredisko"),
            QStringLiteral("StrediskoPopis"),
            QStringLiteral("Kalendar"),
            QStringLiteral("KalendarPlatnostOd"),
            QStringLiteral("TypPracovnihoPomeru"),
            QStringLiteral("StavPracovnihoPomeru"),
            QStringLiteral("EvidencniStav"),
            QStringLiteral("DovolenaZustatek"),
            QStringLiteral("NadrizenyOsobniCislo")};
}

QString dateFormat()
{
    return QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
}

/// 0 for an empty cell, one that is no number, and a number beyond 32 bits; of others the low 16
/// bits.
ushort toUShort(const QString &cell)
{
    return static_cast<ushort>(cell.toUInt());
}

} // namespace

void THRWorker::loadAndParseData()
{
    if (logLevel > 1)
        qDebug("THRWorker::loadAndParseData()");
    const QStringList fields = exportFields();
    if (logLevel > 2)
        qDebug("THRWorker::loadAndParseData() - fields: %s",
               qPrintable(fields.join(QStringLiteral(", "))));

    const QString path = importFile.isEmpty() ? QStringLiteral("ron.data") : importFile;
    const QFileInfo info(path);
    if (logLevel > 2)
        qInfo("THRWorker::loadAndParseData() - loading data from file: '%s'",
              qPrintable(info.absoluteFilePath()));
    if (!info.isFile()) {
        if (logLevel > 1)
            qWarning("THRWorker::loadAndParseData() - file '%s' NOT found!", qPrintable(path));
        return;
    }

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCritical("THRWorker::loadAndParseData() - file '%s' not opened!", qPrintable(path));
        return;
    }
    while (!file.atEnd()) {
        const QByteArray bytes = file.readLine();
        // Not even a line end: the file cannot be read on. What was read so far counts as the file.
        if (bytes.isEmpty())
            break;
        // Up to the first NUL byte.
        const QString line = QString::fromUtf8(bytes.constData()).trimmed();
        if (!line.isEmpty())
            parseLine(line, fields, QLatin1Char('|'));
    }
    file.close();

    if (deleteFile && !file.remove())
        qWarning("THRWorker::loadAndParseData() - file '%s' NOT removed!", qPrintable(path));
}

void THRWorker::parseLine(const QString &line, const QStringList &fields, QChar separator)
{
    if (logLevel > 2)
        qDebug("THRWorker::parseLine('%s')", qPrintable(line));

    const QStringList parts = line.split(separator);
    if (parts.count() != fields.count()) {
        // Deliberate: alone among the warnings of the file it needs the highest level, so that a
        // bad line vanishes without a trace at the lower ones. Pinned by
        // tst_Import::parseLine_wrongCountIsSilentBelowLevel3().
        if (logLevel > 2)
            qWarning("THRWorker::parseLine() - parts count (%i) <> fields count(%i) - "
                     "line skipped!",
                     parts.count(), fields.count());
        return;
    }

    EmployeeRecord record;
    record.osobniCislo = parts.value(0).toUInt();
    record.poradoveCisloPP = parts.value(1).toUInt();
    record.titul = parts.value(2);
    record.jmeno = parts.value(3);
    record.prijmeni = parts.value(4);
    record.titulZa = parts.value(5);
    record.telefon = parts.value(6);
    record.datumNastupu = dateFromText(parts.value(7), dateFormat());
    record.datumVystupu = dateFromText(parts.value(8), dateFormat());
    record.stredisko = parts.value(9).toUInt();
    record.strediskoPopis = parts.value(10);
    record.calendarID = parts.value(11).toUInt();
    record.kalendarPlatnostOd = dateFromText(parts.value(12), dateFormat());
    record.typPracovnihoPomeru = toUShort(parts.value(13));
    record.stavPracovnihoPomeru = toUShort(parts.value(14));
    record.evidencniStav = toUShort(parts.value(15));
    record.dovolenaZustatek = parts.value(16).toDouble();
    record.nadOsCis = parts.value(17).toUInt();

    // The header line ends here too: its first cell reads as 0.
    if (record.isUsable())
        importedRecords.append(record);
}

QDate THRWorker::dateFromText(const QString &text, const QString &format)
{
    return QDateTime::fromString(text, format).date();
}
