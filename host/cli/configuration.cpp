// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The configuration file, talvenhr.conf.
#include "host/cli/configuration.h"

#include "host/base/nearest.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Configuration)
};

QString sectionOf(const QString &setting)
{
    return setting.section(QLatin1Char('/'), 0, 0);
}

QStringList sectionsOf(const QStringList &settings)
{
    QStringList sections;
    for (const QString &setting : settings)
        sections.append(sectionOf(setting));
    sections.removeDuplicates();
    return sections;
}

QStringList keysOf(const QString &section, const QStringList &settings)
{
    QStringList keys;
    for (const QString &setting : settings) {
        if (sectionOf(setting) == section)
            keys.append(setting.section(QLatin1Char('/'), 1));
    }
    return keys;
}

/// A known setting that ends with a star stands for all that begin like it.
bool isKnown(const QString &setting, const QStringList &known)
{
    return std::any_of(known.cbegin(), known.cend(), [&setting](const QString &one) {
        return one == setting
            || (one.endsWith(QLatin1Char('*')) && setting.size() >= one.size()
                && setting.startsWith(one.leftRef(one.size() - 1)));
    });
}

bool isComment(const QString &text)
{
    return text.startsWith(QLatin1Char('#')) || text.startsWith(QLatin1Char(';'));
}

} // namespace

QStringList Configuration::standardPaths()
{
    const QString name = QStringLiteral("talvenhr/talvenhr.conf");
    return {QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                + QLatin1Char('/') + name,
            QStringLiteral("/etc/") + name};
}

QString Configuration::standardPath()
{
    const QStringList paths = standardPaths();
    for (const QString &path : paths) {
        if (QFileInfo::exists(path))
            return path;
    }
    return QString();
}

QStringList Configuration::settings() const
{
    QStringList names = entries.keys();
    names.sort();
    return names;
}

Failure Configuration::read(const QString &path, const QStringList &known)
{
    file = QFileInfo(path).absoluteFilePath();
    QFile source(path);
    if (QFileInfo(path).isDir() || !source.open(QIODevice::ReadOnly))
        return {
            ExitUsage,
            Text::tr("the configuration '%1' cannot be read: %2")
                .arg(file,
                     QFileInfo(path).isDir() ? Text::tr("it is a folder") : source.errorString())};
    QString section;
    Failure first;
    for (int line = 1; !source.atEnd(); ++line) {
        const QString text = QString::fromUtf8(source.readLine()).trimmed();
        const Failure failure = take(text, line, known, &section);
        if (!first)
            first = failure;
    }
    return first;
}

/// One line of the file, without the blanks around it.
Failure Configuration::take(const QString &text, int line, const QStringList &known,
                            QString *section)
{
    if (text.isEmpty() || isComment(text))
        return {};
    if (text.startsWith(QLatin1Char('[')) && text.endsWith(QLatin1Char(']'))) {
        *section = text.mid(1, text.size() - 2).trimmed();
        const QStringList sections = sectionsOf(known);
        if (sections.contains(*section))
            return {};
        return wrong(
            line, Text::tr("unknown section [%1]%2").arg(*section, didYouMean(*section, sections)));
    }

    const int sign = text.indexOf(QLatin1Char('='));
    if (sign < 0)
        return wrong(line, Text::tr("neither a section nor KEY=VALUE: '%1'").arg(text));
    const QString key = text.left(sign).trimmed();
    if (section->isEmpty())
        return wrong(line, Text::tr("the key '%1' stands below no section").arg(key));
    const QString setting = *section + QLatin1Char('/') + key;
    if (!isKnown(setting, known))
        return wrong(line,
                     Text::tr("unknown key '%1' in [%2]%3")
                         .arg(key, *section, didYouMean(key, keysOf(*section, known))));
    if (entries.contains(setting))
        return wrong(line,
                     Text::tr("the key '%1' in [%2] stands in line %3 already")
                         .arg(key, *section)
                         .arg(entries.value(setting).line));
    entries.insert(setting, {text.mid(sign + 1).trimmed(), line});
    return {};
}

Failure Configuration::wrong(int line, const QString &text) const
{
    return {ExitUsage, Text::tr("%1, line %2: %3").arg(file).arg(line).arg(text)};
}
