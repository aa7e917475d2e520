// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: the export file, from its lines to records.
#include "worker/thrworker.h"

#include <QFile>
#include <QFileInfo>
#include <QVarLengthArray>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

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

/// Gives the lines of a file, without their ends, up to its end or up to where it can no longer be
/// read: what came until then counts as the file.
class Lines
{
public:
    explicit Lines(QIODevice *source) :
        device(source)
    { }

    /// The next line up to its first NUL byte. False when there is none.
    bool next(QString *line)
    {
        int end = findEnd(start);
        while (end < 0) {
            const int searched = buffer.size() - start;
            if (!readOn())
                break;
            end = findEnd(start + searched);
        }
        if (start == buffer.size())
            return false;
        const int stop = end < 0 ? buffer.size() : end;
        const char *const bytes = buffer.constData() + start;
        const int size = stop - start;
        const void *const nul = std::memchr(bytes, 0, size);
        *line = QString::fromUtf8(bytes, nul ? distance(bytes, nul) : size);
        start = end < 0 ? stop : stop + 1;
        return true;
    }

private:
    /// Where the next line end stands; -1 when there is none in the buffer.
    int findEnd(int from) const
    {
        const char *const bytes = buffer.constData();
        const void *const found = std::memchr(bytes + from, '\n', buffer.size() - from);
        return found ? distance(bytes, found) : -1;
    }

    static int distance(const char *from, const void *to)
    {
        return static_cast<int>(static_cast<const char *>(to) - from);
    }

    /// Reads behind what is left of the buffer, and the more the longer a line already is.
    bool readOn()
    {
        buffer.remove(0, start);
        start = 0;
        const int left = buffer.size();
        if (left > longestLine)
            return false; // it goes on as another line
        buffer.resize(left + qBound(blockSize, left, longestBlock));
        const qint64 count = device->read(buffer.data() + left, buffer.size() - left);
        buffer.resize(left + static_cast<int>(qMax(count, Q_INT64_C(0))));
        return count > 0;
    }

    static constexpr int blockSize = 1 << 16;
    static constexpr int longestBlock = 1 << 26;
    static constexpr int longestLine = std::numeric_limits<int>::max() - 2 * longestBlock;

    QIODevice *const device;
    QByteArray buffer;
    int start = 0;
};

/// Somewhat more lines than an export of this size has, as a rule. What is set aside for them and
/// not used costs no memory, only addresses; the records of a company beyond a million grow on.
int usualLines(qint64 bytes)
{
    const qint64 shortLine = 100;
    const qint64 mostLines = 1 << 20;
    return static_cast<int>(qMin(bytes / shortLine, mostLines));
}

using Parts = QVarLengthArray<QStringRef, 18>;

Parts split(const QString &line, QChar separator)
{
    Parts parts;
    const QChar *const text = line.constData();
    const QChar *const end = text + line.size();
    for (const QChar *start = text;;) {
        const QChar *const stop = std::find(start, end, separator);
        parts.append(
            QStringRef(&line, static_cast<int>(start - text), static_cast<int>(stop - start)));
        if (stop == end)
            return parts;
        start = stop + 1;
    }
}

/// The text of a cell. It shares its memory with that of the record before, if both are the same,
/// as titles and branches often are.
QString textFromCell(const QStringRef &cell, const QString &before)
{
    return cell == before ? before : cell.toString();
}

/// Only the low 16 bits are kept.
ushort shortFromCell(const QStringRef &cell)
{
    return static_cast<ushort>(numberFromCell(cell));
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
    importedRecords.reserve(importedRecords.size() + usualLines(file.size()));
    Lines lines(&file);
    QString line;
    while (lines.next(&line)) {
        line = line.trimmed();
        if (!line.isEmpty())
            parseLine(line, fields, QLatin1Char('|'));
    }
    exportDates = DateCache();
    file.close();

    if (deleteFile && !file.remove())
        qWarning("THRWorker::loadAndParseData() - file '%s' NOT removed!", qPrintable(path));
}

void THRWorker::parseLine(const QString &line, const QStringList &fields, QChar separator)
{
    if (logLevel > 2)
        qDebug("THRWorker::parseLine('%s')", qPrintable(line));

    const Parts parts = split(line, separator);
    if (parts.size() != fields.size()) {
        // Deliberate: alone among the warnings of the file it needs the highest level, so that a
        // bad line vanishes without a trace at the lower ones. Pinned by
        // tst_Import::parseLine_wrongCountIsSilentBelowLevel3().
        if (logLevel > 2)
            qWarning("THRWorker::parseLine() - parts count (%i) <> fields count(%i) - "
                     "line skipped!",
                     parts.size(), fields.size());
        return;
    }

    static const EmployeeRecord nobody;
    const EmployeeRecord &before = importedRecords.isEmpty() ? nobody : importedRecords.constLast();
    EmployeeRecord record;
    record.osobniCislo = numberFromCell(parts.value(0));
    record.poradoveCisloPP = numberFromCell(parts.value(1));
    record.titul = textFromCell(parts.value(2), before.titul);
    record.jmeno = parts.value(3).toString();
    record.prijmeni = parts.value(4).toString();
    record.titulZa = textFromCell(parts.value(5), before.titulZa);
    record.telefon = parts.value(6).toString();
    record.datumNastupu = dateFromCell(parts.value(7), &exportDates);
    record.datumVystupu = dateFromCell(parts.value(8), &exportDates);
    record.stredisko = numberFromCell(parts.value(9));
    record.strediskoPopis = textFromCell(parts.value(10), before.strediskoPopis);
    record.calendarID = numberFromCell(parts.value(11));
    record.kalendarPlatnostOd = dateFromCell(parts.value(12), &exportDates);
    record.typPracovnihoPomeru = shortFromCell(parts.value(13));
    record.stavPracovnihoPomeru = shortFromCell(parts.value(14));
    record.evidencniStav = shortFromCell(parts.value(15));
    record.dovolenaZustatek = balanceFromCell(parts.value(16));
    record.nadOsCis = numberFromCell(parts.value(17));

    // The header line ends here too: its first cell reads as 0.
    if (record.isUsable())
        importedRecords.append(std::move(record));
}

QDate THRWorker::dateFromText(const QString &text, const QString &format)
{
    return ::dateFromText(text, format);
}
