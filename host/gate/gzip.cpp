// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Compressed files, as an archive keeps them.
#include "host/gate/gzip.h"

#include "host/base/ownerfile.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>

#include <zlib.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gzip)
};

const int blockSize = 1 << 16;
const int gzipWindow = 15 + 16; // the largest one, with the head and the checksum of gzip

Failure cannotRead(const QFile &file)
{
    return {ExitUsage, Text::tr("cannot read '%1': %2").arg(file.fileName(), file.errorString())};
}

/// A stream of zlib between two files, with a block for each side.
class Stream
{
public:
    Stream(QFile *input, QIODevice *output) :
        source(input),
        target(output)
    { }

    virtual ~Stream() = default;
    Q_DISABLE_COPY(Stream)

    Failure run();

protected:
    /// Goes on with the stream. The result is zlib's.
    virtual int step(bool isLast) = 0;
    /// What a result other than Z_OK means; Z_STREAM_END: something stands behind the stream.
    virtual Failure trouble(int result) const = 0;

    QFile *const source;
    z_stream stream {};

private:
    bool readOn();

    QIODevice *const target;
    QByteArray readBlock = QByteArray(blockSize, '\0');
    QByteArray writtenBlock = QByteArray(blockSize, '\0');
    bool atEnd = false;
};

bool Stream::readOn()
{
    const qint64 count = source->read(readBlock.data(), blockSize);
    stream.next_in = reinterpret_cast<Bytef *>(readBlock.data());
    stream.avail_in = static_cast<uInt>(qMax(count, Q_INT64_C(0)));
    atEnd = count == 0;
    return count >= 0;
}

Failure Stream::run()
{
    int result = Z_OK;
    while (result != Z_STREAM_END) {
        if (stream.avail_in == 0 && !atEnd && !readOn())
            return cannotRead(*source);
        stream.next_out = reinterpret_cast<Bytef *>(writtenBlock.data());
        stream.avail_out = static_cast<uInt>(blockSize);
        result = step(atEnd);
        if (result != Z_OK && result != Z_STREAM_END)
            return trouble(result);
        if (target->write(writtenBlock.constData(), blockSize - static_cast<int>(stream.avail_out))
            < 0)
            return {}; // the target knows why
    }
    return stream.avail_in > 0 || !source->atEnd() ? trouble(result) : Failure();
}

class Compression : public Stream
{
public:
    Compression(QFile *input, QIODevice *output) :
        Stream(input, output)
    {
        // The head that zlib makes by itself has no time and no name.
        deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindow, 8, Z_DEFAULT_STRATEGY);
    }
    ~Compression() override { deflateEnd(&stream); }

private:
    int step(bool isLast) override { return deflate(&stream, isLast ? Z_FINISH : Z_NO_FLUSH); }
    Failure trouble(int) const override
    {
        return {ExitUsage, Text::tr("cannot compress '%1'").arg(source->fileName())};
    }
};

class Expansion : public Stream
{
public:
    Expansion(QFile *input, QIODevice *output) :
        Stream(input, output)
    {
        inflateInit2(&stream, gzipWindow);
    }
    ~Expansion() override { inflateEnd(&stream); }

private:
    int step(bool) override { return inflate(&stream, Z_NO_FLUSH); }
    Failure trouble(int result) const override;
};

Failure Expansion::trouble(int result) const
{
    const QString name = source->fileName();
    if (result == Z_BUF_ERROR)
        return {ExitErrors, Text::tr("'%1' is damaged: it ends too early").arg(name)};
    if (result == Z_STREAM_END)
        return {ExitErrors, Text::tr("'%1' is damaged: it goes on behind its end").arg(name)};
    return {ExitErrors,
            Text::tr("'%1' is damaged, or no compressed file: %2")
                .arg(name, stream.msg ? QString::fromLatin1(stream.msg) : QString::number(result))};
}

template <typename Direction>
Failure convert(const QString &source, const QString &target)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return cannotRead(file);
    if (const Failure failure = checkOutputFiles({target}, {source}))
        return failure;
    return fillOwnerFile(target,
                         [&file](QIODevice *output) { return Direction(&file, output).run(); });
}

} // namespace

Failure writeGzip(const QString &source, const QString &target)
{
    return convert<Compression>(source, target);
}

Failure readGzip(const QString &source, const QString &target)
{
    return convert<Expansion>(source, target);
}
