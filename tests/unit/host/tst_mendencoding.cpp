// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Which files are recoded, and into what.
#include "host/company/damage.h"
#include "support/gate/mendtrial.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

class tst_MendEncoding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void foreignEncoding_isRecoded_data();
    void foreignEncoding_isRecoded();
    void otherFile_isNotRecoded_data();
    void otherFile_isNotRecoded();
    void unknownEncoding_isRefused_data();
    void unknownEncoding_isRefused();
};

namespace {

QByteArray encoded(const QByteArray &utf8, const char *encoding)
{
    return QTextCodec::codecForName(encoding)->fromUnicode(QString::fromUtf8(utf8));
}

} // namespace

void tst_MendEncoding::foreignEncoding_isRecoded_data()
{
    QTest::addColumn<QString>("encoding");
    for (const char *name : {"windows-1250", "cp1250", "WINDOWS-1250", "ISO-8859-2", "IBM852"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_MendEncoding::foreignEncoding_isRecoded()
{
    QFETCH(QString, encoding);
    for (quint32 seed = 1; seed <= 3; ++seed) {
        const QByteArray utf8 = companyExport(seed);
        const QByteArray foreign = encoded(utf8, encoding.toLatin1().constData());
        QVERIFY(foreign != utf8);
        QVector<MendedCell> cells;
        QVERIFY(mended(foreign, encodingOnly(encoding), &cells) == utf8);
        QCOMPARE(sorted(cells), sorted(differences(foreign, utf8)));
    }
}

void tst_MendEncoding::otherFile_isNotRecoded_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("encoding");
    const QByteArray utf8 = companyExport(1);
    const QString windows = QStringLiteral("windows-1250");
    QTest::newRow("UTF-8") << utf8 << windows;
    QTest::newRow("ASCII") << QByteArray("a|b\n") << windows;
    for (const char *damage : {"bad-utf8", "bad-utf8-surrogates", "windows-1250-line"})
        QTest::newRow(damage) << damaged(utf8, QLatin1String(damage), 1).text << windows;
    for (const char *damage : {"utf-16", "utf-16-without-mark", "utf-16-big-endian"})
        QTest::newRow(damage) << damaged(utf8, QLatin1String(damage), 1).text << windows;
    QTest::newRow("marked as UTF-8") << "\xef\xbb\xbf" + utf8 + "\xe1\n" << windows;
    QTest::newRow("another encoding, by its controls")
        << encoded(utf8, "windows-1250") << QStringLiteral("ISO-8859-2");
    QTest::newRow("no sign of the encoding") << encoded(utf8, "windows-1250") + "\x81\n" << windows;
}

void tst_MendEncoding::otherFile_isNotRecoded()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, encoding);
    QVector<MendedCell> cells;
    QVERIFY(mended(content, encodingOnly(encoding), &cells) == content);
    QVERIFY(cells.isEmpty());
}

void tst_MendEncoding::unknownEncoding_isRefused_data()
{
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const char *rest) {
        QTest::newRow(name) << QString::fromLatin1(name)
                            << QStringLiteral("'%1' is no encoding of eight bits%2")
                                   .arg(QLatin1String(name), QLatin1String(rest));
    };
    row("vindows-1250", " (did you mean 'windows-1250'?)");
    row("iso-8859-22", " (did you mean 'ISO-8859-2'?)");
    row("nothing-like-it", "");
    row("UTF-8", "");
    row("UTF-16", "");
    row("Shift_JIS", "");
    row("GB18030", "");
    row("EUC-JP", "");
}

void tst_MendEncoding::unknownEncoding_isRefused()
{
    QFETCH(QString, encoding);
    QFETCH(QString, fault);
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("target"));
    QFile source(folder.filePath(QStringLiteral("source")));
    QVERIFY(source.open(QIODevice::WriteOnly));
    QCOMPARE(source.write("a\xe1\n"), Q_INT64_C(3));
    source.close();
    QVector<MendedCell> cells;
    const Failure failure = mendExport(source.fileName(), target, encodingOnly(encoding), &cells);
    QCOMPARE(failure.text, fault);
    QCOMPARE(failure.exitCode, ExitUsage);
    QCOMPARE(checkWishes(encodingOnly(encoding)).text, fault);
    QVERIFY(!QFile::exists(target));
    QVERIFY(!checkWishes(encodingOnly(QStringLiteral("windows-1250"))));
    QVERIFY(!checkWishes(MendWishes()));
}

QTEST_GUILESS_MAIN(tst_MendEncoding)
#include "tst_mendencoding.moc"
