// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// SQL text to tokens. That a server reads the same is held by tst_HostileStatements.
#include "host/exportcheck/sqllexer.h"
#include "support/eventlog.h"
#include "support/testrows.h"

#include <QtTest>

namespace {

const char *const kindNames[] = {"text", "literal", "number", "word", "name", "sign", ";", "FAULT"};

/// Each token as KIND SOURCE, of a text what it stands for; OPEN at the end where something is.
QString describe(const QString &sql, const SqlTokens &read)
{
    QStringList parts;
    for (const SqlToken &token : read.tokens) {
        const QString kind = QString::fromLatin1(kindNames[token.kind]);
        const QString source = sql.mid(token.begin, token.end - token.begin);
        if (token.kind == SqlToken::Text)
            parts.append(QLatin1Char('\'') + token.value + QLatin1Char('\''));
        else if (token.kind == SqlToken::Sign || token.kind == SqlToken::Semicolon)
            parts.append(source);
        else
            parts.append(kind + QLatin1Char(' ') + source);
    }
    if (!read.endsCleanly)
        parts.append(QStringLiteral("OPEN"));
    return parts.join(QStringLiteral(" | "));
}

struct Case
{
    const char *name;
    const char *sql;
    const char *tokens;
};

const QVector<Case> cases {
    {"an assignment", "name='Ján', n=1", "word name | = | 'Ján' | , | word n | = | number 1"},
    {"a doubled quote", "'O''Neil'", "'O'Neil'"},
    {"doubled quotes only", "''''", "'''"},
    {"an empty literal", "''", "''"},
    {"double quotes", "\"a'b\"\"c\"", "'a'b\"c'"},
    {"two literals are one", "'a' /* x */ 'b'\"c\"", "'abc'"},
    {"escapes", "'a\\'b\\\\c\\\"d\\x'", "'a'b\\c\"dx'"},
    {"an escape and a multi-byte letter", "'\\ž'", "'ž'"},
    {"signs of patterns keep the backslash", "'\\%\\_'", "'\\%\\_'"},
    {"an open literal", "a 'b", "word a | FAULT 'b | OPEN"},
    {"an escaped end", "'b\\'", "FAULT 'b\\' | OPEN"},
    {"a backslash at the end", "'b\\", "FAULT 'b\\ | OPEN"},
    {"national literals", "N'a' n'b'", "literal N'a' | literal n'b'"},
    {"an open national literal", "n'a", "FAULT n'a | OPEN"},
    {"hexadecimal literals", "x'4A' X''", "literal x'4A' | literal X''"},
    {"half a byte", "x'4A4'", "FAULT x'4A4 | FAULT ' | OPEN"},
    {"no hexadecimal literal", "x'zz' ", "FAULT x' | word zz | FAULT '  | OPEN"},
    {"binary literals", "b'01' B'1'", "literal b'01' | literal B'1'"},
    {"no binary literal", "b'2'", "FAULT b' | number 2 | FAULT ' | OPEN"},
    {"an introducer", "_utf8'a'", "word _utf8 | 'a'"},
    {"names", "a b_1 $x ž9", "word a | word b_1 | word $x | word ž9"},
    {"a blank that is none", "a\u00a0b", "word a\u00a0b"},
    {"quoted names", "`a b` `c``d`", "name `a b` | name `c``d`"},
    {"an open name", "`a", "FAULT `a | OPEN"},
    {"numbers", "1 1.5 .5 1. 1e5 1e-5 1.5E+2 0x1F 0b01",
     "number 1 | number 1.5 | number .5 | number 1. | number 1e5 | number 1e-5 | number 1.5E+2 | "
     "number 0x1F | number 0b01"},
    {"names that begin with digits", "2x 1e 0xg 0b2", "word 2x | word 1e | word 0xg | word 0b2"},
    {"a dot between names", "a.1 `b`.c", "word a | . | word 1 | name `b` | . | word c"},
    {"a dot behind a literal", "'a'.5", "'a' | number .5"},
    {"signs", "<=>||", "< | = | > | | | |"},
    {"semicolons", "a;b;", "word a | ; | word b | ;"},
    {"a semicolon in a literal", "'a;b'", "'a;b'"},
    {"signs that SQL lacks", "a?", "word a | FAULT ?"},
    {"NULL", "\\N", "word \\N"},
    {"a comment of hyphens", "a -- b\nc", "word a | word c"},
    {"a comment of hyphens before a control", "a--\x01 b\nc", "word a | word c"},
    {"a comment of hyphens at the end", "a--", "word a"},
    {"two signs", "a--b", "word a | - | - | word b"},
    {"a comment to the line's end", "a # 'b\nc", "word a | word c"},
    {"a comment", "a/* 'b */c", "word a | word c"},
    {"comments are not nested", "/* /* */ */", "* | /"},
    {"an open comment", "a /* b", "word a | FAULT /* b | OPEN"},
    {"a comment that runs", "a /*! b */ c", "word a | word b | word c"},
    {"a comment that runs on one kind of server", "/*M! b */", "word b"},
    {"a comment within one that runs", "/*! a /* b */ c */ d", "word a | word c | word d"},
    {"an open comment that runs", "/*! b", "word b | FAULT  | OPEN"},
    {"a comment with a version", "/*!50000 b */", "word b"},
    {"a comment with a long version", "/*!100100 b */", "word b"},
    {"a version with too few digits", "/*!4000 b */", "number 4000 | word b"},
    {"the end of a comment that is none", "a */ b", "word a | * | / | word b"},
};

const QVector<Case> plainCases {
    {"a backslash is a letter", "'a\\b\\'c", "'a\\b\\' | word c"},
    {"two as well", "'a\\\\'", "'a\\\\'"},
    {"NULL goes on", "\\N", "word \\N"},
};

const QVector<Case> skippedCases {
    {"a comment with a version is skipped", "a /*!50000 'b */ c", "word a | word c"},
    {"and one within it", "a /*!50000 /* b */ d */ c", "word a | word c"},
    {"one without a version runs", "/*! b */", "word b"},
    {"an open one", "a /*!50000 /* b */", "word a | FAULT /*!50000 /* b */ | OPEN"},
};

} // namespace

class tst_SqlLexer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokens_data() { addRows(cases); }
    void tokens() { check(cases, {}); }
    void tokensWithoutEscapes_data() { addRows(plainCases); }
    void tokensWithoutEscapes() { check(plainCases, {false, true}); }
    void tokensOfAnOldServer_data() { addRows(skippedCases); }
    void tokensOfAnOldServer() { check(skippedCases, {true, false}); }
    void escapesForControls();
    void aNulEndsComments();
    void versionsAreSeen();

private:
    static void check(const QVector<Case> &table, const SqlDialect &dialect)
    {
        const Case &row = currentRow(table);
        const QString sql = str(row.sql);
        QCOMPARE(describe(sql, readSql(sql, dialect)), str(row.tokens));
    }
};

void tst_SqlLexer::escapesForControls()
{
    const SqlTokens read = readSql(str("'\\0\\b\\n\\r\\t\\Z'"));
    QCOMPARE(read.tokens.size(), 1);
    QCOMPARE(read.tokens.first().value.toLatin1(), QByteArray("\0\b\n\r\t\x1a", 6));
}

void tst_SqlLexer::aNulEndsComments()
{
    QString sql = str("# a? b");
    sql.replace(QLatin1Char('?'), QChar(u'\0'));
    const SqlTokens read = readSql(sql);
    QCOMPARE(read.tokens.size(), 2);
    QCOMPARE(read.tokens.first().kind, SqlToken::Fault);
    QCOMPARE(read.tokens.last().kind, SqlToken::Word);
}

void tst_SqlLexer::versionsAreSeen()
{
    QVERIFY(readSql(str("/*!50000 a */")).asksForVersion);
    QVERIFY(readSql(str("/*M!100100 a */")).asksForVersion);
    QVERIFY(!readSql(str("/*! a */ '/*!50000'")).asksForVersion);
}

QTEST_GUILESS_MAIN(tst_SqlLexer)
#include "tst_sqllexer.moc"
