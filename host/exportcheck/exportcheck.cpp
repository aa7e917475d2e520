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
#include "host/exportcheck/trialfinding.h"

#include <QCoreApplication>
#include <QSet>

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
    bool endsWithLineEnd();
    void noteMissingEnd();
    void take(const ExportLine &line);
    void tryTexts(const ExportLine &line);
    void addTrial(const TextTrial &trial, const ExportLine &line);
    void addState(const TextTrial &trial, ushort state);
    void drop(const QString &text, const ExportLine &line);
    void noteSpelling(const ExportLine &line, int column, uint number);
    void forgetUsualZeros();
    void lookForManyEnded();
    void addNothingUsable();
    QString likelyFault() const;
    void add(const char *code, const QStringList &values);

    QIODevice *const device;
    ExportFile lines;
    LineReader reader;
    const ExportCheckSettings &settings;
    ExportCheck check;
    QVector<OddSpelling> spellings;
    QSet<ushort> toldStates;
    int linesSeen = 0;
    qint64 bytesSeen = 0;
    QString firstText; ///< the first line
};

ExportCheck Reading::read()
{
    readLines();
    forgetUsualZeros();
    lookForManyEnded();
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
    if (lines.lineNumber() > 0 && !endsWithLineEnd())
        noteMissingEnd();
    if (check.fates.blank > 0)
        lookAtBlankLines();
}

bool Reading::endsWithLineEnd()
{
    return device->seek(device->size() - 1) && device->read(1) == "\n";
}

/// A file that was cut off ends like this; so do files of some HR systems, if all cells are there.
void Reading::noteMissingEnd()
{
    const int last = lines.lineNumber();
    const auto ofLast = std::find_if(
        check.findings.begin(), check.findings.end(), [last](const ExportFinding &found) {
            return found.line == last && qstrcmp(found.kind->code, "E-LINE-CELLS") == 0;
        });
    if (ofLast != check.findings.end())
        *ofLast = {&findingKind("E-FILE-CUT"), last, 0, {ofLast->values.constFirst()}, {}};
    else
        check.findings.append({&findingKind("N-FILE-END"), last, 0, {}, {}});
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
    const QVector<TextTrial> trials = settings.database
        ? settings.database->effectsOf(line.record, settings.trial)
        : settings.trial->effectsOf(line.record);
    for (const TextTrial &trial : trials)
        addTrial(trial, line);
}

void Reading::addTrial(const TextTrial &trial, const ExportLine &line)
{
    if (trial.column == 0) {
        addState(trial, line.record.evidencniStav);
        return;
    }
    check.findings.append(findingOf(trial, line, lines.lineNumber()));
}

/// Of a text of the settings once, with the first line of somebody in the state.
void Reading::addState(const TextTrial &trial, ushort state)
{
    if (toldStates.contains(state))
        return;
    toldStates.insert(state);
    const QString text = settings.trial->stateText(state);
    check.findings.append(
        {&findingKind(trial.effect == TextEffect::OtherText ? "W-TEXT-STATE" : "E-TEXT-STATE"),
         lines.lineNumber(),
         0,
         {QString::number(state), text},
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
    } else if (lines.lineNumber() == 1 && looksLikeHeader(line)) {
        add("W-FILE-HEADER", {headerFault(line)});
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

/// Some people stay in an export for a while after their end; not so many.
void Reading::lookForManyEnded()
{
    const auto ended = static_cast<int>(std::count_if(
        check.findings.cbegin(), check.findings.cend(), [](const ExportFinding &found) {
            return qstrcmp(found.kind->code, "N-PERSON-ENDED") == 0;
        }));
    if (ended >= 5 && ended * 4 >= check.fates.taken)
        check.findings.append({&findingKind("W-FILE-ENDED"),
                               0,
                               ExportCell::End + 1,
                               {QString::number(ended), QString::number(check.fates.taken)},
                               {}});
}

/// Stands before all others then.
void Reading::addNothingUsable()
{
    const QString fault = check.fates.lines() == 0
        ? Text::tr("it is empty")
        : Text::tr("lines: %1; %2").arg(check.fates.lines()).arg(likelyFault());
    check.findings.prepend({&findingKind("E-FILE-NOTHING"), 0, 0, {fault}, {}});
}

QString Reading::likelyFault() const
{
    device->seek(0);
    const QString foreign = foreignKind(device->read(4));
    if (!foreign.isEmpty())
        return foreign;
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
            return Text::tr("line %1: %2")
                .arg(found.line)
                .arg(told(found, PersonalTexts::Hidden).text);
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
