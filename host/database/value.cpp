// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A cell of a table as a value of its own kind.
#include "host/database/value.h"

#include <limits>

namespace {

template <typename T>
int ordered(const T &one, const T &other)
{
    return one < other ? -1 : other < one ? 1 : 0;
}

int rank(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return 0;
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return 1;
    case QMetaType::QString:
        return 2;
    default:
        return 3;
    }
}

int compareNumbers(const QVariant &one, const QVariant &other)
{
    const int type = one.userType();
    if (type == QMetaType::Double || other.userType() == QMetaType::Double)
        return ordered(one.toDouble(), other.toDouble());
    if (type == other.userType()) {
        return type == QMetaType::LongLong ? ordered(one.toLongLong(), other.toLongLong())
                                           : ordered(one.toULongLong(), other.toULongLong());
    }
    // Only what is beyond the one type has the other.
    return type == QMetaType::LongLong ? -1 : 1;
}

} // namespace

QVariant plainValue(const QVariant &value)
{
    if (value.isNull())
        return {};
    switch (value.userType()) {
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::Double:
    case QMetaType::LongLong:
        return value;
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::ULongLong:
        if (value.toULongLong() > static_cast<qulonglong>(std::numeric_limits<qlonglong>::max()))
            return value;
        return value.toLongLong();
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        return value.toString();
    default:
        return value.toLongLong();
    }
}

int compareValues(const QVariant &one, const QVariant &other)
{
    const int kind = rank(one);
    if (kind != rank(other))
        return ordered(kind, rank(other));
    switch (kind) {
    case 0:
        return 0;
    case 1:
        return compareNumbers(one, other);
    case 2:
        return ordered(one.toString(), other.toString());
    default:
        return ordered(one.toByteArray(), other.toByteArray());
    }
}
