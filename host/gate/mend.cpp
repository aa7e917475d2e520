// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Damage of an export that can be mended without knowing better than those who wrote it.
#include "host/gate/mend.h"

#include "export/exportfile.h"
#include "export/exportline.h"
#include "host/base/ownerfile.h"
#include "host/exportcheck/cellform.h"
#include "host/exportcheck/statementtrial.h"
#include "host/gate/eightbit.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Mend)
};

const char byteOrderMark[] = "\xef\xbb\xbf";
const char typographic[] = "\xe2\x80\x99";

/// How many marks stand at the begin of a file, one behind another.
int countOfMarks(const QByteArray &line)
{
    const int size = static_cast<int>(qstrlen(byteOrderMark));
    int count = 0;
    while (line.mid(count * size, size) == byteOrderMark)
        ++count;
    return count;
}

/// A cell as text, without the line end.
QString shown(const QByteArray &cell)
{
    return QString::fromUtf8(cell.constData(), cell.size() - (cell.endsWith('\n') ? 1 : 0));
}

/// Reads an export line by line and writes it as it is wished.
class Mending
{
public:
    Mending(QIODevice *input, const MendWishes &given, QVector<MendedCell> *cells) :
        source(input),
        wishes(given),
        mended(cells)
    { }

    Failure prepare();
    Failure run(QIODevice *target);

private:
    Failure endOfReading() const;
    void dropMark(QByteArray *line);
    void dropReturns(QByteArray *line);
    void recode(QByteArray *line);
    void mendApostrophes(QByteArray *line);
    bool mendBreaking(const QString &text, QByteArray *line);
    void noteReturns();

    QIODevice *const source;
    const MendWishes &wishes;
    QVector<MendedCell> *const mended;
    EightBit encoding;
    bool isRecoded = false;
    LineReader reader;
    StatementTrial trial;
    int number = 0;
    int returns = 0;
};

/// A device that can no longer be read has no more lines either.
Failure Mending::endOfReading() const
{
    if (source->pos() == source->size())
        return {};
    return {ExitUsage, Text::tr("cannot read the export: %1").arg(source->errorString())};
}

/// Decides about the encoding, by the whole file.
Failure Mending::prepare()
{
    if (wishes.encoding.isEmpty())
        return {};
    if (const Failure failure = EightBit::named(wishes.encoding, &encoding))
        return failure;
    LettersOfFile letters;
    QByteArray line = source->readLine();
    line = line.mid(3 * countOfMarks(line));
    for (; !line.isEmpty(); line = source->readLine())
        letters.add(line);
    isRecoded = letters.areForeign() && encoding.fits(letters);
    const Failure failure = endOfReading();
    source->seek(0);
    return failure;
}

Failure Mending::run(QIODevice *target)
{
    for (QByteArray line = source->readLine(); !line.isEmpty(); line = source->readLine()) {
        ++number;
        if (number == 1 && wishes.bom)
            dropMark(&line);
        if (wishes.cr)
            dropReturns(&line);
        if (isRecoded)
            recode(&line);
        if (wishes.apostrophe && line.contains('\''))
            mendApostrophes(&line);
        if (target->write(line) < 0)
            return {}; // the target knows why
    }
    noteReturns();
    return endOfReading();
}

void Mending::dropMark(QByteArray *line)
{
    const int count = countOfMarks(*line);
    if (count == 0)
        return;
    *line = line->mid(3 * count);
    mended->append({MendedCell::ByteOrderMark, 0, {}, {}, {}, count});
}

void Mending::dropReturns(QByteArray *line)
{
    if (!line->endsWith("\r\n"))
        return;
    int end = line->size() - 1;
    while (end > 0 && line->at(end - 1) == '\r')
        --end;
    *line = line->left(end) + '\n';
    ++returns;
}

void Mending::noteReturns()
{
    if (returns > 0)
        mended->append({MendedCell::CarriageReturn, 0, {}, {}, {}, returns});
}

/// A byte order mark that may stay is no part of the text.
void Mending::recode(QByteArray *line)
{
    const QByteArray mark = number == 1 ? line->left(3 * countOfMarks(*line)) : QByteArray();
    QList<QByteArray> cells = line->mid(mark.size()).split('|');
    for (int column = 0; column < cells.size(); ++column) {
        QByteArray &cell = cells[column];
        const QByteArray after = encoding.toUtf8(cell);
        if (after == cell)
            continue;
        mended->append({MendedCell::Encoding, number,
                        cells.size() == exportColumnCount ? exportColumn(column) : QString(),
                        shown(cell), shown(after), 1});
        cell = after;
    }
    *line = mark + cells.join('|');
}

/// One cell after another, since an apostrophe may do harm only by that of another cell.
void Mending::mendApostrophes(QByteArray *line)
{
    QString text;
    do {
        QBuffer buffer(line);
        buffer.open(QIODevice::ReadOnly);
        if (!ExportFile(&buffer).nextLine(&text))
            return;
    } while (mendBreaking(text, line));
}

/// The first cell with an apostrophe that breaks a statement. False if there is none.
bool Mending::mendBreaking(const QString &text, QByteArray *line)
{
    const ExportLine read = reader.read(text);
    if (read.fate != LineFate::Taken)
        return false;
    const QVector<TextTrial> trials = trial.effectsOf(read.record);
    for (const TextTrial &found : trials) {
        if (found.column == 0 || found.effect < TextEffect::Fails)
            continue;
        const QStringRef cell = read.cells.at(static_cast<size_t>(found.column - 1));
        if (!cell.contains(QLatin1Char('\'')))
            continue;
        QList<QByteArray> cells = line->split('|');
        QByteArray &bytes = cells[found.column - 1];
        mended->append({MendedCell::Apostrophe, number, exportColumn(found.column - 1),
                        cell.toString(), cell.toString().replace(QLatin1Char('\''), QChar(0x2019)),
                        static_cast<int>(cell.count(QLatin1Char('\'')))});
        bytes.replace('\'', typographic);
        *line = cells.join('|');
        return true;
    }
    return false;
}

} // namespace

Failure checkWishes(const MendWishes &wishes)
{
    EightBit encoding;
    return wishes.encoding.isEmpty() ? Failure() : EightBit::named(wishes.encoding, &encoding);
}

Failure mendExport(QIODevice *source, QIODevice *target, const MendWishes &wishes,
                   QVector<MendedCell> *mended)
{
    mended->clear();
    Mending mending(source, wishes, mended);
    const Failure failure = mending.prepare();
    return failure ? failure : mending.run(target);
}

Failure mendExport(const QString &source, const QString &target, const MendWishes &wishes,
                   QVector<MendedCell> *mended)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(source, file.errorString())};
    if (const Failure failure = checkOutputFiles({target}, {source}))
        return failure;
    return fillOwnerFile(
        target, [&](QIODevice *output) { return mendExport(&file, output, wishes, mended); });
}
