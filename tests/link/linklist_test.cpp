#include "link/linklist.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace {

// The entries as "name=driver" in the order of names, separated by blanks.
std::string read(const QByteArray &json, const panelkit::LinkListFormat &format = panelkit::projectLinkList)
{
    QMap<QString, QString> drivers;
    panelkit::readLinkList(json, format, drivers);
    QString entries;
    for (QMap<QString, QString>::const_iterator i = drivers.constBegin(); i != drivers.constEnd(); ++i)
        entries +=
            (entries.isEmpty() ? QString() : QStringLiteral(" ")) + i.key() + QLatin1Char('=') + i.value();
    return entries.toStdString();
}

} // namespace

TEST(LinkList, KeepsDriverNamesInLowerCase)
{
    EXPECT_EQ(read(R"({"links": [{"linkName": "PLC1", "linkDriver": "ModbusTCP"}]})"), "PLC1=modbustcp");
    EXPECT_EQ(read(R"({"links": [{"linkName": "PLC1", "linkDriver": "ÄÖ"}]})"), "PLC1=äö");
}

TEST(LinkList, HasOtherKeysForTheIotRuntime)
{
    EXPECT_EQ(read(R"({"data": [{"link_name": "PLC1", "link_driver": "Abc"}], "links": [{"linkName": "x"}]})",
                   panelkit::iotLinkList),
              "PLC1=abc");
    EXPECT_EQ(read(R"({"data": [{"link_name": "PLC1", "link_driver": "Abc"}]})"), "");
}

TEST(LinkList, KeepsTheLastOfSeveralElementsOfOneName)
{
    EXPECT_EQ(read(R"({"links": [{"linkName": "A", "linkDriver": "one"}, {"linkName": "B", "linkDriver": "b"},
                       {"linkName": "A", "linkDriver": "two"}, {"linkName": "a", "linkDriver": "three"}]})"),
              "A=two B=b a=three");
    EXPECT_EQ(read(R"({"links": [{"linkName": "A", "linkDriver": "one"}, {"linkName": "A"}]})"), "A=");
}

TEST(LinkList, ReadsWhatIsMissingOrOfAnotherTypeAsAVariantDoes)
{
    const struct
    {
        const char *json, *entries;
    } rows[] = {
        {R"({"links": [{"linkName": "A"}]})", "A="},
        {R"({"links": [{"linkDriver": "X"}]})", "=x"},
        {R"({"links": [{}]})", "="},
        {R"({"links": [7, "text", null, []]})", "="},
        {R"({"links": [{"linkName": 5, "linkDriver": true}]})", "5=true"},
        {R"({"links": [{"linkName": "A", "linkDriver": ["X"]}]})", "A="},
        {R"({"links": [{"linkName": "A", "linkDriver": {"X": 1}}]})", "A="},
        {R"({"links": [{"linkName": "A", "linkDriver": null}]})", "A="},
        {R"({"links": [{"linkName": "A", "linkDriver": 1.5}]})", "A=1.5"},
        {R"({"links": {"linkName": "A"}})", ""},
        {R"({"links": "A"})", ""},
        {R"({"links": []})", ""},
        {R"({"Links": [{"linkName": "A"}]})", ""},
        {R"([{"linkName": "A"}])", ""},
        {R"({})", ""},
        {R"({"links": [{"linkName": "A", "linkName": "B", "linkDriver": "x"}]})", "B=x"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(read(row.json), row.entries) << row.json;
}

TEST(LinkList, EntersNothingFromWhatIsNoJson)
{
    for (const char *json : {"", "text", "7", "{", R"({"links": [{"linkName": "A"}]} x)",
                             R"({"links": [{"linkName": "A"},]})", "{\"links\": [{\"linkName\": \"\xff\"}]}"})
        EXPECT_EQ(read(json), "") << json;
    EXPECT_EQ(read(QByteArray(100000, '[')), "") << "deep nesting";
}
