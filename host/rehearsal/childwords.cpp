// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a process of one's own has said.
#include "host/rehearsal/childwords.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Rehearsal)
};

} // namespace

QString lastWords(const QByteArray &standardError)
{
    const QStringList lines = QString::fromLocal8Bit(standardError)
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (lines.isEmpty())
        return Text::tr("it said nothing");
    static const QRegularExpression prefix(QStringLiteral("\\Atalvenhr: "));
    return QString(lines.constLast()).remove(prefix);
}
