#include "Schema.h"

#include "InspectTools.h"

namespace Inspect::Testing
{

namespace
{

using Styles::Any;

Styles::StyleManager& Manager()
{
    return VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
}

PropertyKey Key(const wchar_t* text)
{
    return PropertyKey(VelString(text));
}

Document Describe(const std::string& text)
{
    Document document{VelString(L"schema.json"), text, {}};
    VelString error;
    EXPECT_TRUE(Json::Parse(VelPlatform::ToWide(text), document.value, error)) << text;
    return document;
}

/// What is said of a description; "none" when it is read.
std::string MistakeOf(const std::string& text)
{
    try
    {
        const Document description = Describe(text);
        const Schema schema(description);
    }
    catch (const Failure& failure)
    {
        EXPECT_EQ(failure.GetStatus(), Status::BadInput);
        EXPECT_TRUE(Manager().GetCategoryNames().empty()) << "something was registered";
        return failure.what();
    }
    return "none";
}

/// A description with these further members.
std::string With(const std::string& members)
{
    return R"({"version": 1, "base": {"uiName": "Style", "properties": []})" + (members.empty() ? "" : ", " + members) +
           "}";
}

/// A description with one category that has this property.
std::string WithProperty(const std::string& property)
{
    return With(R"("categories": [{"name": "c", "uiName": "C", "properties": [)" + property + "]}]");
}

const std::string TwoCategories = R"("categories": [{"name": "c", "uiName": "C", "properties": [
  {"name": "p", "type": "int", "default": "1"}]}, {"name": "d", "uiName": "D", "properties": []}])";

} // namespace

TEST(SchemaReader, EverythingIsRegisteredInTheOrderOfTheDescription)
{
    const Document description = Describe(SmallSchema);
    Schema schema(description);
    EXPECT_TRUE(Manager().GetCategoryNames().empty());
    const RegisteredSchema registered(schema);

    EXPECT_EQ(Manager().GetCurrentVersion(), 3);
    EXPECT_EQ(schema.GetCategoryNames(),
              (std::vector<PropertyKey>{Key(L"fill"), Key(L"stop"), Key(L"gradient"), Key(L"style")}));
    EXPECT_EQ(Manager().GetStyleSetCategoryNames(), std::vector<PropertyKey>{Key(L"fill")});
    EXPECT_EQ(Manager().TranslateCategory(Key(L"style")), VelString(L"Graphic style"));
    EXPECT_EQ(
        Manager().GetStylePropertyNames(Key(L"fill")),
        (std::vector<PropertyKey>{Key(L"color"), Key(L"angle"), Key(L"patternId"), Key(L"glow"), Key(L"gradient")}));
    EXPECT_EQ(Manager().GetStylePropertyNames(Key(L"style")),
              (std::vector<PropertyKey>{Key(L"fill"), Key(L"note"), Key(L"level"), Key(L"locked"), Key(L"nested")}));
    EXPECT_TRUE(Manager().GetStyleProperty(Key(L"style"), Key(L"nested"))->IsSubstyle());
    EXPECT_TRUE(Manager().GetDefaultValue(Key(L"gradient"), Key(L"stops")).Is<std::vector<Styles::Style*>>());
    EXPECT_EQ(Manager().GetStyleProperty(Key(L"fill"), Key(L"glow"))->GetNewSinceVersion(), 4);
    EXPECT_EQ(Manager().GetStyleProperty(Key(L"fill"), Key(L"angle"))->GetNewSinceVersion(), 0);
}

TEST(SchemaReader, ATypeMakesTheDefaultAValueOfItsKind)
{
    const Document description = Describe(SmallSchema);
    Schema schema(description);
    const RegisteredSchema registered(schema);
    EXPECT_EQ(Manager().GetDefaultValue(Key(L"fill"), Key(L"color")), Any(VelString(L"white")));
    EXPECT_EQ(Manager().GetDefaultValue(Key(L"fill"), Key(L"angle")), Any(0.0));
    EXPECT_EQ(Manager().GetDefaultValue(Key(L"fill"), Key(L"patternId")), Any(std::uint32_t{4294967295u}));
    EXPECT_EQ(Manager().GetDefaultValue(Key(L"style"), Key(L"level")), Any(std::int32_t{1}));
    EXPECT_EQ(Manager().GetDefaultValue(Key(L"style"), Key(L"locked")), Any(false));
}

TEST(SchemaReader, TheManagerIsEmptyWhenTheRegistrationEnds)
{
    const Document description = Describe(SmallSchema);
    {
        Schema schema(description);
        const RegisteredSchema registered(schema);
        EXPECT_EQ(Manager().GetCategoryNames().size(), 4u);
    }
    EXPECT_TRUE(Manager().GetCategoryNames().empty());
    EXPECT_EQ(Manager().GetCurrentVersion(), -1);
}

TEST(SchemaReader, TheLeastDescriptionIsVersionAndBase)
{
    EXPECT_EQ(MistakeOf(With("")), "none");
    EXPECT_EQ(MistakeOf(With(R"("title": "A schema", "styleSets": [], "lists": {})")), "none");
}

TEST(SchemaReader, MissingMembersAreNamed)
{
    EXPECT_EQ(MistakeOf("{}"), "schema.json: the member \"version\" is missing");
    EXPECT_EQ(MistakeOf(R"({"version": 1})"), "schema.json: the member \"base\" is missing");
    EXPECT_EQ(MistakeOf(R"({"version": 1, "base": {}})"), "schema.json: base: the member \"uiName\" is missing");
    EXPECT_EQ(MistakeOf(R"({"version": 1, "base": {"uiName": "S"}})"),
              "schema.json: base: the member \"properties\" is missing");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": "p", "default": "1"})")),
              "schema.json: categories[0].properties[0]: the member \"type\" is missing");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": "p", "type": "int"})")),
              "schema.json: categories[0].properties[0]: the member \"default\" is missing");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"type": "int", "default": "1"})")),
              "schema.json: categories[0].properties[0]: the member \"name\" is missing");
}

TEST(SchemaReader, MembersOfAnotherKindAreNamed)
{
    EXPECT_EQ(MistakeOf("[]"), "schema.json: is an array, not an object");
    EXPECT_EQ(MistakeOf(With(R"("styleSets": {})")), "schema.json: styleSets: is an object, not an array");
    EXPECT_EQ(MistakeOf(With(R"("categories": [null])")), "schema.json: categories[0]: is null, not an object");
    EXPECT_EQ(MistakeOf(With(R"("lists": true)")), "schema.json: lists: is a truth value, not an object");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": 1, "type": "int", "default": "1"})")),
              "schema.json: categories[0].properties[0].name: is a number, not a text");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": "p", "type": "int", "default": 1})")),
              "schema.json: categories[0].properties[0].default: is a number, not a text");
    EXPECT_EQ(MistakeOf(R"({"version": "1"})"), "schema.json: version: is a text, not a number");
    for (const char* number : {"1.5", "-1", "2147483648", "1e300"})
    {
        EXPECT_EQ(MistakeOf(std::string(R"({"version": )") + number + "}"),
                  "schema.json: version: is no whole number from 0 to 2147483647");
    }
}

TEST(SchemaReader, UnknownMembersAndTypesAreNamed)
{
    EXPECT_EQ(MistakeOf(With(R"("stylesets": [])")), "schema.json: stylesets: is not known here");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": "p", "type": "int", "default": "1", "max": 3})")),
              "schema.json: categories[0].properties[0].max: is not known here");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": "p", "type": "float", "default": "1"})")),
              "schema.json: categories[0].properties[0].type: there is no type \"float\"; the types are double, "
              "string, int, uint and bool");
}

TEST(SchemaReader, ADefaultMustBeAValueOfItsType)
{
    for (const char* type : {"double", "int", "uint", "bool"})
    {
        const std::string mistake =
            MistakeOf(WithProperty(std::string(R"({"name": "p", "default": "much", "type": ")") + type + "\"}"));
        const std::string start =
            std::string("schema.json: categories[0].properties[0].default: \"much\" is no ") + type + ": ";
        EXPECT_EQ(mistake.substr(0, start.size()), start);
    }
}

TEST(SchemaReader, NamesAreThereOnce)
{
    const std::string c = R"({"name": "c", "uiName": "C", "properties": []})";
    EXPECT_EQ(MistakeOf(With("\"styleSets\": [" + c + "], \"categories\": [" + c + "]")),
              "schema.json: categories[0].name: there is a category \"c\" already");
    const std::string p = R"({"name": "p", "type": "int", "default": "1"})";
    EXPECT_EQ(MistakeOf(WithProperty(p + "," + p)),
              "schema.json: categories[0].properties[1].name: the category \"c\" has a property \"p\" already");
    EXPECT_EQ(MistakeOf(With(TwoCategories + R"(, "substyles": {"c": ["d", "d"]})")),
              "schema.json: substyles.c[1]: the category \"c\" has a property \"d\" already");
    EXPECT_EQ(MistakeOf(With(TwoCategories + R"(, "lists": {"c": [{"name": "p", "elementCategory": "d"}]})")),
              "schema.json: lists.c[0].name: the category \"c\" has a property \"p\" already");
    // A style set is a property of the base category by itself.
    EXPECT_EQ(MistakeOf(R"({"version": 1, "styleSets": [)" + c +
                        R"(], "base": {"uiName": "S", "properties": [{"name": "c", "type": "int", "default": "1"}]}})"),
              "schema.json: base.properties[0].name: the category \"style\" has a property \"c\" already");
}

TEST(SchemaReader, CategoriesThatAreReferredToMustBeThere)
{
    EXPECT_EQ(MistakeOf(With(R"("substyles": {"x": []})")), "schema.json: substyles.x: there is no category \"x\"");
    EXPECT_EQ(MistakeOf(With(TwoCategories + R"(, "substyles": {"c": ["x"]})")),
              "schema.json: substyles.c[0]: there is no category \"x\"");
    EXPECT_EQ(MistakeOf(With(TwoCategories + R"(, "namedSubstyles": {"c": [{"name": "n", "elementCategory": "x"}]})")),
              "schema.json: namedSubstyles.c[0].elementCategory: there is no category \"x\"");
}

TEST(SchemaReader, NamesThatSheetsOrPathsCannotBeWrittenWithAreRefused)
{
    for (const char* name : {"inherits", "id", "original", "*"})
    {
        EXPECT_EQ(
            MistakeOf(WithProperty(std::string(R"({"type": "int", "default": "1", "name": ")") + name + "\"}")),
            std::string("schema.json: categories[0].properties[0].name: sheets mean something else by the name \"") +
                name + "\"");
    }
    for (const char* name : {"version", "id", "style"})
    {
        EXPECT_EQ(
            MistakeOf(
                With(std::string(R"("categories": [{"uiName": "", "properties": [], "name": ")") + name + "\"}]")),
            std::string("schema.json: categories[0].name: sheets mean something else by the name \"") + name + "\"");
    }
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": "", "type": "int", "default": "1"})")),
              "schema.json: categories[0].properties[0].name: a name may not be empty");
    EXPECT_EQ(MistakeOf(WithProperty(R"({"name": "a.b", "type": "int", "default": "1"})")),
              "schema.json: categories[0].properties[0].name: a name may have no point and no brackets, which paths "
              "are written with: \"a.b\"");
    EXPECT_EQ(MistakeOf(R"({"version": 1, "base": {"name": "other", "uiName": "S", "properties": []}})"),
              "schema.json: base.name: the base category is called \"style\"");
}

TEST(SchemaReader, OnlyAListOfItsOwnCategoryIsNewerThanTheBeginning)
{
    EXPECT_EQ(
        MistakeOf(With(TwoCategories + R"(, "lists": {"c": [{"name": "l", "elementCategory": "d", "newSince": 2}]})")),
        "schema.json: lists.c[0].newSince: only a list of its own category can be newer than version 0");
    const Document description =
        Describe(With(TwoCategories + R"(, "lists": {"c": [{"name": "l", "elementCategory": "c", "newSince": 2}]})"));
    Schema schema(description);
    const RegisteredSchema registered(schema);
    EXPECT_EQ(Manager().GetStyleProperty(Key(L"c"), Key(L"l"))->GetNewSinceVersion(), 2);
}

} // namespace Inspect::Testing
