// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What happens to the people of a company, day by day.
#pragma once

#include "host/company/company.h"
#include "host/company/draw.h"
#include "host/company/lifeevent.h"

/// How lively a company is: of ten thousand people, how many a day.
struct LifeRates
{
    int hired = 12;
    int returned = 60; ///< of those who left
    int endAnnounced = 12;
    int endWithdrawn = 60; ///< of those who are about to leave
    int renamed = 5;
    int graduated = 3;
    int newPhone = 15;
    int moved = 10;
    int newCalendar = 8;
    int newSupervisor = 8;
    int fellIll = 40;
    int wentOnParentalLeave = 4;
    int cameBack = 700; ///< of those who are in a state
    int leaveTaken = 400;
    int mostPeople = 2147483647; ///< from then on nobody is taken on
};

/// A company that lives. Whoever others have as supervisor stays; all else can happen to anybody.
/// The same company, seed and rates give the same life on every machine.
class Life
{
public:
    /// `firstDay` lies before all that happens.
    Life(const Company &firstDay, quint32 seed, const LifeRates &lifeRates = LifeRates());

    /// Lives the next day and tells what happened, in the order of the kinds. The company is then
    /// that of the day.
    QVector<LifeEvent> nextDay();

    const Company &company() const { return now; }
    /// From the next day on.
    void setRates(const LifeRates &lifeRates) { rates = lifeRates; }

private:
    using Change = void (Life::*)(Employment &);

    void happen(int rate, Change change);
    void tell(EventKind kind, const Employment &employment, const QString &before,
              const QString &after);
    void hire();

    void returnAgain(Employment &employment);
    void leaveExport(Employment &employment);
    void end(Employment &employment);
    void announceEnd(Employment &employment);
    void withdrawEnd(Employment &employment);
    void rename(Employment &employment);
    void graduate(Employment &employment);
    void changePhone(Employment &employment);
    void move(Employment &employment);
    void changeCalendar(Employment &employment);
    void changeSupervisor(Employment &employment);
    void fallIll(Employment &employment);
    void goOnParentalLeave(Employment &employment);
    void comeBack(Employment &employment);
    void takeLeave(Employment &employment);
    void grantLeave(Employment &employment);

    bool isAtWork(const Employment &employment) const;
    bool isEmployed(uint number) const;
    void beginState(EventKind kind, Employment &employment, ushort state);
    void setCalendar(Employment &employment, uint calendar);
    uint drawnSupervisor(const Employment &employment);

    Company now;
    Draw draw;
    LifeRates rates;
    QVector<LifeEvent> events;
    QVector<uint> leaders[3]; ///< numbers of persons, by their level
    uint lastNumber = 0;
};
