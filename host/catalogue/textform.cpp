// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A text with places for values.
#include "host/catalogue/textform.h"

#include <algorithm>

namespace {

const QChar textPlace = QLatin1Char('t');

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

// Each gives the end of what begins at `from`, -1 when nothing of its kind stands there or `from`
// is -1 already.

int afterLiteral(const QString &text, int from, const QString &literal)
{
    const bool stands = from >= 0 && text.midRef(from, literal.size()) == literal;
    return stands ? from + literal.size() : -1;
}

int afterNumber(const QString &text, int from)
{
    int end = from;
    while (end >= 0 && end < text.size() && isDigit(text.at(end)))
        ++end;
    return end > from ? end : -1;
}

int afterSigned(const QString &text, int from)
{
    const int behindSign = afterLiteral(text, from, QStringLiteral("-"));
    return afterNumber(text, behindSign < 0 ? from : behindSign);
}

int afterNullable(const QString &text, int from)
{
    const int behindNull = afterLiteral(text, from, QStringLiteral("NULL"));
    return behindNull < 0 ? afterSigned(text, from) : behindNull;
}

int afterPamId(const QString &text, int from)
{
    return afterNumber(text, afterLiteral(text, afterNumber(text, from), QStringLiteral(".")));
}

int afterBound(const QString &text, int from)
{
    const int behindMark = afterLiteral(text, from, QStringLiteral("?"));
    int end = afterLiteral(text, from, QStringLiteral(":"));
    while (end >= 0 && end < text.size() && text.at(end).isLetter())
        ++end;
    return behindMark < 0 ? end : behindMark;
}

int afterPair(const QString &text, int from)
{
    const int first = afterNumber(text, afterLiteral(text, from, QStringLiteral("(")));
    const int second = afterNumber(text, afterLiteral(text, first, QStringLiteral(", ")));
    return afterLiteral(text, second, QStringLiteral(")"));
}

/// One item or several, with a comma and perhaps a blank between them.
int afterList(const QString &text, int from, int (*afterItem)(const QString &, int))
{
    int end = afterItem(text, from);
    for (;;) {
        const int comma = afterLiteral(text, end, QStringLiteral(","));
        const int blank = afterLiteral(text, comma, QStringLiteral(" "));
        const int next = afterItem(text, blank < 0 ? comma : blank);
        if (next < 0)
            return end;
        end = next;
    }
}

/// The end of a value that is no text.
int afterValue(const QString &text, int from, QChar kind)
{
    switch (kind.toLatin1()) {
    case 'u':
        return afterNumber(text, from);
    case 'k':
        return afterLiteral(text, from, QStringLiteral("0")) < 0 ? afterNumber(text, from) : -1;
    case 'i':
        return afterSigned(text, from);
    case 'n':
        return afterNullable(text, from);
    case 'm':
        return afterPamId(text, from);
    case 'b':
        return afterBound(text, from);
    case 'l':
        return afterList(text, from, afterNumber);
    default:
        return afterList(text, from, afterPair);
    }
}

} // namespace

TextForm::TextForm(const QString &text, QChar mark, int markLength)
{
    const QStringList parts = text.split(mark);
    begin = parts.first();
    for (int i = 1; i < parts.size(); ++i) {
        const QChar letter = parts.at(i).at(0);
        places.append(letter == QLatin1Char('s') ? textPlace : letter);
        literals.append(parts.at(i).mid(markLength));
    }
}

TextForm TextForm::ofPlaces(const char *text)
{
    return TextForm(QString::fromUtf8(text), QLatin1Char('{'), 2);
}

TextForm TextForm::ofMessage(const char *text)
{
    return TextForm(QString::fromUtf8(text), QLatin1Char('%'), 1);
}

bool TextForm::fits(const QString &text) const
{
    return !reach(text, places).empty();
}

std::optional<QStringList> TextForm::match(const QString &text, int loose) const
{
    QString kinds = places;
    for (int i = loose; i < kinds.size(); ++i)
        kinds[i] = textPlace;
    const std::vector<Positions> reached = reach(text, kinds);
    if (reached.empty())
        return {};
    return readBack(text, reached, kinds);
}

/// For each place the positions at which it could begin, and last the end of the text. Empty if the
/// text is not of the form.
std::vector<TextForm::Positions> TextForm::reach(const QString &text, const QString &kinds) const
{
    if (!text.startsWith(begin))
        return {};
    std::vector<Positions> reached;
    reached.reserve(static_cast<std::size_t>(kinds.size()) + 1);
    reached.push_back({begin.size()});
    for (int i = 0; i < kinds.size() && !reached.back().isEmpty(); ++i)
        reached.push_back(step(text, reached.back(), i, kinds.at(i)));
    const bool ends = std::binary_search(reached.back().begin(), reached.back().end(), text.size());
    return ends ? reached : std::vector<Positions>();
}

/// All positions, in order, from which what follows the place could begin.
TextForm::Positions TextForm::step(const QString &text, const Positions &from, int place,
                                   QChar kind) const
{
    Positions to;
    const QString &literal = literals.at(place);
    if (kind == textPlace) {
        const bool last = place + 1 == places.size();
        const int least = last ? qMax(from.first(), text.size() - literal.size()) : from.first();
        for (int i = text.indexOf(literal, least); i >= 0; i = text.indexOf(literal, i + 1))
            to.append(i + literal.size());
        return to;
    }
    for (const int position : from) {
        const int next = afterLiteral(text, afterValue(text, position, kind), literal);
        if (next >= 0)
            to.append(next);
    }
    return to;
}

/// The values, found from the end of the text backwards. A text place takes as much as it can.
QStringList TextForm::readBack(const QString &text, const std::vector<Positions> &reached,
                               const QString &kinds) const
{
    QStringList values;
    int end = text.size();
    for (int i = kinds.size() - 1; i >= 0; --i) {
        const int valueEnd = end - literals.at(i).size();
        const Positions &begins = reached.at(static_cast<std::size_t>(i));
        const auto found = std::find_if(begins.begin(), begins.end(), [&](int position) {
            return kinds.at(i) == textPlace ? position <= valueEnd
                                            : afterValue(text, position, kinds.at(i)) == valueEnd;
        });
        values.prepend(text.mid(*found, valueEnd - *found));
        end = *found;
    }
    return values;
}
