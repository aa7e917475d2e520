// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where the people stand in the text of a file of changes.
#pragma once

#include <QByteArray>
#include <QVector>

struct TextPlace
{
    int begin = 0;
    int size = 0;
};

struct ListedPeople
{
    QVector<TextPlace>
        places; ///< of each element of the list "people"; empty if there is no one list
    QByteArray rest; ///< the document with an empty list in its place
};

/// Finds the people in the text of an object of JSON. Only strings and brackets are looked at:
/// whether the text is JSON is for whoever parses the parts.
ListedPeople listedPeople(const QByteArray &text);
