// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What somebody meant who wrote a word that nobody knows.
#pragma once

#include <QStringList>

/// The known word that the other one most likely stands for, whatever the case of the letters;
/// empty when none is near.
QString nearest(const QString &word, const QStringList &known);

/// " (did you mean '...'?)" for the nearest word, or nothing.
QString didYouMean(const QString &word, const QStringList &known);
