// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Czech and Slovak names and titles, about as often as they are met.
#include "host/company/names.h"

#include <QVector>

#include <algorithm>

namespace {

/// A text and how often it comes, as against the others of its list.
struct Frequent
{
    const char *text;
    int share;
};

const Frequent surnames[] = {
    {"Novák", 47},    {"Horváth", 32},    {"Svoboda", 26},      {"Novotný", 25}, {"Kováč", 24},
    {"Dvořák", 23},   {"Varga", 21},      {"Tóth", 21},         {"Černý", 19},   {"Procházka", 17},
    {"Nagy", 16},     {"Kučera", 16},     {"Veselý", 14},       {"Baláž", 14},   {"Krejčí", 13},
    {"Horák", 13},    {"Szabó", 12},      {"Němec", 12},        {"Marek", 11},   {"Pokorný", 11},
    {"Pospíšil", 11}, {"Molnár", 11},     {"Balog", 10},        {"Hájek", 10},   {"Král", 10},
    {"Jelínek", 10},  {"Lukáč", 10},      {"Růžička", 10},      {"Beneš", 9},    {"Fiala", 9},
    {"Sedláček", 9},  {"Zeman", 8},       {"Kolář", 8},         {"Polák", 8},    {"Gajdoš", 8},
    {"Krištof", 7},   {"Kollár", 7},      {"Hudák", 7},         {"Nemec", 7},    {"Říha", 6},
    {"Oravec", 6},    {"Šťastný", 5},     {"Ďuriš", 5},         {"Vŕba", 4},     {"Mĺkvy", 4},
    {"Ondrejka", 4},  {"Šimko", 4},       {"Hanko", 4},         {"Krížik", 3},   {"Řeháček", 3},
    {"Žáček", 3},     {"Čapek", 3},       {"Ľalík", 2},         {"Ôsmy", 1},     {"Kŕdeľ", 1},
    {"Skoček", 1},    {"Vlk", 1},         {"Wolkensteiner", 1}, {"Nezdařil", 1}, {"Osolsobě", 1},
    {"Zamrazil", 1},  {"Hlinohorský", 1},
};

const Frequent mensNames[] = {
    {"Jozef", 30},     {"Peter", 30},  {"Jan", 28},   {"Jiří", 27},      {"Ján", 25},
    {"Petr", 24},      {"Martin", 24}, {"Pavel", 19}, {"Tomáš", 19},     {"Josef", 18},
    {"Miroslav", 16},  {"Michal", 16}, {"Milan", 15}, {"Jaroslav", 14},  {"Štefan", 12},
    {"František", 11}, {"Marek", 10},  {"Jakub", 9},  {"Ondřej", 7},     {"Ľuboš", 5},
    {"Ľubomír", 5},    {"Matej", 5},   {"Matěj", 4},  {"Vojtěch", 4},    {"Ondrej", 4},
    {"Žigmund", 1},    {"Ctibor", 1},  {"Řehoř", 1},  {"Maximilián", 1},
};

const Frequent womensNames[] = {
    {"Mária", 32},    {"Jana", 30},   {"Marie", 26},  {"Anna", 24},     {"Eva", 19},
    {"Hana", 16},     {"Zuzana", 16}, {"Lenka", 15},  {"Katarína", 14}, {"Kateřina", 13},
    {"Lucia", 12},    {"Lucie", 11},  {"Monika", 11}, {"Martina", 11},  {"Petra", 10},
    {"Tereza", 9},    {"Alena", 9},   {"Ivana", 8},   {"Michaela", 7},  {"Helena", 6},
    {"Zdeňka", 5},    {"Ľudmila", 4}, {"Žofia", 3},   {"Růžena", 3},    {"Alžbeta", 3},
    {"Drahomíra", 2}, {"Blažena", 1}, {"Dáša", 1},    {"Alexandra", 1},
};

const Frequent titles[] = {
    {"Ing.", 40}, {"Mgr.", 30}, {"Bc.", 15},      {"PhDr.", 4},   {"JUDr.", 4},
    {"RNDr.", 3}, {"MUDr.", 2}, {"doc. Ing.", 1}, {"PaedDr.", 1}, {"prof. MUDr. Mgr.", 1},
};

const Frequent titlesAfter[] = {{"PhD.", 50}, {"MBA", 25}, {"CSc.", 20}, {"Ph.D., LL.M.", 5}};

/// A list made ready for drawing.
class Lot
{
public:
    template <size_t Size>
    explicit Lot(const Frequent (&list)[Size])
    {
        for (const Frequent &entry : list) {
            texts.append(QString::fromUtf8(entry.text));
            upTo.append((upTo.isEmpty() ? 0 : upTo.constLast()) + entry.share);
        }
    }

    QString draw(Draw &draw) const
    {
        const int number = draw.below(upTo.constLast());
        const auto found = std::upper_bound(upTo.cbegin(), upTo.cend(), number);
        return texts.at(static_cast<int>(found - upTo.cbegin()));
    }

private:
    QVector<QString> texts;
    QVector<int> upTo; ///< the shares of a text and of all before it
};

} // namespace

QString drawFirstName(Draw &draw, bool woman)
{
    static const Lot men(mensNames);
    static const Lot women(womensNames);
    const Lot &names = woman ? women : men;
    const QString first = names.draw(draw);
    if (draw.below(40) != 0)
        return first;
    const QString second = names.draw(draw);
    return second == first ? first : first + QLatin1Char(' ') + second;
}

QString drawSurname(Draw &draw)
{
    static const Lot lot(surnames);
    return lot.draw(draw);
}

QString feminine(const QString &surname)
{
    const QString ending = QStringLiteral("ová");
    const QChar last = surname.at(surname.size() - 1);
    if (last == QChar(0x00FD)) // ý
        return surname.chopped(1) + QChar(0x00E1); // á
    if (last == QChar(0x00ED) || last == QChar(0x011B)) // í, ě
        return surname;
    if (last == QLatin1Char('a') || last == QLatin1Char('o'))
        return surname.chopped(1) + ending;
    // The vowel before the last letter goes.
    if (surname.endsWith(QLatin1String("ek")) || surname.endsWith(QLatin1String("ec")))
        return surname.chopped(2) + last + ending;
    return surname + ending;
}

QString drawTitle(Draw &draw)
{
    static const Lot lot(titles);
    return draw.percent(25) ? lot.draw(draw) : QString();
}

QString drawTitleAfter(Draw &draw)
{
    static const Lot lot(titlesAfter);
    return draw.percent(12) ? lot.draw(draw) : QString();
}

QString drawPhone(Draw &draw)
{
    if (draw.percent(20))
        return QString();
    const int first = draw.below(1000);
    const int second = draw.below(1000);
    const QString rest = QStringLiteral("%1 %2")
                             .arg(first, 3, 10, QLatin1Char('0'))
                             .arg(second, 3, 10, QLatin1Char('0'));
    return draw.percent(60) ? QStringLiteral("09%1 %2").arg(10 + draw.below(9)).arg(rest)
                            : QStringLiteral("+420 6%1 %2").arg(10 + draw.below(89)).arg(rest);
}
