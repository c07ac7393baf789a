#include "export/helpcsv.h"

#include "tests/export/plaincsv.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/randomtext.h"
#include "tests/support/systemprogram.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <vector>

using namespace panelkit::testing;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QStringList texts(std::initializer_list<const char *> utf8)
{
    QStringList list;
    for (const char *entry : utf8)
        list << text(entry);
    return list;
}

// What CSV cares about, and what it must leave alone.
QString csvAlphabet()
{
    return text("\"\"\",,, ;'\tab温é") + QChar(0xd83d) + QChar(0xde00) + QChar(0xfeff) + QChar(0);
}

struct Reading
{
    const char *name;
    const char *line;
    QStringList fields;
};

// A position that a reader starts from, and what it must make of the line from there.
struct FieldReading
{
    const char *name;
    const char *line;
    int pos;
    const char *field;
    int end;
};

} // namespace

TEST(CsvField, QuotesOnlyForACommaOrAQuote)
{
    EXPECT_EQ(helpCSV::toCsvString(text("a,b")), text("\"a,b\""));
    EXPECT_EQ(helpCSV::toCsvString(text("say \"hi\"")), text("\"say \"\"hi\"\"\""));
    EXPECT_EQ(helpCSV::toCsvString(text("\"")), text("\"\"\"\""));
    EXPECT_EQ(helpCSV::toCsvString(text(",")), text("\",\""));
}

TEST(CsvField, LeavesEverythingElseAsItIs)
{
    for (const char *field :
         {"", "plain", "first\nsecond", "a\r\nb", " leading", "trailing ", "a;b", "'", "温度", "，"})
        EXPECT_EQ(helpCSV::toCsvString(text(field)), text(field));
}

TEST(CsvField, AllocatesOnlyWhatItQuotes)
{
    const QString plain = text("bottle 7");
    const QString quoted = text("bottle, \"7\"");
    const AllocationCounter counter;
    EXPECT_EQ(helpCSV::toCsvString(plain).size(), 8);
    EXPECT_EQ(counter.count(), 0);
    EXPECT_EQ(helpCSV::toCsvString(quoted).size(), 15);
    EXPECT_EQ(counter.count(), 1);
}

TEST(CsvLine, JoinsItsFieldsWithCommas)
{
    EXPECT_EQ(helpCSV::toCsvStringLine(texts({"a", "b,c", "", "say \"hi\""})),
              text("a,\"b,c\",,\"say \"\"hi\"\"\""));
    EXPECT_EQ(helpCSV::toCsvStringLine(texts({"", ""})), text(","));
}

TEST(CsvLine, IsEmptyForNoFieldsAndForOneEmptyField)
{
    EXPECT_EQ(helpCSV::toCsvStringLine(QStringList()), QString());
    EXPECT_EQ(helpCSV::toCsvStringLine(texts({""})), QString());
}

TEST(CsvLine, TakesOneAllocation)
{
    const QStringList fields =
        texts({"2026-01-02 10:11:12", "a,b", "温度", "say \"hi\"", "12.5", "", "x", "y"});
    const AllocationCounter counter;
    const QString line = helpCSV::toCsvStringLine(fields);
    EXPECT_EQ(counter.count(), 1);
    EXPECT_EQ(line, text("2026-01-02 10:11:12,\"a,b\",温度,\"say \"\"hi\"\"\",12.5,,x,y"));
}

TEST(CsvLine, IsReadByTheStatedRules)
{
    const Reading rows[] = {
        {"empty line", "", {}},
        {"one comma", ",", texts({"", ""})},
        {"comma at the end", "a,", texts({"a", ""})},
        {"two commas at the end", "a,,", texts({"a", "", ""})},
        {"comma at the start", ",a", texts({"", "a"})},
        {"plain fields", "a,b c,d", texts({"a", "b c", "d"})},
        {"quoted, then the line's end", "a,\"b\"", texts({"a", "b"})},
        {"quoted, then a comma", "\"a\",b", texts({"a", "b"})},
        {"quoted with a comma inside", "\"a,b\",c", texts({"a,b", "c"})},
        {"quoted, then a last empty field", "\"a,b\",", texts({"a,b", ""})},
        {"doubled quote", "\"say \"\"hi\"\"\",x", texts({"say \"hi\"", "x"})},
        {"doubled quote at the end", "\"a\"\"\"", texts({"a\""})},
        {"only a doubled quote", "\"\"\"\"", texts({"\""})},
        {"quoted empty field", "\"\",a", texts({"", "a"})},
        {"quoted quote", "\"\"\"\",a", texts({"\"", "a"})},
        {"quoted empty field alone", "\"\"", texts({""})},
        {"opening quote alone", "\"", texts({""})},
        {"opening quote after a comma", "a,\"", texts({"a", ""})},
        {"quotes inside of a plain field", "a\"b\"c,d", texts({"a\"b\"c", "d"})},
        {"stray quote", "\"a\"b,c\",d", texts({"a\"b,c", "d"})},
        {"blank after the closing quote", "\"a\" ,b", texts({"a\" ,b"})},
        {"never closed", "\"a,b", texts({"a,b"})},
        {"never closed, comma at the end", "\"a,", texts({"a", ""})},
        {"pair of quotes at the end", "\"a\"\"", texts({"a\""})},
        {"line break inside", "a\nb,c", texts({"a\nb", "c"})},
        {"blanks and semicolons", " a ;b, c", texts({" a ;b", " c"})},
        {"Chinese comma", "温，度,1", texts({"温，度", "1"})},
    };
    for (const Reading &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(helpCSV::fromCsvLine(text(row.line)), row.fields);
    }
}

TEST(CsvLine, TakesANulForACharacterLikeAnyOther)
{
    const QChar nul(0);
    const struct
    {
        const char *name;
        QString line;
        QStringList fields;
    } rows[] = {
        {"NUL inside a plain field", text("a") + nul + text("b,c"), {text("a") + nul + text("b"), text("c")}},
        {"NUL inside a quoted field",
         text("\"a,") + nul + text("b\",c"),
         {text("a,") + nul + text("b"), text("c")}},
        {"NUL behind a doubled quote", text("\"a\"\"") + nul + text("\",c"), {text("a\"") + nul, text("c")}},
        {"NUL alone", text(",") + nul, {QString(), QString(nul)}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(helpCSV::fromCsvLine(row.line), row.fields);
        EXPECT_EQ(helpCSV::toCsvStringLine(row.fields), row.line);
    }
}

TEST(CsvLine, GivesItsFieldsBack)
{
    RandomText random(1);
    for (int round = 0; round < 20000; ++round) {
        QStringList fields;
        const int count = random.number(0, 9);
        for (int i = 0; i < count; ++i)
            fields << random.of(csvAlphabet(), random.number(0, 6));
        if (fields == QStringList(QString()))
            continue; // one empty field comes back as no field
        const QString line = helpCSV::toCsvStringLine(fields);
        ASSERT_EQ(line, plainCsvLine(fields));
        ASSERT_EQ(helpCSV::fromCsvLine(line), fields) << line.toStdString();
    }
}

TEST(CsvLine, LosesOneEmptyFieldButNoOther)
{
    EXPECT_EQ(helpCSV::fromCsvLine(helpCSV::toCsvStringLine(texts({""}))), QStringList());
    EXPECT_EQ(helpCSV::fromCsvLine(helpCSV::toCsvStringLine(texts({"", ""}))), texts({"", ""}));
    EXPECT_EQ(helpCSV::fromCsvLine(helpCSV::toCsvStringLine(texts({"", "", "a"}))), texts({"", "", "a"}));
}

// Each line lies in memory of its own size, so that a sanitizer sees a look beyond its end.
TEST(CsvLine, IsReadWithinItsBoundsHoweverMalformed)
{
    RandomText random(2);
    for (int round = 0; round < 100000; ++round) {
        const QString drawn = random.of(text("\"\"\",,a温 "), random.number(0, 24));
        const std::vector<QChar> characters(drawn.begin(), drawn.end());
        const QString line = QString::fromRawData(characters.data(), static_cast<int>(characters.size()));
        ASSERT_EQ(helpCSV::fromCsvLine(line), plainCsvFields(drawn)) << drawn.toStdString();
    }
}

TEST(CsvLine, IsReadWithAnAllocationAFieldAndOneForTheList)
{
    const QString line = text("2026-01-02 10:11:12,\"a,b\",温度,\"say \"\"hi\"\"\",12.5,,x,y");
    const AllocationCounter counter;
    const QStringList fields = helpCSV::fromCsvLine(line);
    EXPECT_LE(counter.count(), 1 + 7); // the empty field needs none
    EXPECT_EQ(fields.size(), 8);
}

TEST(CsvLine, IsReadByPython)
{
    RandomText random(3);
    QStringList lines;
    QJsonArray expected;
    for (int round = 0; round < 5000; ++round) {
        QStringList fields;
        const int count = random.number(1, 9);
        for (int i = 0; i < count; ++i)
            fields << random.of(text("\"\",, ;'\tab温é￥"), random.number(0, 6));
        lines << helpCSV::toCsvStringLine(fields);
        expected << QJsonArray::fromStringList(fields == QStringList(QString()) ? QStringList() : fields);
    }
    const QByteArray printed = outputOf("python3", {QStringLiteral(PANELKIT_TEST_DATA "/readcsv.py")},
                                        lines.join(QLatin1Char('\n')).toUtf8());
    EXPECT_EQ(QJsonDocument::fromJson(printed).array(), expected);
}

TEST(CsvQuotedField, EndsWhereItsRulesSay)
{
    const FieldReading rows[] = {
        {"closing quote before a comma", "\"ab\",c", 1, "ab", 4},
        {"closing quote at the end", "\"ab\"", 1, "ab", 3},
        {"no closing quote", "\"ab", 1, "ab", 2},
        {"comma at the end", "\"ab,", 1, "ab", 3},
        {"pair of quotes at the end", "\"a\"\"", 1, "a\"", 4},
        {"pair of quotes, then the closing one", "\"a\"\"\"", 1, "a\"", 4},
        {"stray quote", "\"a\"b\",c", 1, "a\"b", 5},
        {"comma after a stray quote", "\"a\"b,c\",d", 1, "a\"b,c", 7},
        {"closing quote first", "\"\",a", 1, "", 2},
        {"comma first", "\",a", 1, ",a", 2},
        {"in the middle of a line", "x,\"y\",z", 3, "y", 5},
        {"at the end of the line", "\"", 1, "", 1},
        {"empty line", "", 0, "", 0},
        {"behind the line", "ab", 7, "", 7},
        {"before the line", "ab", -3, "ab", 1},
    };
    for (const FieldReading &row : rows) {
        SCOPED_TRACE(row.name);
        QString field = text("what stood there before");
        EXPECT_EQ(helpCSV::advquoted(text(row.line), field, row.pos), row.end);
        EXPECT_EQ(field, text(row.field));
    }
}

TEST(CsvPlainField, EndsAtACommaOrTheLinesEnd)
{
    const FieldReading rows[] = {
        {"comma", "ab,c", 0, "ab", 2},
        {"line's end", "ab,cd", 3, "cd", 5},
        {"empty before a comma", "a,,b", 2, "", 2},
        {"quotes are characters", "a\"b\",c", 0, "a\"b\"", 4},
        {"empty line", "", 0, "", 0},
        {"at the end of the line", "ab", 2, "", 2},
        {"behind the line", "ab", 7, "", 2},
        {"before the line", "ab,c", -3, "ab", 2},
    };
    for (const FieldReading &row : rows) {
        SCOPED_TRACE(row.name);
        QString field = text("what stood there before");
        EXPECT_EQ(helpCSV::advplain(text(row.line), field, row.pos), row.end);
        EXPECT_EQ(field, text(row.field));
    }
}

TEST(CsvQuotedField, MayReplaceTheLineItself)
{
    QString line = text("\"a\"\"b\",c");
    EXPECT_EQ(helpCSV::advquoted(line, line, 1), 6);
    EXPECT_EQ(line, text("a\"b"));
}

TEST(CsvPlainField, MayReplaceTheLineItself)
{
    QString line = text("ab,c");
    EXPECT_EQ(helpCSV::advplain(line, line, 0), 2);
    EXPECT_EQ(line, text("ab"));
}
