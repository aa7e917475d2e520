// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Cells that the plugin reads as something else than what stands there.
#include "host/exportcheck/cellcheck.h"

#include "export/exportline.h"
#include "host/exportcheck/cellform.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CellCheck)
};

const uint shortLimit = std::numeric_limits<ushort>::max();

/// Looks at one line.
class CellCheck
{
public:
    CellCheck(const ExportLine &checked, int lineNumber, const QDate &day, ExportFindings *found) :
        line(checked),
        number(lineNumber),
        today(day),
        findings(found)
    { }

    void look();

private:
    void lookAtNumber(int column, bool isShort);
    void lookAtDate(int column, const QDate &date);
    void lookAtBalance();
    void lookAtCalendar();
    bool takesCalendar() const;
    const QStringRef &cell(int column) const { return line.cells[static_cast<size_t>(column)]; }
    void add(const char *code, int column, const QStringList &values);

    const ExportLine &line;
    const int number;
    const QDate today;
    ExportFindings *const findings;
};

void CellCheck::look()
{
    for (int column = 0; column < exportColumnCount; ++column) {
        const CellKind kind = cellKind(column);
        if (kind == CellKind::Number || kind == CellKind::Short)
            lookAtNumber(column, kind == CellKind::Short);
    }
    lookAtDate(ExportCell::Begin, line.record.datumNastupu);
    lookAtDate(ExportCell::End, line.record.datumVystupu);
    lookAtDate(ExportCell::CalendarSince, line.record.kalendarPlatnostOd);
    lookAtBalance();
    lookAtCalendar();
}

void CellCheck::add(const char *code, int column, const QStringList &values)
{
    findings->append({&findingKind(code), number, column + 1, values, {}});
}

/// What follows from a number that is read as 0.
QString lostNumber(int column)
{
    switch (column) {
    case ExportCell::BranchNumber:
        return Text::tr("it is read as 0: the branch in the person's row is emptied");
    case ExportCell::Calendar:
        return Text::tr("it is read as 0, so that the person is given no calendar");
    case ExportCell::Type:
        return Text::tr("it is read as 0, so that the person is neither enrolled in PaM nor given "
                        "a supervisor");
    case ExportCell::RelationState:
        return Text::tr("it is read as 0, which counts as a relation that has not ended");
    case ExportCell::Supervisor:
        return Text::tr("it is read as 0, so that the person keeps the supervisor that they have");
    default:
        return Text::tr("it is read as 0");
    }
}

void CellCheck::lookAtNumber(int column, bool isShort)
{
    const QStringRef &text = cell(column);
    if (text.isEmpty())
        return;
    const QString name = exportColumn(column);
    if (isPlainNumber(text)) {
        if (isShort && text.toUInt() > shortLimit)
            add("E-CELL-RANGE", column,
                {name, text.toString(), QStringLiteral("16"),
                 QString::number(static_cast<ushort>(text.toUInt()))});
        return;
    }
    bool isNumber = false;
    const uint value = text.toUInt(&isNumber);
    const uint read = isShort ? static_cast<ushort>(value) : value;
    static const QRegularExpression manyDigits(QStringLiteral("^[0-9]{10,}$"));
    if (!isNumber && manyDigits.match(text.toString()).hasMatch())
        add("E-CELL-RANGE", column,
            {name, text.toString(), QStringLiteral("32"), QStringLiteral("0")});
    else if (!isNumber)
        add("E-CELL-NUMBER", column, {name, text.toString(), lostNumber(column)});
    else if (isShort && value > shortLimit)
        add("E-CELL-RANGE", column,
            {name, text.toString(), QStringLiteral("16"), QString::number(read)});
    else if (text.toString() != QString::number(value))
        add("W-CELL-NUMBER", column, {name, text.toString(), QString::number(read)});
}

/// What follows from a date that counts as empty.
QString lostDate(int column, bool takesCalendar)
{
    if (column == ExportCell::Begin)
        return Text::tr("it counts as empty: the first day becomes 1 January 2000");
    if (column == ExportCell::End)
        return Text::tr("it counts as empty, so that the person has no last day and keeps their "
                        "access");
    return takesCalendar
        ? Text::tr("it counts as empty: the group plan is entered for month 0, and all unlocked "
                   "attendance of the person is opened again from its first day on")
        : Text::tr("it counts as empty, which changes nothing for this person");
}

/// What follows from a date that no column of seconds can hold.
QString farDate(int column)
{
    if (column == ExportCell::Begin)
        return Text::tr("the first day is stored as a moment in 2106");
    if (column == ExportCell::End)
        return Text::tr("a column of 32 bits refuses it, or stores another day; from a wider one "
                        "the plugin reads another day back, so that the person is written anew in "
                        "each first and each forced pass");
    return Text::tr("all unlocked attendance of the person is opened again from its first day on");
}

void CellCheck::lookAtDate(int column, const QDate &date)
{
    const QStringRef &text = cell(column);
    if (text.isEmpty()) {
        if (column == ExportCell::Begin)
            add("W-PERSON-BEGIN", ExportCell::Begin, {});
        return;
    }
    const QString name = exportColumn(column);
    if (!date.isValid()) {
        add("E-CELL-DATE", column,
            {name, text.toString(), dateFault(text.toString()), lostDate(column, takesCalendar())});
        return;
    }
    // A plan has a month of any year.
    const bool fits = column == ExportCell::CalendarSince
        ? date.year() >= 1970 || !takesCalendar()
        : date.year() >= 1970 && date.year() <= 2105;
    if (!fits)
        add("E-CELL-YEAR", column, {name, text.toString(), farDate(column)});
}

/// What the fund gets: the balance in hundredths, cut toward zero.
bool fitsHundredths(double balance)
{
    return std::isfinite(balance) && std::abs(balance * 100.0) < 2147483648.0;
}

/// The hundredths of the text by its digits; false for any form but "-12.34".
bool hundredthsOf(const QStringRef &text, qint64 *hundredths, bool *isExact)
{
    static const QRegularExpression form(QStringLiteral("^(-?)([0-9]{1,9})(?:\\.([0-9]+))?$"));
    const QRegularExpressionMatch match = form.match(text.toString());
    if (!match.hasMatch())
        return false;
    const QString decimals = match.captured(3).leftJustified(2, QLatin1Char('0'));
    *hundredths = match.captured(2).toLongLong() * 100 + decimals.leftRef(2).toInt();
    *isExact = decimals.midRef(2).count(QLatin1Char('0')) == decimals.size() - 2;
    if (!match.captured(1).isEmpty())
        *hundredths = -*hundredths;
    return true;
}

QString balanceFault(const QString &text)
{
    if (text.contains(QLatin1Char(',')))
        return Text::tr("it has a decimal comma");
    static const QRegularExpression blank(QStringLiteral("\\d\\s+\\d"));
    if (blank.match(text).hasMatch())
        return Text::tr("it has a blank between its digits");
    return Text::tr("it is no number");
}

void CellCheck::lookAtBalance()
{
    const QStringRef &text = cell(ExportCell::Leave);
    if (text.isEmpty())
        return;
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    const double read = line.record.dovolenaZustatek;
    if (!isNumber || !fitsHundredths(read)) {
        add("E-CELL-BALANCE", ExportCell::Leave,
            {text.toString(),
             isNumber ? Text::tr("the fund cannot hold it") : balanceFault(text.toString()),
             QString::number(value)});
        return;
    }
    const int cut = static_cast<int>(read * 100.0);
    qint64 stated = 0;
    bool isExact = true;
    if (!hundredthsOf(text, &stated, &isExact))
        add("W-CELL-NUMBER", ExportCell::Leave,
            {exportColumn(ExportCell::Leave), text.toString(), QString::number(read)});
    else if (stated != cut || !isExact)
        add("W-CELL-BALANCE", ExportCell::Leave, {text.toString(), QString::number(cut)});
    if (read < 0)
        add("N-CELL-NEGATIVE", ExportCell::Leave, {text.toString()});
}

/// Only people who have not ended and have a branch are given their calendar.
bool CellCheck::takesCalendar() const
{
    const EmployeeRecord &record = line.record;
    const bool hasEnded = record.stavPracovnihoPomeru > 3
        || (record.datumVystupu.isValid() && record.datumVystupu < today);
    return record.calendarID != 0 && record.stredisko != 0 && !hasEnded;
}

void CellCheck::lookAtCalendar()
{
    if (takesCalendar() && cell(ExportCell::CalendarSince).isEmpty())
        add("E-CELL-CALENDAR", ExportCell::CalendarSince, {cell(ExportCell::Calendar).toString()});
}

struct DateForm
{
    const char *pattern;
    const char *fault;
};

const DateForm dateForms[] = {
    {"^\\d{4}-\\d{2}-\\d{2}$", QT_TRANSLATE_NOOP("CellCheck", "it has no time")},
    {"^\\d{4}-\\d{2}-\\d{2}[ T]\\d{2}:\\d{2}(:\\d{2})?$",
     QT_TRANSLATE_NOOP("CellCheck", "it has no milliseconds")},
    {"^\\d{4}-\\d{2}-\\d{2}T", QT_TRANSLATE_NOOP("CellCheck", "a T stands in place of the blank")},
    {"^\\d{1,2}/(1[3-9]|2\\d|3[01])/\\d{2,4}",
     QT_TRANSLATE_NOOP("CellCheck", "the month stands first")},
    {"^\\d{1,2}([./] ?\\d{1,2}[./] ?\\d{2}|-\\d{1,2}-\\d{4})",
     QT_TRANSLATE_NOOP("CellCheck", "the day stands first")},
    {"^\\d{4}[./]\\d{1,2}[./]\\d{1,2}",
     QT_TRANSLATE_NOOP("CellCheck", "its parts are not joined by '-'")},
    {"^\\d{2}-\\d{2}-\\d{2}", QT_TRANSLATE_NOOP("CellCheck", "its year has two digits")},
    {"^0000-00-00", QT_TRANSLATE_NOOP("CellCheck", "zeros stand for an empty date")},
    {"^\\s|\\s$", QT_TRANSLATE_NOOP("CellCheck", "a blank stands before or behind it")},
    {"^\\d{4}-(\\d-|\\d{2}-\\d )",
     QT_TRANSLATE_NOOP("CellCheck", "its month or its day has one digit")},
    {"^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}\\.(\\d{1,2}|\\d{4,})$",
     QT_TRANSLATE_NOOP("CellCheck", "its milliseconds do not have three digits")},
    {"^\\d{8}$", QT_TRANSLATE_NOOP("CellCheck", "its parts are not separated, and it has no time")},
};

QVector<QRegularExpression> dateFormPatterns()
{
    QVector<QRegularExpression> patterns;
    for (const DateForm &form : dateForms)
        patterns.append(QRegularExpression(QLatin1String(form.pattern)));
    return patterns;
}

} // namespace

void checkCells(const ExportLine &line, int lineNumber, const QDate &today,
                ExportFindings *findings)
{
    CellCheck(line, lineNumber, today, findings).look();
}

QString dateFault(const QString &cell)
{
    static const QVector<QRegularExpression> patterns = dateFormPatterns();
    for (int i = 0; i < patterns.size(); ++i) {
        if (patterns.at(i).match(cell).hasMatch())
            return Text::tr(dateForms[i].fault);
    }
    static const QRegularExpression whole(
        QStringLiteral("^(\\d{4}-\\d{2}-\\d{2}) (\\d{2}:\\d{2}:\\d{2}\\.\\d{3})$"));
    const QRegularExpressionMatch match = whole.match(cell);
    if (!match.hasMatch())
        return Text::tr("it is no date and time");
    const QDate day = QDate::fromString(match.captured(1), Qt::ISODate);
    if (!day.isValid())
        return Text::tr("there is no such day");
    const bool isTime = QTime::fromString(match.captured(2), QStringLiteral("hh:mm:ss.zzz"))
                            .isValid();
    return isTime ? Text::tr("a change of the clocks skips this moment, or its year is too far off")
                  : Text::tr("there is no such time");
}
