// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings that mean something else than what stands there.
#include "host/plugin/settingscheck.h"

#include "host/base/nearest.h"
#include "host/base/shellword.h"
#include "host/base/silentmessages.h"
#include "host/catalogue/findings.h"
#include "host/exportcheck/statementtrial.h"
#include "host/plugin/settingcommand.h"
#include "host/plugin/settingkeys.h"
#include "host/plugin/settingsfile.h"
#include "host/plugin/settingslines.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SettingsCheck)
};

const uint longestTimer = std::numeric_limits<uint>::max() / 1000; // seconds
const uint mostStates = std::numeric_limits<quint16>::max();
const char states[] = "MES/";

/// The settings, and their file as it stands.
struct Look
{
    const SettingsFile &settings;
    QByteArray content;
    QVector<SettingsLine> lines;

    /// The last line of the key; the plugin takes this one.
    SettingsLine line(const QString &key) const
    {
        for (int i = lines.size() - 1; i >= 0; --i) {
            if (lines.at(i).key == key)
                return lines.at(i);
        }
        return {};
    }
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The known key that somebody meant, whatever the case of its letters; empty if there is none.
QString keyInAnyCase(const QString &name)
{
    for (const SettingKey &key : settingKeys()) {
        if (key.name.compare(name, Qt::CaseInsensitive) == 0)
            return key.name;
    }
    return QString();
}

/// What is wrong with the place or the spelling of a key that the plugin does not ask for.
Finding strangeKey(const QString &key, const Look &look)
{
    const QString file = look.settings.path();
    const QString group = key.section(QLatin1Char('/'), 0, -2);
    const QString name = key.section(QLatin1Char('/'), -1);
    const QString known = keyInAnyCase(name);
    const SettingsLine line = look.line(key);
    bool isNumber = false;
    name.toUShort(&isNumber);
    if (line.text.startsWith(QLatin1Char('#')))
        return finding("W-SET-HASH", key, {file, key, line.text});
    if (isNumber && group != QLatin1String("MES"))
        return finding("W-SET-STATEPLACE", key, {file, line.text});
    if (!known.isEmpty() && !group.isEmpty())
        return finding("W-SET-GROUP", name, {name, group, file, line.text});
    if (!known.isEmpty())
        return finding("W-SET-CASE", name, {name, file, known + QLatin1Char('=') + line.value});
    if (group == QLatin1String("MES"))
        return finding(
            "W-SET-STATE", key,
            {name, file, QString::number(static_cast<quint16>(name.toUInt())), line.text});
    return finding("W-SET-UNKNOWN", key,
                   {key, file, didYouMean(name, settingKeyNames()), line.text});
}

bool isKnown(const QString &key)
{
    if (!settingKey(key).name.isEmpty())
        return true;
    bool isNumber = false;
    return key.startsWith(QLatin1String(states)) && key.mid(4).toUInt(&isNumber) <= mostStates
        && isNumber;
}

QVector<Finding> keyFindings(const Look &look)
{
    QVector<Finding> findings;
    const QStringList keys = look.settings.keys();
    for (const QString &key : keys) {
        if (!isKnown(key))
            findings.append(strangeKey(key, look));
    }
    return findings;
}

/// Lines that count for nothing, because another one of the key follows.
QVector<Finding> repeatedFindings(const Look &look)
{
    QVector<Finding> findings;
    for (const SettingsLine &line : look.lines) {
        const SettingsLine last = look.line(line.key);
        if (isKnown(line.key) && line.value != last.value)
            findings.append(finding("W-SET-TWICE", line.key,
                                    {line.key, look.settings.path(), last.text, line.text}));
    }
    return findings;
}

QVector<Finding> fileFindings(const Look &look)
{
    const QString file = look.settings.path();
    const QStringList values {file, shellWord(file)};
    if (look.content.startsWith("\xef\xbb\xbf"))
        return {finding("W-SET-BOM", file, values)};
    if (look.content.contains('\0'))
        return {finding("W-SET-UTF16", file, values)};
    if (QString::fromUtf8(look.content).contains(QChar(QChar::ReplacementCharacter)))
        return {finding("W-SET-ENCODING", file, values)};
    return {};
}

/// The text as it stands in the file or environment; the plugin's own reader made it.
QVector<Finding> switchFindings(const QString &name, const QString &text)
{
    static const QStringList clear {QStringLiteral("true"),
                                    QStringLiteral("false"),
                                    QStringLiteral("1"),
                                    QStringLiteral("0"),
                                    QStringLiteral("yes"),
                                    QStringLiteral("on"),
                                    QString()};
    static const QStringList negative {QStringLiteral("no"),  QStringLiteral("off"),
                                       QStringLiteral("n"),   QStringLiteral("f"),
                                       QStringLiteral("nie"), QStringLiteral("ne")};
    if (clear.contains(text.toLower()))
        return {};
    return {finding(
        "W-SET-SWITCH", name,
        {name, text,
         negative.contains(text.toLower()) ? QStringLiteral("false") : QStringLiteral("true")})};
}

QVector<Finding> numberFindings(const SettingKey &key, const QVariant &value)
{
    bool isNumber = false;
    const uint number = value.toUInt(&isNumber);
    const QString text = value.toString();
    const QString standard = key.standard.toString();
    if (!isNumber)
        return {
            finding("W-SET-NUMBER", key.name, {key.name, text, QString::number(number), standard})};
    const bool isByte = key.name == QLatin1String("syncCommandRun");
    const uint most = isByte ? std::numeric_limits<quint8>::max()
                             : std::numeric_limits<uint>::max();
    if (text != QString::number(number) || number > most)
        return {finding("W-SET-WRAP", key.name,
                        {key.name, text, QString::number(isByte ? number & most : number),
                         QString::number(most), isByte ? QStringLiteral("2") : standard})};
    if (key.name == QLatin1String("timerInterval") && number > longestTimer)
        return {finding(
            "W-SET-TIMER", key.name,
            {text, QString::number(qMax(number * 1000U, 1000U)), QString::number(longestTimer)})};
    if (isByte && number > 2)
        return {finding("N-SET-RUN", key.name, {text})};
    if (key.name == QLatin1String("departmentId") && number == 0)
        return {finding("N-SET-DEPARTMENT", key.name, {})};
    return {};
}

/// A text with signs that mean something to the reader of INI files.
QVector<Finding> textFindings(const QString &key, const Look &look)
{
    const QString name = key.section(QLatin1Char('/'), -1);
    const SettingsLine line = look.line(key);
    const QVariant value = look.settings.value(key);
    if (line.hasComment)
        return {finding("W-SET-COMMENT", name,
                        {name, value.toString(), quotedSettingsLine(name, line.value)})};
    if (value.type() == QVariant::StringList)
        return {finding("W-SET-COMMA", name, {name, quotedSettingsLine(name, line.value)})};
    const QString text = value.toString();
    const bool hasControls = std::any_of(text.begin(), text.end(),
                                         [](QChar letter) { return letter < QLatin1Char(' '); });
    if (line.hasLostBackslash || (hasControls && look.settings.holds(key)))
        return {finding("W-SET-BACKSLASH", name,
                        {name, text.simplified(), doubledSettingsLine(name, line.value)})};
    return {};
}

QVector<Finding> valueFindings(const Look &look)
{
    QVector<Finding> findings;
    for (const SettingKey &key : settingKeys()) {
        const QVariant value = look.settings.value(key.name);
        if (value.type() == QVariant::StringList || key.kind == SettingKey::Text)
            findings += textFindings(key.name, look);
        else if (key.kind == SettingKey::Switch)
            findings += switchFindings(key.name, value.toString());
        else
            findings += numberFindings(key, value);
    }
    const QString name = QStringLiteral("importFile");
    if (look.settings.holds(name) && look.settings.value(name).type() != QVariant::StringList
        && look.settings.toString(name).isEmpty())
        findings.append(
            finding("W-SET-EXPORT", name,
                    {settingsLine(name, look.settings.folder() + QStringLiteral("/ron.data"))}));
    return findings;
}

/// What becomes of the people in this state; empty if the text does no harm. The plugin's own code
/// fills its statements with it.
QString harmOf(ushort state, const QString &text)
{
    if (!isSuspicious(text))
        return QString();
    const SilentMessages silence;
    StatementTrial trial({{state, text}});
    EmployeeRecord record;
    record.evidencniStav = state;
    const QVector<TextTrial> trials = trial.effectsOf(record);
    if (trials.isEmpty())
        return QString();
    switch (trials.first().effect) {
    case TextEffect::RunsElse:
        return Text::tr("for people in this state the server runs something else, with the rights "
                        "of the login: %1")
            .arg(trials.first().becomes);
    case TextEffect::Fails:
        return Text::tr("no person in this state is added or updated, for the statement breaks");
    default:
        return Text::tr("people in this state get another text: '%1'").arg(trials.first().becomes);
    }
}

/// With signs in place that mean nothing to a statement, nor to what fills it.
QString harmless(QString text)
{
    static const QRegularExpression marker(QStringLiteral("%(?=[L\\d])"),
                                           QRegularExpression::UseUnicodePropertiesOption);
    text.replace(QLatin1Char('\''), QChar(0x2019));
    text.replace(QLatin1Char('\\'), QLatin1Char('/'));
    text.replace(marker, QStringLiteral("% "));
    return text;
}

QVector<Finding> stateFindings(const Look &look)
{
    QVector<Finding> findings;
    const QStringList keys = look.settings.keys();
    for (const QString &key : keys) {
        if (!key.startsWith(QLatin1String(states)) || !isKnown(key))
            continue;
        const QString code = key.mid(4);
        const QString text = look.settings.toString(key);
        const QVector<Finding> spelling = textFindings(key, look);
        findings += spelling;
        if (text.isEmpty() && spelling.isEmpty())
            findings.append(finding("N-SET-STATE", key, {code, look.line(key).text}));
        const QString harm = harmOf(code.toUShort(), text);
        if (!harm.isEmpty())
            findings.append(finding("W-SET-STATETEXT", key,
                                    {code, text, harm, settingsLine(code, harmless(text))}));
    }
    return findings;
}

/// What keeps the plugin from working, or takes the process down.
QVector<Finding> fatalFindings(const SettingsFile &settings, const QVector<Finding> &others)
{
    QVector<Finding> findings;
    if (!settings.toBool(QStringLiteral("enabled"))) {
        Finding disabled = finding("E-SET-DISABLED", QStringLiteral("enabled"), {settings.path()});
        for (const Finding &other : others) {
            const bool isCause = other.about.compare(disabled.about, Qt::CaseInsensitive) == 0
                || other.about == settings.path();
            if (isCause)
                disabled.remedy = findingLine(other);
        }
        findings.append(disabled);
    }
    if (settings.toUInt(QStringLiteral("syncInterval")) == 0)
        findings.append(finding("E-SET-SYNC", QStringLiteral("syncInterval"), {settings.path()}));
    return findings;
}

} // namespace

QVector<Finding> settingsFindings(const SettingsFile &settings)
{
    const QByteArray content = contentOf(settings.path());
    const Look look {settings, content, settingsLines(content)};
    QVector<Finding> findings = fileFindings(look);
    // Strange keys of a file that was not read as it was meant tell nothing more.
    if (findings.isEmpty())
        findings = keyFindings(look) + repeatedFindings(look) + stateFindings(look);
    findings += valueFindings(look);
    const QString command = QStringLiteral("syncCommand");
    findings += commandFindings(settings, look.line(command).value);
    return findings + fatalFindings(settings, findings);
}
