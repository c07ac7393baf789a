#include "export/helpsqlite.h"

#include "tests/support/allocationcounter.h"
#include "tests/support/randomtext.h"
#include "tests/support/systemprogram.h"

#include <gtest/gtest.h>

using namespace panelkit::testing;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

TEST(SqliteText, DoublesEverySingleQuote)
{
    EXPECT_EQ(helpSQLite::toSQLiteString(text("O'Brien")), text("O''Brien"));
    EXPECT_EQ(helpSQLite::toSQLiteString(text("''")), text("''''"));
    EXPECT_EQ(helpSQLite::toSQLiteString(text("'; DROP TABLE t; --")), text("''; DROP TABLE t; --"));
}

TEST(SqliteText, GoesOnBehindANul)
{
    EXPECT_EQ(helpSQLite::toSQLiteString(text("a'") + QChar(0) + text("'b")),
              text("a''") + QChar(0) + text("''b"));
    EXPECT_EQ(helpSQLite::toSQLiteString(QString(QChar(0))), QString(QChar(0)));
}

TEST(SqliteText, LeavesAnEmptyTextAndOtherCharactersAsTheyAre)
{
    for (const char *same : {"", "plain", "\"quoted\"", "\\", "a;b", "温度’"})
        EXPECT_EQ(helpSQLite::toSQLiteString(text(same)), text(same));
}

TEST(SqliteText, AllocatesOnlyForAQuote)
{
    const QString plain = text("bottle 7");
    const QString quoted = text("bottle '7'");
    const AllocationCounter counter;
    EXPECT_EQ(helpSQLite::toSQLiteString(plain).size(), 8);
    EXPECT_EQ(counter.count(), 0);
    EXPECT_EQ(helpSQLite::toSQLiteString(quoted).size(), 12);
    EXPECT_EQ(counter.count(), 1);
}

TEST(SqliteText, ComesBackFromADatabase)
{
    QStringList stored = {text("O'Brien"),     text("'"),
                          text("''"),          text("');DROP TABLE t;--"),
                          text("' OR '1'='1"), text("x'); INSERT INTO t VALUES ('y"),
                          text("line\nbreak"), text("温度 \"°C\" \\'\\'"),
                          text("\U0001F600'")};
    RandomText random(4);
    for (int i = 0; i < 2000; ++i)
        stored << random.of(text("'';-)(\"\\ a温\n"), random.number(0, 12));

    QByteArray script = "CREATE TABLE t (value TEXT);\nBEGIN;\n";
    QByteArray expected;
    for (const QString &value : std::as_const(stored)) {
        script += "INSERT INTO t VALUES ('" + helpSQLite::toSQLiteString(value).toUtf8() + "');\n";
        expected += value.toUtf8().toHex().toUpper() + '\n';
    }
    script += "COMMIT;\nSELECT hex(value) FROM t ORDER BY rowid;\n";
    EXPECT_EQ(outputOf("sqlite3", {QStringLiteral("-batch"), QStringLiteral(":memory:")}, script), expected);
}
