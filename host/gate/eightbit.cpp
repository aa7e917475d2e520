// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Encodings in which each byte is a letter.
#include "host/gate/eightbit.h"

#include "host/base/nearest.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(EightBit)
};

bool isHigh(char byte)
{
    return static_cast<uchar>(byte) >= 0x80;
}

/// Those that somebody may have meant.
QStringList usualNames()
{
    QStringList names {QStringLiteral("IBM850"), QStringLiteral("IBM852"), QStringLiteral("KOI8-R"),
                       QStringLiteral("KOI8-U")};
    for (int page = 1250; page <= 1258; ++page)
        names.append(QStringLiteral("windows-%1").arg(page));
    for (int part = 1; part <= 16; ++part) {
        if (part != 12) // there is none
            names.append(QStringLiteral("ISO-8859-%1").arg(part));
    }
    return names;
}

QString decoded(const QTextCodec &codec, const QByteArray &bytes)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return codec.toUnicode(bytes.constData(), bytes.size(), &state);
}

/// ASCII below 128, and nothing from there on that depends on the next byte.
bool isEightBit(const QTextCodec &codec)
{
    QByteArray ascii("\t\n\r\x1b");
    for (char byte = 32; byte < 127; ++byte)
        ascii += byte;
    for (const char byte : qAsConst(ascii)) {
        if (decoded(codec, QByteArray(1, byte)) != QChar::fromLatin1(byte))
            return false;
    }
    for (int byte = 128; byte < 256; ++byte) {
        const QByteArray one(1, static_cast<char>(byte));
        for (const char next : {'0', 'A', '\x81', '\xa1'}) {
            if (decoded(codec, one + next)
                != decoded(codec, one) + decoded(codec, QByteArray(1, next)))
                return false;
        }
    }
    return true;
}

bool isSign(const QString &text)
{
    return text.size() == 1 && text.at(0).category() != QChar::Other_Control
        && text.at(0).category() != QChar::Other_NotAssigned
        && text.at(0) != QChar(QChar::ReplacementCharacter);
}

} // namespace

void LettersOfFile::add(const QByteArray &line)
{
    for (const char byte : line)
        seen.at(static_cast<uchar>(byte)) = true;
    if (std::none_of(line.cbegin(), line.cend(), isHigh))
        return;
    static const QTextCodec *const utf8 = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString text = utf8->toUnicode(line.constData(), line.size(), &state);
    invalid += state.invalidChars + (state.remainingChars > 0 ? 1 : 0);
    letters += std::count_if(text.cbegin(), text.cend(), [](QChar letter) {
        return letter.unicode() >= 0x80 && letter.isLetter();
    });
}

Failure EightBit::named(const QString &name, EightBit *encoding)
{
    const QTextCodec *const codec = QTextCodec::codecForName(name.toLatin1());
    if (!codec || !isEightBit(*codec))
        return {ExitUsage,
                Text::tr("'%1' is no encoding of eight bits%2")
                    .arg(name, didYouMean(name, usualNames()))};
    for (int byte = 128; byte < 256; ++byte) {
        const QString text = decoded(*codec, QByteArray(1, static_cast<char>(byte)));
        encoding->upper.at(static_cast<size_t>(byte - 128)) = isSign(text) ? text.toUtf8()
                                                                           : QByteArray();
    }
    return {};
}

bool EightBit::fits(const LettersOfFile &file) const
{
    for (int byte = 128; byte < 256; ++byte) {
        if (file.has(static_cast<uchar>(byte))
            && upper.at(static_cast<size_t>(byte - 128)).isEmpty())
            return false;
    }
    return true;
}

QByteArray EightBit::toUtf8(const QByteArray &bytes) const
{
    QByteArray text;
    for (const char byte : bytes) {
        if (isHigh(byte))
            text += upper.at(static_cast<uchar>(byte) - 128u);
        else
            text += byte;
    }
    return text;
}
