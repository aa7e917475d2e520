// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that a pass changes: the one value behind `rehearse`, `run --changes` and `undo`.
#include "host/changes/changes.h"

namespace {

struct NotDoneName
{
    NotDone::What what;
    const char *name;
};

const NotDoneName notDoneNames[] = {
    {NotDone::Branch, "branch"},
    {NotDone::Group, "group"},
    {NotDone::LeaveNotAtRest, "leave-not-at-rest"},
    {NotDone::LeaveCorrectedToday, "leave-corrected-today"},
    {NotDone::TestMode, "test-mode"},
    {NotDone::Refused, "refused"},
};

} // namespace

QString notDoneName(NotDone::What what)
{
    for (const NotDoneName &known : notDoneNames) {
        if (known.what == what)
            return QString::fromLatin1(known.name);
    }
    return {};
}

bool notDoneOfName(const QString &name, NotDone::What *what)
{
    for (const NotDoneName &known : notDoneNames) {
        if (name == QLatin1String(known.name)) {
            *what = known.what;
            return true;
        }
    }
    return false;
}
