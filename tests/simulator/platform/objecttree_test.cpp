#include "simulator/platform/objecttree.h"

#include <gtest/gtest.h>

#include <limits>

using HostTree = panelkit::simulator::ObjectTree;

namespace {

class ObjectTree : public ::testing::Test
{
protected:
    object *child(const char *name) { return HostTree::appendChild(tree.root(), QString::fromUtf8(name)); }

    static int number(object *node, const char *name, int fallback = -77)
    {
        return object_get_property_value_type_int32(node, name, fallback);
    }

    static QString text(object *node, const char *name)
    {
        return object_get_property_value_type_string(node, name, QStringLiteral("fallback"));
    }

    static void setText(object *node, const char *value)
    {
        HostTree::setText(node, QStringLiteral("value"), QString::fromUtf8(value));
    }

    HostTree tree{QStringLiteral("project")};
};

} // namespace

TEST_F(ObjectTree, StartsWithABareRoot)
{
    EXPECT_EQ(HostTree::name(tree.root()), QStringLiteral("project"));
    EXPECT_EQ(object_first_child(tree.root()), nullptr);
    EXPECT_EQ(object_next(tree.root()), nullptr);
    EXPECT_TRUE(HostTree::propertyNames(tree.root()).isEmpty());
}

TEST_F(ObjectTree, KeepsChildrenInOrder)
{
    object *first = child("b");
    object *second = child("a");
    object *third = child("c");
    EXPECT_EQ(object_first_child(tree.root()), first);
    EXPECT_EQ(object_next(first), second);
    EXPECT_EQ(object_next(second), third);
    EXPECT_EQ(object_next(third), nullptr);
}

TEST_F(ObjectTree, KeepsNodesInPlaceWhileItGrows)
{
    object *first = child("first");
    property *value = HostTree::setNumber(first, QStringLiteral("value"), 5);
    for (int i = 0; i < 1000; ++i) {
        child("more");
        HostTree::setNumber(first, QString::number(i), i);
    }
    EXPECT_EQ(object_first_child(tree.root()), first);
    EXPECT_EQ(object_get_property(first, "value"), value);
    EXPECT_EQ(number(first, "value"), 5);
}

TEST_F(ObjectTree, FindsTheFirstChildOfAName)
{
    object *first = child("same");
    child("same");
    child("Same");
    EXPECT_EQ(object_get_child(tree.root(), "same"), first);
    EXPECT_EQ(object_get_child(tree.root(), "other"), nullptr);
    EXPECT_EQ(object_get_child(first, "same"), nullptr) << "only children, not siblings";
}

TEST_F(ObjectTree, ComparesNamesExactly)
{
    object *node = child("Link");
    HostTree::setNumber(node, QStringLiteral("index"), 1);
    EXPECT_EQ(object_get_child(tree.root(), "link"), nullptr);
    EXPECT_EQ(object_get_child(tree.root(), "Lin"), nullptr);
    EXPECT_EQ(object_get_property(node, "Index"), nullptr);
    EXPECT_EQ(object_get_property(node, "index2"), nullptr);
}

TEST_F(ObjectTree, TakesNamesAsUtf8)
{
    object *node = child("温度");
    HostTree::setText(node, QString::fromUtf8("größe"), QString::fromUtf8("groß"));
    EXPECT_EQ(object_get_child(tree.root(), "温度"), node);
    EXPECT_EQ(text(node, "größe"), QString::fromUtf8("groß"));
    EXPECT_EQ(HostTree::name(node), QString::fromUtf8("温度"));
    EXPECT_EQ(HostTree::propertyNames(node), QStringList(QString::fromUtf8("größe")));
}

TEST_F(ObjectTree, GivesThePropertysOwnKind)
{
    object *node = child("node");
    HostTree::setNumber(node, QStringLiteral("smallest"), std::numeric_limits<int>::min());
    HostTree::setText(node, QStringLiteral("text"), QStringLiteral("LB"));
    EXPECT_EQ(number(node, "smallest"), std::numeric_limits<int>::min());
    EXPECT_EQ(text(node, "text"), QStringLiteral("LB"));
}

TEST_F(ObjectTree, GivesANumberAsText)
{
    object *node = child("node");
    HostTree::setNumber(node, QStringLiteral("value"), -12);
    EXPECT_EQ(text(node, "value"), QStringLiteral("-12"));
}

TEST_F(ObjectTree, GivesATextAsNumberOnlyWhenItIsOne)
{
    object *node = child("node");
    const struct
    {
        const char *text;
        int number;
    } rows[] = {{"12", 12},          {"-12", -12}, {"+7", 7},    {"007", 7},    {"2147483647", 2147483647},
                {"2147483648", -77}, {"", -77},    {"12a", -77}, {"0x1F", -77}, {"1.0", -77},
                {"1 2", -77},        {"x", -77}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.text);
        setText(node, row.text);
        EXPECT_EQ(number(node, "value"), row.number);
    }
}

TEST_F(ObjectTree, GivesTheDefaultForAMissingProperty)
{
    object *node = child("node");
    EXPECT_EQ(number(node, "missing"), -77);
    EXPECT_EQ(text(node, "missing"), QStringLiteral("fallback"));
    setText(node, "");
    EXPECT_EQ(text(node, "value"), QString()) << "an empty text is not missing";
}

TEST_F(ObjectTree, ReplacesAPropertyInPlace)
{
    object *node = child("node");
    property *first = HostTree::setNumber(node, QStringLiteral("value"), 1);
    HostTree::setNumber(node, QStringLiteral("other"), 2);
    EXPECT_EQ(HostTree::setText(node, QStringLiteral("value"), QStringLiteral("two")), first);
    EXPECT_EQ(text(node, "value"), QStringLiteral("two"));
    EXPECT_EQ(HostTree::propertyNames(node), (QStringList{QStringLiteral("value"), QStringLiteral("other")}));
}

TEST_F(ObjectTree, WritesThroughAProperty)
{
    object *node = child("node");
    setText(node, "old");
    property *value = object_get_property(node, "value");
    property_set_value_number(value, 31);
    EXPECT_EQ(number(node, "value"), 31);

    char utf8[] = "größer";
    property_set_value_ustring(value, utf8);
    utf8[0] = 'x';
    EXPECT_EQ(text(node, "value"), QString::fromUtf8("größer")) << "the text is copied";

    property_set_value_ustring(value, nullptr);
    EXPECT_EQ(text(node, "value"), QString());
}

TEST_F(ObjectTree, ToleratesNull)
{
    object *node = child("node");
    EXPECT_EQ(object_get_child(nullptr, "node"), nullptr);
    EXPECT_EQ(object_get_child(tree.root(), nullptr), nullptr);
    EXPECT_EQ(object_first_child(nullptr), nullptr);
    EXPECT_EQ(object_next(nullptr), nullptr);
    EXPECT_EQ(object_get_property(nullptr, "value"), nullptr);
    EXPECT_EQ(object_get_property(node, nullptr), nullptr);
    EXPECT_EQ(number(nullptr, "value"), -77);
    EXPECT_EQ(number(node, nullptr), -77);
    EXPECT_EQ(text(nullptr, "value"), QStringLiteral("fallback"));
    property_set_value_number(nullptr, 1);
    property_set_value_ustring(nullptr, "text");
    EXPECT_TRUE(HostTree::propertyNames(node).isEmpty());
}
