// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The records whose branch and calendar step failed.
#pragma once

#include "export/employeerecord.h"

#include <QHash>
#include <QVector>

#include <initializer_list>

/// A bag of records: without an order, and a record may stand in it more than once. What it costs
/// to find one does not depend on how many there are. toVector(), clear() and the construction from
/// a list serve tests.
class WaitingRecords
{
public:
    WaitingRecords() = default;
    WaitingRecords(std::initializer_list<EmployeeRecord> given)
    {
        for (const EmployeeRecord &record : given)
            append(record);
    }

    bool contains(const EmployeeRecord &record) const
    {
        return records.contains(key(record), record);
    }
    void append(const EmployeeRecord &record) { records.insert(key(record), record); }
    /// Takes out all that are wholly equal to the record.
    void removeAll(const EmployeeRecord &record) { records.remove(key(record), record); }
    void clear() { records.clear(); }
    int size() const { return records.size(); }
    bool isEmpty() const { return records.isEmpty(); }
    /// In any order.
    QVector<EmployeeRecord> toVector() const { return records.values().toVector(); }

private:
    /// Both numbers, unlike the pid, which people may share.
    static quint64 key(const EmployeeRecord &record)
    {
        return static_cast<quint64>(record.osobniCislo) << 32 | record.poradoveCisloPP;
    }

    QMultiHash<quint64, EmployeeRecord> records;
};
