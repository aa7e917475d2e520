// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the export file must come to, worked out without the code that is fuzzed.
#include "exportmodel.h"

#include <cstdlib>

namespace {

const int columnCount = 18;

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool allDigits(const QString &text, int from, int count)
{
    for (int i = from; i < from + count; ++i) {
        if (!isDigit(text.at(i)))
            return false;
    }
    return count > 0;
}

QString withoutSpaceAround(const QString &text)
{
    int begin = 0;
    int end = text.size();
    while (begin < end && text.at(begin).isSpace())
        ++begin;
    while (end > begin && text.at(end - 1).isSpace())
        --end;
    return text.mid(begin, end - begin);
}

/// 0 for everything but a number of at most 32 bits. White space around it and a plus in front are
/// no part of the number.
uint number(const QString &cell)
{
    QString text = withoutSpaceAround(cell);
    if (text.startsWith(QLatin1Char('+')))
        text.remove(0, 1);
    if (!allDigits(text, 0, text.size()))
        return 0;
    quint64 value = 0;
    for (const QChar digit : text) {
        value = value * 10 + static_cast<quint64>(digit.unicode() - '0');
        if (value > 0xFFFFFFFFu)
            return 0;
    }
    return static_cast<uint>(value);
}

ushort lowBits(const QString &cell)
{
    return static_cast<ushort>(number(cell) % 65536);
}

int digitsAt(const QString &text, int from, int count)
{
    int value = 0;
    for (int i = from; i < from + count; ++i)
        value = value * 10 + (text.at(i).unicode() - '0');
    return value;
}

/// Qt takes a sign or a blank for a digit in some places.
bool isPlainDate(const QString &cell)
{
    for (int i = 0; i < cell.size(); ++i) {
        const bool separates = i == 4 || i == 7 || i == 10;
        if (!separates
            && (cell.at(i) == QLatin1Char('+') || cell.at(i) == QLatin1Char('-')
                || cell.at(i).isSpace()))
            return false;
    }
    return true;
}

/// "2024-03-31 00:00:00.000" to the letter.
QDate date(const QString &cell)
{
    const QString form = QStringLiteral("dddd-dd-dd dd:dd:dd.ddd");
    if (cell.size() != form.size())
        return QDate();
    for (int i = 0; i < form.size(); ++i) {
        const bool fits = form.at(i) == QLatin1Char('d') ? isDigit(cell.at(i))
                                                         : cell.at(i) == form.at(i);
        if (!fits)
            return QDate();
    }
    if (digitsAt(cell, 11, 2) > 23 || digitsAt(cell, 14, 2) > 59 || digitsAt(cell, 17, 2) > 59)
        return QDate();
    const QDate day(digitsAt(cell, 0, 4), digitsAt(cell, 5, 2), digitsAt(cell, 8, 2));
    return day.isValid() ? day : QDate();
}

/// Up to fifteen digits with a point among them, or anything that has a letter which no number has.
bool isPlainBalance(const QString &cell)
{
    int digits = 0;
    int points = 0;
    for (int i = 0; i < cell.size(); ++i) {
        const QChar character = cell.at(i);
        if (isDigit(character))
            ++digits;
        else if (character == QLatin1Char('.') && digits > 0)
            ++points;
        else if (character != QLatin1Char('-') || i != 0)
            return character == QLatin1Char(',') || character == QLatin1Char('x');
    }
    return cell.isEmpty()
        || (digits > 0 && digits <= 15 && points <= 1 && !cell.endsWith(QLatin1Char('.')));
}

double balance(const QString &cell)
{
    for (const QChar character : cell) {
        if (!isDigit(character) && character != QLatin1Char('.') && character != QLatin1Char('-'))
            return 0.0;
    }
    return std::strtod(cell.toLatin1().constData(), nullptr);
}

ModelledRecord recordOf(const QStringList &cells)
{
    ModelledRecord model;
    EmployeeRecord &record = model.record;
    record.osobniCislo = number(cells.at(0));
    record.poradoveCisloPP = number(cells.at(1));
    record.titul = cells.at(2);
    record.jmeno = cells.at(3);
    record.prijmeni = cells.at(4);
    record.titulZa = cells.at(5);
    record.telefon = cells.at(6);
    record.datumNastupu = date(cells.at(7));
    record.datumVystupu = date(cells.at(8));
    record.stredisko = number(cells.at(9));
    record.strediskoPopis = cells.at(10);
    record.calendarID = number(cells.at(11));
    record.kalendarPlatnostOd = date(cells.at(12));
    record.typPracovnihoPomeru = lowBits(cells.at(13));
    record.stavPracovnihoPomeru = lowBits(cells.at(14));
    record.evidencniStav = lowBits(cells.at(15));
    record.dovolenaZustatek = balance(cells.at(16));
    record.nadOsCis = number(cells.at(17));
    model.balanceIsPlain = isPlainBalance(cells.at(16));
    model.datesArePlain = isPlainDate(cells.at(7)) && isPlainDate(cells.at(8))
        && isPlainDate(cells.at(12));
    return model;
}

QStringList cellsOf(const QString &line)
{
    QStringList cells {QString()};
    for (const QChar character : line) {
        if (character == QLatin1Char('|'))
            cells.append(QString());
        else
            cells.last().append(character);
    }
    return cells;
}

LineFate fateOf(const EmployeeRecord &record)
{
    if (record.osobniCislo == 0 || record.poradoveCisloPP == 0)
        return LineFate::NoKey;
    if (record.jmeno.isEmpty() && record.prijmeni.isEmpty())
        return LineFate::NoName;
    return LineFate::Taken;
}

/// As it comes through a printf with %s.
QString printed(const QString &text)
{
    return QString::fromUtf8(text.toUtf8());
}

void addLine(const QString &line, int logLevel, ExportModel *model)
{
    if (logLevel > 2)
        model->messages.append(QStringLiteral("debug THRWorker::parseLine('") + printed(line)
                               + QStringLiteral("')"));
    const QStringList cells = cellsOf(line);
    ModelledLine entry;
    entry.number = model->lineCount;
    entry.cellCount = cells.size();
    if (cells.size() == columnCount) {
        entry.record = recordOf(cells);
        entry.fate = fateOf(entry.record.record);
    }
    model->lines.append(entry);
    if (entry.fate == LineFate::Taken)
        model->records.append(entry.record);
    if (entry.fate == LineFate::WrongCount && logLevel > 2)
        model->messages.append(
            QStringLiteral("warning THRWorker::parseLine() - parts count (%1) <> "
                           "fields count(18) - line skipped!")
                .arg(cells.size()));
}

QStringList messagesBefore(const QString &path, int logLevel)
{
    QStringList messages;
    if (logLevel > 1)
        messages += QStringLiteral("debug THRWorker::loadAndParseData()");
    if (logLevel > 2) {
        messages += QStringLiteral(
            "debug THRWorker::loadAndParseData() - fields: OsobniCislo, PoradoveCisloPP, Titul, "
            "Jmeno, Prijmeni, TitulZa, Telefon, DatumNastupu, DatumVystupu, Stredisko, "
            "StrediskoPopis, Kalendar, KalendarPlatnostOd, TypPracovnihoPomeru, "
            "StavPracovnihoPomeru, EvidencniStav, DovolenaZustatek, NadrizenyOsobniCislo");
        messages += QStringLiteral("info THRWorker::loadAndParseData() - loading data from file: '")
            + path + QStringLiteral("'");
    }
    return messages;
}

} // namespace

ExportModel modelOfExport(const QByteArray &bytes, const QString &path, int logLevel,
                          bool deleteFile)
{
    ExportModel model;
    model.messages = messagesBefore(path, logLevel);
    int begin = 0;
    while (begin < bytes.size()) {
        int end = begin;
        while (end < bytes.size() && bytes.at(end) != '\n')
            ++end;
        int length = 0;
        while (begin + length < end && bytes.at(begin + length) != '\0')
            ++length;
        ++model.lineCount;
        const QString line = withoutSpaceAround(
            QString::fromUtf8(bytes.constData() + begin, length));
        if (!line.isEmpty())
            addLine(line, logLevel, &model);
        begin = end + 1;
    }
    if (deleteFile)
        model.messages += QStringLiteral("warning THRWorker::loadAndParseData() - file '") + path
            + QStringLiteral("' NOT removed!");
    return model;
}

bool agree(const EmployeeRecord &read, const ModelledRecord &modelled)
{
    EmployeeRecord left = read;
    EmployeeRecord right = modelled.record;
    if (!modelled.balanceIsPlain) {
        left.dovolenaZustatek = 0.0;
        right.dovolenaZustatek = 0.0;
    }
    if (!modelled.datesArePlain) {
        right.datumNastupu = left.datumNastupu;
        right.datumVystupu = left.datumVystupu;
        right.kalendarPlatnostOd = left.kalendarPlatnostOd;
    }
    return left == right;
}
