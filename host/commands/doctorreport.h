// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What `talvenhr doctor` tells: its diagnosis as a report.
#pragma once

#include "host/doctor/doctor.h"
#include "host/doctor/settingsdiagnosis.h"
#include "host/report/report.h"

/// What there is to tell of a look at everything.
struct DoctorResult
{
    QString dataDirectory;
    QString dataDirectoryReason;
    QVector<SettingLayer> settings; ///< none if the file cannot be used
    QString database; ///< which one was looked at, for people
    bool databaseWasSeen = false; ///< to the end of the look
    Diagnosis diagnosis;
};

/// For people: a page, worst first. For machines: every text in a field of its own.
Report doctorReport(const DoctorResult &result, bool forPeople);

/// For people: nothing but the verdict, in one line without its end.
QString doctorVerdict(const DoctorResult &result);

/// The values for the page "doctor" of a browser.
QVariantHash doctorHtmlValues(const DoctorResult &result);
