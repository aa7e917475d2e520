// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass would have done, and has not, from what was told of it.
#include "host/changes/notdone.h"

#include "host/catalogue/messages.h"

#include <cstring>

namespace {

struct Sign
{
    const char *words; ///< in the form of a message
    NotDone::What what;
};

/// By words of the catalogue's messages; tst_PassNotes holds each of them against a message.
const Sign signs[] = {
    {"NOT FOUND for employee", NotDone::Branch},
    {"Group ID NOT found", NotDone::Group},
    {"Testing mode is active", NotDone::TestMode},
};

bool isRefusal(const ToldMessage &told)
{
    return told.message.isError && told.known
        && (std::strstr(told.known->text, "ERROR") || std::strstr(told.known->text, "Error"));
}

bool tells(const ToldMessage &told, NotDone::What *what)
{
    for (const Sign &sign : signs) {
        if (told.known && std::strstr(told.known->text, sign.words)) {
            *what = sign.what;
            return true;
        }
    }
    return false;
}

} // namespace

QVector<AboutNotDone> notDoneOf(const PassTold &told)
{
    QVector<AboutNotDone> all;
    for (const ToldMessage &message : told.messages) {
        NotDone notDone;
        notDone.text = message.message.text;
        if (tells(message, &notDone.what) || (told.refused.isEmpty() && isRefusal(message)))
            all.append({message.about, notDone});
    }
    for (const RestingLeave &leave : told.leave)
        all.append({{{NamedPeople::Pid, {leave.pid}}, QString()},
                    {leave.what, leave.text, QString(), QString()}});
    for (const RefusedStatement &refused : told.refused)
        all.append(
            {refused.about, {NotDone::Refused, QString(), refused.statement, refused.error}});
    return all;
}
