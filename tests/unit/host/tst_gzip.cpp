// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Compressed files: they come back as they were, other programs read them, damaged ones give
// nothing.
#include "host/gate/gzip.h"
#include "support/patience.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class tst_Gzip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void content_comesBack_data();
    void content_comesBack();
    void sameContent_isTheSameFile();
    void otherProgramsFile_isRead();
    void files_areForTheirOwnerOnly();
    void cutFile_givesNothing();
    void damagedFile_givesNothing();
    void otherFile_isNamedWithItsFault_data();
    void otherFile_isNamedWithItsFault();
    void unreadableSource_leavesTheTarget();
    void sourceAsTarget_isRefused();
    void unwritableTarget_isNamed();

private:
    QString path(const char *name) const { return folder->filePath(QLatin1String(name)); }

    std::unique_ptr<QTemporaryDir> folder;
};

namespace {

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), static_cast<qint64>(bytes.size()));
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

QByteArray output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(longestWait) && process.exitCode() == 0
        ? process.readAllStandardOutput()
        : process.readAllStandardError();
}

/// Bytes that do not get smaller.
QByteArray noise(int size)
{
    QRandomGenerator random(7);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

} // namespace

void tst_Gzip::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
}

void tst_Gzip::content_comesBack_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a byte") << QByteArray("\0", 1);
    QTest::newRow("lines") << QByteArray("1234|1||Anna|Nová\n").repeated(20000);
    for (const int size : {65535, 65536, 65537, 1000000})
        QTest::addRow("noise of %d bytes", size) << noise(size);
    // A block that is read makes many that are written.
    QTest::newRow("zeros") << QByteArray(5000000, '\0');
}

void tst_Gzip::content_comesBack()
{
    QFETCH(QByteArray, bytes);
    write(path("plain"), bytes);
    QVERIFY(!writeGzip(path("plain"), path("packed.gz")));
    QVERIFY(!readGzip(path("packed.gz"), path("again")));
    QVERIFY(content(path("again")) == bytes);
    QVERIFY(output(QStringLiteral("gunzip"), {QStringLiteral("-c"), path("packed.gz")}) == bytes);
}

void tst_Gzip::sameContent_isTheSameFile()
{
    write(path("one"), "the same");
    write(path("other"), "the same");
    QFile other(path("other"));
    QVERIFY(other.open(QIODevice::ReadWrite));
    QVERIFY(other.setFileTime(QDateTime::currentDateTime().addDays(-400),
                              QFileDevice::FileModificationTime));
    other.close();
    QVERIFY(!writeGzip(path("one"), path("one.gz")));
    QVERIFY(!writeGzip(path("other"), path("other.gz")));
    QCOMPARE(content(path("one.gz")), content(path("other.gz")));
    QCOMPARE(content(path("one.gz")).mid(4, 4), QByteArray(4, '\0'));
}

/// It holds the name and the time of the file.
void tst_Gzip::otherProgramsFile_isRead()
{
    write(path("plain"), "from elsewhere");
    output(QStringLiteral("gzip"), {path("plain")});
    QVERIFY(!readGzip(path("plain.gz"), path("plain")));
    QCOMPARE(content(path("plain")), QByteArray("from elsewhere"));
}

void tst_Gzip::files_areForTheirOwnerOnly()
{
    write(path("plain"), "names of people");
    QVERIFY(!writeGzip(path("plain"), path("packed.gz")));
    QVERIFY(!readGzip(path("packed.gz"), path("again")));
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup
        | QFileDevice::ReadOther;
    QVERIFY(!(QFile::permissions(path("packed.gz")) & others));
    QVERIFY(!(QFile::permissions(path("again")) & others));
}

void tst_Gzip::cutFile_givesNothing()
{
    write(path("plain"), noise(200) + QByteArray(3000, 'a'));
    QVERIFY(!writeGzip(path("plain"), path("packed.gz")));
    const QByteArray packed = content(path("packed.gz"));
    for (int size = 0; size < packed.size(); ++size) {
        write(path("cut.gz"), packed.left(size));
        const Failure failure = readGzip(path("cut.gz"), path("again"));
        QCOMPARE(failure.text,
                 QStringLiteral("'%1' is damaged: it ends too early").arg(path("cut.gz")));
        QCOMPARE(failure.exitCode, ExitErrors);
        QVERIFY(!QFileInfo::exists(path("again")));
    }
}

/// The head is left alone: nothing protects its time.
void tst_Gzip::damagedFile_givesNothing()
{
    write(path("plain"), noise(200) + QByteArray(3000, 'a'));
    QVERIFY(!writeGzip(path("plain"), path("packed.gz")));
    write(path("again"), "as before");
    const QByteArray packed = content(path("packed.gz"));
    for (int i = 10; i < packed.size(); ++i) {
        QByteArray damaged = packed;
        damaged[i] = static_cast<char>(~damaged.at(i));
        write(path("damaged.gz"), damaged);
        const Failure failure = readGzip(path("damaged.gz"), path("again"));
        QVERIFY2(failure.text.contains(QStringLiteral("is damaged")), qPrintable(failure.text));
        QCOMPARE(content(path("again")), QByteArray("as before"));
    }
}

void tst_Gzip::otherFile_isNamedWithItsFault_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("fault");
    QTest::newRow("no gzip") << QByteArray("1234|1||Anna\n")
                             << QStringLiteral("'%1' is damaged, or no compressed file: incorrect "
                                               "header check");
    init();
    write(path("plain"), "x");
    QVERIFY(!writeGzip(path("plain"), path("packed.gz")));
    QTest::newRow("more behind it") << content(path("packed.gz")) + 'x'
                                    << QStringLiteral("'%1' is damaged: it goes on behind its end");
    QTest::newRow("much more behind it")
        << content(path("packed.gz")) + QByteArray(1 << 17, 'x')
        << QStringLiteral("'%1' is damaged: it goes on behind its end");
}

void tst_Gzip::otherFile_isNamedWithItsFault()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, fault);
    write(path("other.gz"), bytes);
    QCOMPARE(readGzip(path("other.gz"), path("again")).text, fault.arg(path("other.gz")));
    QVERIFY(!QFileInfo::exists(path("again")));
}

void tst_Gzip::unreadableSource_leavesTheTarget()
{
    write(path("target"), "as before");
    const Failure missing = writeGzip(path("missing"), path("target"));
    QVERIFY2(missing.text.startsWith(QStringLiteral("cannot read '%1': ").arg(path("missing"))),
             qPrintable(missing.text));
    QVERIFY(readGzip(folder->path(), path("target")));
    QCOMPARE(content(path("target")), QByteArray("as before"));
}

void tst_Gzip::sourceAsTarget_isRefused()
{
    write(path("plain"), "only here");
    QVERIFY(writeGzip(path("plain"), path("plain")));
    QCOMPARE(content(path("plain")), QByteArray("only here"));
}

void tst_Gzip::unwritableTarget_isNamed()
{
    write(path("plain"), "x");
    const Failure failure = writeGzip(path("plain"), path("missing/packed.gz"));
    QVERIFY2(failure.text.startsWith(
                 QStringLiteral("cannot write '%1': ").arg(path("missing/packed.gz"))),
             qPrintable(failure.text));
}

QTEST_GUILESS_MAIN(tst_Gzip)
#include "tst_gzip.moc"
