// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The letters of a line, from its bytes.
#include "host/exportcheck/textcheck.h"

#include "export/exportline.h"
#include "host/exportcheck/cellform.h"

#include <QTextCodec>

#include <algorithm>

namespace {

const char byteOrderMark[] = "\xef\xbb\xbf";

/// Which kinds of bytes there are.
struct ByteKinds
{
    bool high = false; ///< outside ASCII
    bool control = false; ///< C0 or DEL, but for the white space that a line end may have
    bool nul = false;
};

ByteKinds kindsOf(const QByteArray &bytes)
{
    ByteKinds kinds;
    for (const char byte : bytes) {
        const uchar value = static_cast<uchar>(byte);
        if (value >= 0x80)
            kinds.high = true;
        else if (value < 0x20 || value == 0x7f) {
            kinds.nul = kinds.nul || value == 0;
            kinds.control = true;
        }
    }
    return kinds;
}

/// The bytes of a cell. A '|' is never part of a letter.
QByteArray bytesOfCell(const QByteArray &line, int column)
{
    int start = 0;
    for (int i = 0; i < column; ++i)
        start = line.indexOf('|', start) + 1;
    const int end = line.indexOf('|', start);
    return line.mid(start, end < 0 ? -1 : end - start);
}

QString codePoint(uint letter)
{
    return QStringLiteral("%1").arg(letter, 4, 16, QLatin1Char('0')).toUpper();
}

/// Also signs that only steer how a text is shown.
bool isInvisible(QChar letter)
{
    return letter.category() == QChar::Other_Control || letter.category() == QChar::Other_Format;
}

/// Looks at the cells of one line that was taken.
class LetterCheck
{
public:
    LetterCheck(const QByteArray &lineBytes, int lineNumber, ExportFindings *found) :
        bytes(lineBytes),
        number(lineNumber),
        findings(found)
    { }

    void look(const QStringRef &cell, int column);

private:
    bool isDamaged(const QStringRef &cell, int column) const;
    void addDamaged(const QStringRef &cell, int column);
    void add(const char *code, int column, const QStringList &values);

    const QByteArray &bytes;
    const int number;
    ExportFindings *const findings;
};

void LetterCheck::add(const char *code, int column, const QStringList &values)
{
    findings->append(
        {&findingKind(code), number, column + 1, QStringList(exportColumn(column)) + values, {}});
}

/// The sign for bytes that are none may also stand there by itself.
bool LetterCheck::isDamaged(const QStringRef &cell, int column) const
{
    return cell.contains(QChar(QChar::ReplacementCharacter))
        && !bytesOfCell(bytes, column).contains("\xef\xbf\xbd");
}

void LetterCheck::addDamaged(const QStringRef &cell, int column)
{
    const QByteArray damaged = bytesOfCell(bytes, column).trimmed();
    const QString encoding = likelyEncoding(damaged);
    add("E-TEXT-UTF8", column, {encoding, decoded(damaged, encoding), cell.toString()});
}

void LetterCheck::look(const QStringRef &cell, int column)
{
    if (isDamaged(cell, column))
        addDamaged(cell, column);
    for (int i = 0; i < cell.size(); ++i) {
        const QChar letter = cell.at(i);
        if (letter.isHighSurrogate() && i + 1 < cell.size()) {
            const uint whole = QChar::surrogateToUcs4(letter, cell.at(i + 1));
            add("E-TEXT-PLANE", column, {cell.toString(), codePoint(whole)});
            return;
        }
        if (isInvisible(letter)) {
            add("W-TEXT-CONTROL", column, {cell.toString(), codePoint(letter.unicode())});
            return;
        }
    }
}

} // namespace

void checkLetters(const QByteArray &bytes, const ExportLine &line, int lineNumber,
                  ExportFindings *findings)
{
    const QByteArray content = bytes.trimmed();
    const ByteKinds kinds = kindsOf(content);
    if (!kinds.high && !kinds.control)
        return;
    if (content.startsWith(byteOrderMark))
        findings->append({&findingKind("N-TEXT-MARK"), lineNumber, 0, {}, {}});
    if (kinds.nul)
        findings->append({&findingKind("E-TEXT-NUL"),
                          lineNumber,
                          0,
                          {QString::number(QString::fromUtf8(bytes.constData()).size())},
                          {}});
    if (line.fate != LineFate::Taken)
        return;
    LetterCheck check(content, lineNumber, findings);
    for (int column = 0; column < exportColumnCount; ++column) {
        if (isTextColumn(column))
            check.look(line.cells[static_cast<size_t>(column)], column);
    }
}

QString likelyEncoding(const QByteArray &bytes)
{
    static const QString letters = QStringLiteral(
        "áäčďéěíĺľňóôöőŕřšťúůüűýžÁÄČĎÉĚÍĹĽŇÓÔÖŐŔŘŠŤÚŮÜŰÝŽ");
    const auto strange = [](const QString &text) {
        return std::count_if(text.begin(), text.end(), [](QChar letter) {
            return letter.unicode() >= 0x80 && !letters.contains(letter);
        });
    };
    const QString windows = QStringLiteral("Windows-1250");
    const QString latin = QStringLiteral("ISO-8859-2");
    return strange(decoded(bytes, latin)) < strange(decoded(bytes, windows)) ? latin : windows;
}

QString decoded(const QByteArray &bytes, const QString &encoding)
{
    const bool isLatin = encoding.startsWith(QLatin1String("ISO"));
    return QTextCodec::codecForName(isLatin ? "ISO-8859-2" : "windows-1250")->toUnicode(bytes);
}
