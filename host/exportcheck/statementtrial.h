// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the texts of an export line do to the statements of the plugin.
#pragma once

#include "host/exportcheck/pluginstatements.h"
#include "host/exportcheck/texteffect.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

/// Whether a backslash escapes in the server's literals.
enum class EscapeMode {
    Either, ///< not known: both are tried
    BackslashEscapes,
    NoBackslashEscapes, ///< sql_mode has NO_BACKSLASH_ESCAPES
};

/// The worst that the text of one column does.
struct TextTrial
{
    TextEffect effect = TextEffect::None;
    int column = 0; ///< of the export, from 1 on; 0: the text of the evidence state in the settings
    QString becomes; ///< for OtherText what is stored, for RunsElse what runs: a line, shortened
    /// Of EscapeMode::Either: under the other setting there is a lesser effect, or none.
    bool onlyWithBackslashEscapes = false;
    bool onlyWithoutBackslashEscapes = false;
};

/// The text holds something by which it could leave its place in a statement, or a marker of
/// QString::arg(). All others have no effect.
bool isSuspicious(const QString &text);

/// Decides by having the plugin's own code fill its real statements, and reading them as the server
/// does. Letters beyond the basic plane, which a connection may refuse, are not looked at, nor is
/// the length of a column.
///
/// Belongs to the thread that makes it; for several ones, see PluginStatements.
class StatementTrial
{
public:
    explicit StatementTrial(const QHash<ushort, QString> &texts = {});

    /// The worst effect of each text of the record that has one, by column; empty when all texts
    /// are stored as they stand. Where only several texts together do harm, all of them have it.
    ///
    /// What a marker is filled with may differ from a pass: the interval of a known person, and the
    /// department and branch, are not known here.
    QVector<TextTrial> effectsOf(const EmployeeRecord &record,
                                 EscapeMode mode = EscapeMode::Either);
    /// As effectsOf(), of one statement.
    QVector<TextTrial> effectsOf(const EmployeeRecord &record, PluginStatements::Kind kind,
                                 EscapeMode mode);
    /// Some text of the record is suspicious, or that of its state.
    bool isSuspicious(const EmployeeRecord &record) const;
    QString stateText(ushort state) const { return stateTexts.value(state); }
    /// The same without the quick look at the texts beforehand.
    QVector<TextTrial> fullTrial(const EmployeeRecord &record, EscapeMode mode);

private:
    class OneStatement;
    struct ColumnEffect
    {
        TextEffect effect = TextEffect::None;
        QString becomes;
    };
    using ColumnEffects = std::array<ColumnEffect, statementTextCount>;
    using ModeEffects = std::array<ColumnEffects, 2>; // with backslash escapes, without

    void add(PluginStatements::Kind kind, const EmployeeRecord &record, EscapeMode mode,
             ModeEffects *effects);
    QVector<TextTrial> cachedTrials(const EmployeeRecord &record, EscapeMode mode);
    static QVector<TextTrial> trialsOf(const ModeEffects &effects, EscapeMode mode);

    PluginStatements statements;
    const QHash<ushort, QString> stateTexts;
    QSet<ushort> suspiciousStates; // that have such a text
    QHash<QString, QVector<TextTrial>> namesTried; ///< see cachedTrials()
};
