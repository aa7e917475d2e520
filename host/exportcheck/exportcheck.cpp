// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the plugin will make of each line of an export, and what in it is damaged.
#include "host/exportcheck/exportcheck.h"

#include "export/exportfile.h"
#include "export/exportline.h"
#include "host/exportcheck/cellcheck.h"
#include "host/exportcheck/cellform.h"
#include "host/exportcheck/databasecheck.h"
#include "host/exportcheck/linefault.h"
#include "host/exportcheck/peoplecheck.h"
#include "host/exportcheck/textcheck.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExportCheck)
};

const int linesBetweenProgress = 4096;

/// Reads line by line, and looks at all of them together in the end.
class Reading
{
public:
    Reading(QIODevice *source, const ExportCheckSettings &given) :
        device(source),
        lines(source),
        settings(given)
    { }

    ExportCheck read();

private:
    void readLines();
    void lookAtBlankLines();
    void take(const ExportLine &line);
    void tryTexts(const ExportLine &line);
    void addTrial(const TextTrial &trial, const ExportLine &line);
    void drop(const QString &text, const ExportLine &line);
    void noteSpelling(const ExportLine &line, int column, uint number);
    void forgetUsualZeros();
    void addNothingUsable();
    QString likelyFault() const;
    void add(const char *code, const QStringList &values);

    QIODevice *const device;
    ExportFile lines;
    LineReader reader;
    const ExportCheckSettings &settings;
    ExportCheck check;
    QVector<OddSpelling> spellings;
    int linesSeen = 0;
    qint64 bytesSeen = 0;
    QString firstText; ///< the first line
};

ExportCheck Reading::read()
{
    readLines();
    forgetUsualZeros();
    check.findings += checkPeople(check.digest, spellings);
    if (settings.database)
        check.findings += settings.database->findings();
    std::stable_sort(check.findings.begin(), check.findings.end(),
                     [](const ExportFinding &left, const ExportFinding &right) {
                         return left.line < right.line;
                     });
    if (check.isUseless())
        addNothingUsable();
    return std::move(check);
}

void Reading::readLines()
{
    QString text;
    EmployeeRecord before;
    while (lines.nextLine(&text)) {
        ++linesSeen;
        if (linesSeen == 1)
            firstText = text;
        const QByteArray bytes = lines.lineBytes();
        const ExportLine line = reader.read(text, before);
        checkLetters(bytes, line, lines.lineNumber(), &check.findings);
        if (line.fate == LineFate::Taken)
            take(line);
        else
            drop(text, line);
        before = line.record;
        bytesSeen += bytes.size() + 1;
        if (settings.progress && linesSeen % linesBetweenProgress == 0)
            settings.progress(bytesSeen);
    }
    check.fates.blank = lines.lineNumber() - linesSeen;
    if (check.fates.blank > 0)
        lookAtBlankLines();
}

/// The plugin reads a line up to its first NUL byte: one that begins with it counts as blank.
void Reading::lookAtBlankLines()
{
    device->seek(0);
    for (int number = 1; !device->atEnd(); ++number) {
        const QByteArray bytes = device->readLine().trimmed();
        if (bytes.startsWith('\0'))
            check.findings.append(
                {&findingKind("E-TEXT-NUL"), number, 0, {QStringLiteral("0")}, {}});
    }
}

void Reading::add(const char *code, const QStringList &values)
{
    check.findings.append({&findingKind(code), lines.lineNumber(), 0, values, {}});
}

void Reading::take(const ExportLine &line)
{
    ++check.fates.taken;
    const int number = lines.lineNumber();
    checkCells(line, number, settings.today, &check.findings);
    checkPerson(line.record, number, settings.today, &check.findings);
    if (settings.trial)
        tryTexts(line);
    if (settings.database)
        settings.database->take(line, number);
    noteSpelling(line, 0, line.record.osobniCislo);
    noteSpelling(line, exportColumnCount - 1, line.record.nadOsCis);
    check.digest.push_back(digestOf(line, number));
}

void Reading::tryTexts(const ExportLine &line)
{
    const EscapeMode escapes = settings.database ? settings.database->escapes()
                                                 : EscapeMode::Either;
    const QVector<TextTrial> trials = settings.trial->effectsOf(line.record, escapes);
    for (const TextTrial &trial : trials)
        addTrial(trial, line);
}

const char *trialCode(TextEffect effect, const QString &text)
{
    switch (effect) {
    case TextEffect::RunsElse:
        return "E-TEXT-RUNS";
    case TextEffect::Fails:
        return "E-TEXT-FAILS";
    default:
        return text.contains(QLatin1Char('%')) ? "W-TEXT-MARKER" : "W-TEXT-OTHER";
    }
}

void Reading::addTrial(const TextTrial &trial, const ExportLine &line)
{
    const bool isCell = trial.column > 0;
    const QString text = isCell ? line.cells[static_cast<size_t>(trial.column - 1)].toString()
                                : QString();
    const QString name = isCell
        ? exportColumn(trial.column - 1)
        : Text::tr("the text of state %1 in [MES]").arg(line.record.evidencniStav);
    check.findings.append({&findingKind(trialCode(trial.effect, text)),
                           lines.lineNumber(),
                           trial.column,
                           {name, text, trial.becomes},
                           {}});
}

void Reading::noteSpelling(const ExportLine &line, int column, uint number)
{
    const QStringRef &cell = line.cells[static_cast<size_t>(column)];
    if (number != 0 && !isPlainNumber(cell) && cell != QString::number(number))
        spellings.append({lines.lineNumber(), column + 1, number, cell.toString()});
}

void Reading::drop(const QString &text, const ExportLine &line)
{
    if (lines.lineNumber() == 1 && isHeader(line)) {
        ++check.fates.header;
        return;
    }
    ++check.fates.dropped;
    if (isHeader(line)) {
        add("W-LINE-HEADER", {});
    } else if (line.fate == LineFate::WrongCount) {
        const QString fault = lineFault(text);
        add("E-LINE-CELLS",
            {QString::number(line.cellCount),
             fault.isEmpty() ? QString() : QStringLiteral("; ") + fault});
    } else if (line.fate == LineFate::NoKey) {
        add("E-LINE-KEY",
            {line.cells[0].toString(), line.cells[1].toString(),
             QString::number(line.record.osobniCislo),
             QString::number(line.record.poradoveCisloPP)});
    } else {
        add("E-LINE-NAME", {});
    }
}

/// Numbers with zeros in front are worth a word where the others of their column have none.
void Reading::forgetUsualZeros()
{
    const auto hasZero = [](const ExportFinding &found) {
        return qstrcmp(found.kind->code, "W-CELL-NUMBER") == 0
            && found.values.at(1).startsWith(QLatin1Char('0'));
    };
    std::array<int, exportColumnCount + 1> zeros {};
    for (const ExportFinding &found : qAsConst(check.findings)) {
        if (hasZero(found))
            ++zeros[static_cast<size_t>(found.column)];
    }
    const auto isUsual = [&](const ExportFinding &found) {
        return hasZero(found) && zeros[static_cast<size_t>(found.column)] > check.fates.taken / 2;
    };
    check.findings.erase(std::remove_if(check.findings.begin(), check.findings.end(), isUsual),
                         check.findings.end());
}

/// One finding stands for all others then.
void Reading::addNothingUsable()
{
    const QString fault = check.fates.lines() == 0
        ? Text::tr("it is empty")
        : Text::tr("%1 lines; %2").arg(check.fates.lines()).arg(likelyFault());
    check.findings.prepend({&findingKind("E-FILE-NOTHING"), 0, 0, {fault}, {}});
}

QString Reading::likelyFault() const
{
    if (firstText.startsWith(QStringLiteral("\ufffd\ufffd")))
        return Text::tr("it looks like UTF-16");
    const QString separator = separatorFault(firstText);
    if (!separator.isEmpty())
        return separator;
    if (check.fates.header == check.fates.lines())
        return Text::tr("it ends with its header");
    if (check.fates.dropped == 1 && firstText.contains(QLatin1Char('\r')))
        return Text::tr("its lines end with carriage returns only");
    for (const ExportFinding &found : check.findings) {
        if (found.line != 0 && found.kind->severity() == Finding::Error)
            return Text::tr("line %1: %2").arg(found.line).arg(told(found).text);
    }
    return Text::tr("all are blank");
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

ExportCheck checkExport(QIODevice *device, const ExportCheckSettings &settings)
{
    return Reading(device, settings).read();
}
