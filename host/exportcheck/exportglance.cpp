// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A quick look at an export: what becomes of its lines, and what in it is not what it seems.
#include "host/exportcheck/exportglance.h"

#include "export/exportfile.h"
#include "export/exportline.h"
#include "host/exportcheck/cellform.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExportGlance)
};

/// Matters of one kind: how many, and the first.
struct Places
{
    int count = 0;
    int firstLine = 0;
    QString first; ///< what stands there

    void add(int line, const QString &what)
    {
        if (count++ == 0) {
            firstLine = line;
            first = what;
        }
    }
};

/// Reads line by line and remembers what it has seen.
class Glance
{
public:
    explicit Glance(QIODevice *device) :
        lines(device)
    { }

    ExportGlance look();

private:
    void take(const ExportLine &line);
    void drop(const ExportLine &line);
    void lookAtCells(const ExportLine &line);
    void lookAtLetters(const QString &text);
    QVector<Finding> findings() const;
    Finding nothingUsable() const;
    QString likelyFault() const;

    ExportFile lines;
    LineReader reader;
    FateCounts fates;
    Places wrongCount;
    Places noKey;
    Places noName;
    Places dates;
    Places numbers;
    Places letters;
    bool looksLikeUtf16 = false;
    QString otherSeparator; ///< of the first line
};

ExportGlance Glance::look()
{
    QString text;
    int seen = 0;
    while (lines.nextLine(&text)) {
        ++seen;
        if (seen == 1) {
            looksLikeUtf16 = text.startsWith(QStringLiteral("\ufffd\ufffd"));
            otherSeparator = separatorFault(text);
        }
        lookAtLetters(text);
        take(reader.read(text));
    }
    fates.blank = lines.lineNumber() - seen;
    return {fates, findings(), fates.taken == 0};
}

void Glance::take(const ExportLine &line)
{
    if (line.fate != LineFate::Taken) {
        drop(line);
        return;
    }
    ++fates.taken;
    lookAtCells(line);
}

void Glance::drop(const ExportLine &line)
{
    if (lines.lineNumber() == 1 && isHeader(line)) {
        ++fates.header;
        return;
    }
    ++fates.dropped;
    const int number = lines.lineNumber();
    if (line.fate == LineFate::WrongCount)
        wrongCount.add(number, Text::tr("%1 cells in place of 18").arg(line.cellCount));
    else if (line.fate == LineFate::NoKey)
        noKey.add(
            number,
            QStringLiteral("'%1', '%2'").arg(line.cells[0].toString(), line.cells[1].toString()));
    else
        noName.add(number, QString());
}

void Glance::lookAtCells(const ExportLine &line)
{
    for (int column = 0; column < exportColumnCount; ++column) {
        if (!isLost(line, column))
            continue;
        Places &places = isDateColumn(column) ? dates : numbers;
        places.add(
            lines.lineNumber(),
            QStringLiteral("%1 '%2'").arg(exportColumns().at(column),
                                          line.cells[static_cast<size_t>(column)].toString()));
    }
}

/// Bytes that are no UTF-8 arrive as the sign for that, which may also stand there by itself.
void Glance::lookAtLetters(const QString &text)
{
    if (text.contains(QChar(QChar::ReplacementCharacter))
        && !lines.lineBytes().contains("\xef\xbf\xbd"))
        letters.add(lines.lineNumber(), text.left(60));
}

Finding found(const char *code, const Places &places, const QString &text, const QString &remedy)
{
    const QString place = places.first.isEmpty()
        ? Text::tr(" (first: line %1)").arg(places.firstLine)
        : Text::tr(" (first: line %1, %2)").arg(places.firstLine).arg(places.first);
    return {QLatin1String(code),
            Finding::Error,
            Text::tr("line %1").arg(places.firstLine),
            text + place,
            {},
            remedy};
}

QVector<Finding> Glance::findings() const
{
    QVector<Finding> all;
    if (fates.taken == 0)
        return {nothingUsable()};
    const QString correct = Text::tr("correct the export and put it there again");
    if (wrongCount.count > 0)
        all.append(found("E-LINE-CELLS", wrongCount,
                         Text::tr("lines of the export dropped for a wrong number of cells: %1")
                             .arg(wrongCount.count),
                         correct));
    if (noKey.count > 0)
        all.append(found(
            "E-LINE-KEY", noKey,
            Text::tr("lines of the export dropped for want of a personal number or an ordinal: %1")
                .arg(noKey.count),
            correct));
    if (noName.count > 0)
        all.append(
            found("E-LINE-NAME", noName,
                  Text::tr("lines of the export dropped for want of a name: %1").arg(noName.count),
                  correct));
    if (dates.count > 0)
        all.append(found("E-CELL-DATE", dates,
                         Text::tr("dates of the export that count as empty: %1").arg(dates.count),
                         Text::tr("write dates as 2024-03-31 00:00:00.000")));
    if (numbers.count > 0)
        all.append(
            found("E-CELL-NUMBER", numbers,
                  Text::tr("numbers of the export that are read as others: %1").arg(numbers.count),
                  Text::tr("write digits only, and a point before decimals")));
    if (letters.count > 0)
        all.append(found(
            "E-TEXT-UTF8", letters,
            Text::tr("lines of the export with letters that are no UTF-8 and arrive damaged: %1")
                .arg(letters.count),
            Text::tr("write the export in UTF-8")));
    return all;
}

Finding Glance::nothingUsable() const
{
    const QString text = fates.lines() == 0 ? Text::tr("the export is empty")
                                            : Text::tr("the export has no usable line among %1; %2")
                                                  .arg(fates.lines())
                                                  .arg(likelyFault());
    return {QStringLiteral("E-FILE-NOTHING"),
            Finding::Error,
            Text::tr("export"),
            text,
            {},
            Text::tr("nobody is added or updated until a correct one is there")};
}

QString Glance::likelyFault() const
{
    if (looksLikeUtf16)
        return Text::tr("it looks like UTF-16");
    if (!otherSeparator.isEmpty())
        return otherSeparator;
    if (wrongCount.count > 0)
        return Text::tr("line %1 has %2").arg(wrongCount.firstLine).arg(wrongCount.first);
    if (noKey.count > 0)
        return Text::tr("line %1 has no personal number or no ordinal (%2)")
            .arg(noKey.firstLine)
            .arg(noKey.first);
    if (noName.count > 0)
        return Text::tr("line %1 has no name").arg(noName.firstLine);
    return Text::tr("it ends with its header");
}

} // namespace

FateCounts &FateCounts::operator+=(const FateCounts &other)
{
    taken += other.taken;
    header += other.header;
    blank += other.blank;
    dropped += other.dropped;
    return *this;
}

ExportGlance &ExportGlance::operator+=(const ExportGlance &other)
{
    fates += other.fates;
    findings += other.findings;
    sawUseless = sawUseless || other.sawUseless;
    return *this;
}

ExportGlance glanceAtExport(QIODevice *device)
{
    return Glance(device).look();
}
