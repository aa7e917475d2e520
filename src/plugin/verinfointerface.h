// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who a plugin is: labelled facts for the server's version report.
#pragma once

#include <QMap>
#include <QString>
#include <QtPlugin>

/// Implemented beside ServerInterface by plugins that report more than their bare version.
class VerInfoInterface
{
public:
    virtual ~VerInfoInterface() = default;

    /// Facts by label. Works in every state.
    virtual QMap<QString, QString> getVerInfo() const = 0;
};

Q_DECLARE_INTERFACE(VerInfoInterface, "com.kestra-lk.VerInfoInterface")
