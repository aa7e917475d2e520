// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: the export file, from its lines to records.
#include "worker/thrworker.h"

#include "export/exportfile.h"
#include "export/exportline.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace {

/// Somewhat more lines than an export of this size has, as a rule. What is set aside for them and
/// not used costs no memory, only addresses; the records of a company beyond a million grow on.
int usualLines(qint64 bytes)
{
    const qint64 shortLine = 100;
    const qint64 mostLines = 1 << 20;
    return static_cast<int>(qMin(bytes / shortLine, mostLines));
}

} // namespace

void THRWorker::loadAndParseData()
{
    if (logLevel > 1)
        qDebug("THRWorker::loadAndParseData()");
    if (logLevel > 2)
        qDebug("THRWorker::loadAndParseData() - fields: %s",
               qPrintable(exportColumns().join(QStringLiteral(", "))));

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
    ExportFile lines(&file);
    LineReader reader;
    QString line;
    while (lines.nextLine(&line))
        takeLine(line, &reader);
    file.close();

    if (deleteFile && !file.remove())
        qWarning("THRWorker::loadAndParseData() - file '%s' NOT removed!", qPrintable(path));
}

void THRWorker::parseLine(const QString &line, const QStringList &fields, QChar separator)
{
    LineReader reader(fields.size(), separator);
    takeLine(line, &reader);
}

/// As parseLine().
void THRWorker::takeLine(const QString &line, LineReader *reader)
{
    if (logLevel > 2)
        qDebug("THRWorker::parseLine('%s')", qPrintable(line));

    static const EmployeeRecord nobody;
    const EmployeeRecord &before = importedRecords.isEmpty() ? nobody : importedRecords.constLast();
    ExportLine parsed = reader->read(line, before);
    // Deliberate: alone among the warnings of the file it needs the highest level, so that a bad
    // line vanishes without a trace at the lower ones. Pinned by
    // tst_Import::parseLine_wrongCountIsSilentBelowLevel3().
    if (parsed.fate == LineFate::WrongCount && logLevel > 2)
        qWarning("THRWorker::parseLine() - parts count (%i) <> fields count(%i) - line skipped!",
                 parsed.cellCount, reader->columnCount());
    if (parsed.fate == LineFate::Taken)
        importedRecords.append(std::move(parsed.record));
}

QDate THRWorker::dateFromText(const QString &text, const QString &format)
{
    return ::dateFromText(text, format);
}
