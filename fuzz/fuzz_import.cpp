// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Any bytes as the export file, held against a model of the reading.
#include "check.h"
#include "export/exportfile.h"
#include "exportmodel.h"
#include "memoryfile.h"
#include "messagelist.h"
#include "support/workerpeer.h"

#include <QBuffer>

namespace {

QString textOf(const EmployeeRecord &record)
{
    return record.toText(true) + QLatin1Char('\n') + record.toText(false);
}

void checkRecord(const EmployeeRecord &read, const ModelledRecord &modelled)
{
    FUZZ_CHECK(agree(read, modelled),
               textOf(read) + QStringLiteral("\nis not\n") + textOf(modelled.record));
}

/// Reads without a worker, and looks at each line.
void checkLines(QByteArray bytes, const ExportModel &model)
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    ExportFile file(&device);
    LineReader reader;
    QString line;
    for (const ModelledLine &modelled : model.lines) {
        FUZZ_CHECK(file.nextLine(&line), QStringLiteral("no line %1").arg(modelled.number));
        FUZZ_CHECK(file.lineNumber() == modelled.number,
                   QStringLiteral("line %1, not %2").arg(file.lineNumber()).arg(modelled.number));
        const ExportLine parsed = reader.read(line);
        FUZZ_CHECK(parsed.cellCount == modelled.cellCount && parsed.fate == modelled.fate, line);
        checkRecord(parsed.record, modelled.record);
    }
    FUZZ_CHECK(!file.nextLine(&line) && file.lineNumber() == model.lineCount, line);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    MessageList::install();
    return 0;
}

/// The first byte: two bits of log level, one bit whether the file is to be removed. The rest is
/// the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    static MemoryFile file;
    file.setContent(data + 1, size - 1);
    const quint8 logLevel = data[0] & 3;
    const bool deleteFile = data[0] & 4;

    THRWorker worker;
    worker.setLogLevel(logLevel);
    worker.setImportFile(file.path());
    worker.setDeleteFile(deleteFile);
    MessageList::clear();
    worker.loadAndParseData();

    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    const ExportModel model = modelOfExport(bytes, file.path(), logLevel, deleteFile);
    checkLines(bytes, model);
    const QVector<EmployeeRecord> &records = WorkerPeer(worker).importedRecords;
    FUZZ_CHECK(records.size() == model.records.size(),
               QStringLiteral("%1 records, not %2").arg(records.size()).arg(model.records.size()));
    for (int i = 0; i < records.size(); ++i)
        checkRecord(records.at(i), model.records.at(i));
    FUZZ_CHECK(MessageList::all() == model.messages,
               MessageList::all().join(QLatin1Char('\n')) + QStringLiteral("\nis not\n")
                   + model.messages.join(QLatin1Char('\n')));
    return 0;
}
