// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Pages for a browser.
#include "host/report/htmlpage.h"

#include "host/base/oneline.h"

#include <grantlee/context.h>
#include <grantlee/engine.h>
#include <grantlee/template.h>
#include <grantlee/templateloader.h>

#include <QCoreApplication>
#include <QIODevice>

// Outside of any namespace, as Qt asks for resources of a static library.
static void initialiseTemplates()
{
    Q_INIT_RESOURCE(html);
}

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(HtmlPage)
};

/// What XML cannot hold, nor a browser show, becomes its picture; what would turn the text around
/// it, too.
QVariant shown(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::QString: {
        QString text = value.toString();
        for (QChar &letter : text) {
            if (letter < QLatin1Char(' ') && letter != QLatin1Char('\n'))
                letter = QChar(0x2400 + letter.unicode());
            else if (letter.unicode() >= 0xfffe || turnsDirection(letter))
                letter = QChar(QChar::ReplacementCharacter);
        }
        return text;
    }
    case QMetaType::QVariantList: {
        QVariantList list = value.toList();
        for (QVariant &item : list)
            item = shown(item);
        return list;
    }
    case QMetaType::QVariantHash: {
        QVariantHash hash = value.toHash();
        for (QVariant &item : hash)
            item = shown(item);
        return hash;
    }
    default:
        return value;
    }
}

} // namespace

QString htmlPage(const QString &name, const QVariantHash &values, QString *error)
{
    initialiseTemplates();
    Grantlee::Engine engine;
    const auto loader = QSharedPointer<Grantlee::FileSystemTemplateLoader>::create();
    loader->setTemplateDirs({QStringLiteral(":/talvenhr/html")});
    engine.addTemplateLoader(loader);
    const Grantlee::Template page = engine.loadByName(name + QStringLiteral(".html"));
    Grantlee::Context context(shown(values).toHash());
    const QString text = page->render(&context);
    if (page->error() == Grantlee::NoError)
        return text;
    *error = page->errorString();
    return QString();
}

Failure writeHtmlPage(const QString &path, const QString &name, const QVariantHash &values,
                      FileReaders readers)
{
    QString error;
    const QString page = htmlPage(name, values, &error);
    if (page.isEmpty())
        return {ExitUsage, Text::tr("the page '%1' cannot be made: %2").arg(path, error)};
    return writeOwnerFile(
        path, [&page](QIODevice *file) { file->write(page.toUtf8()); }, readers);
}
