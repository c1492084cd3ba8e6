// The schema that the tests of the engine share, and the definitions that tests listen to.
#pragma once

#include <styles/Styles.h>
#include <styles/testing/StylesMatchers.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Styles::Testing
{

inline PropertyKey Key(const wchar_t* text)
{
    return PropertyKey(VelString(text));
}

inline StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

/// A text property that is written as it stands.
inline StyleProperty* MakeTextProperty(const wchar_t* defaultValue = L"", int newSinceVersion = 0)
{
    return new StyleProperty(nullptr, VelString(defaultValue), new TextPolicy<VelString>(), newSinceVersion);
}

inline StyleProperty* MakeNumberProperty(double defaultValue = 0.0, int newSinceVersion = 0)
{
    return new StyleProperty(nullptr, defaultValue, new TextPolicy<double>(), newSinceVersion);
}

/// Registers a small schema before each test and forgets it afterwards.
///
/// - "fill" (style set): patternId, xScale, yScale, angle, skew, color
/// - "outline" (style set): width, color
/// - "character" (style set): font, size, and the substyle property "fill"
/// - "stop": position, color
/// - "style" (base): the substyle properties "fill", "outline", "character"; the plain properties note and number; the
/// list
///   "stops" of category "stop"
/// - "nest": the plain property note, the substyle property "nest" of its own category, the list "nests" of its own
/// category
class SchemaFixture : public ::testing::Test
{
protected:
    SchemaFixture()
    {
        Manager().Reset();
        Manager().SetCurrentVersion(3);
        Manager().RegisterCategory(Fill, VelString(L"Fill"), true, true);
        Manager().RegisterCategory(Outline, VelString(L"Outline"), true, true);
        Manager().RegisterCategory(Character, VelString(L"Character"), true, true);
        Manager().RegisterCategory(Stop, VelString(L"Gradient stop"), false, false);
        Manager().RegisterProperty(Fill, PatternId,
                                   new StyleProperty(nullptr, std::uint32_t{7}, new TextPolicy<std::uint32_t>(), 0));
        Manager().RegisterProperty(Fill, XScale, MakeNumberProperty(1.0));
        Manager().RegisterProperty(Fill, YScale, MakeNumberProperty(1.0));
        Manager().RegisterProperty(Fill, Angle, MakeNumberProperty());
        Manager().RegisterProperty(Fill, Skew, MakeNumberProperty());
        Manager().RegisterProperty(Fill, Color, MakeTextProperty(L"white"));
        Manager().RegisterProperty(Outline, Width, MakeNumberProperty(0.5));
        Manager().RegisterProperty(Outline, Color, MakeTextProperty(L"black"));
        Manager().RegisterProperty(Character, Font, MakeTextProperty(L"Sans"));
        Manager().RegisterProperty(Character, Size, MakeNumberProperty(12.0));
        RegisterSubstyleSet(Character, Fill);
        Manager().RegisterProperty(Stop, Position, MakeNumberProperty());
        Manager().RegisterProperty(Stop, Color, MakeTextProperty(L"grey"));
        RegisterStyleCategory(VelString(L"Graphic style"));
        Manager().RegisterProperty(StyleCategoryName, Note, MakeTextProperty(L"default note"));
        Manager().RegisterProperty(StyleCategoryName, Number, MakeNumberProperty(0.25));
        Manager().RegisterProperty(StyleCategoryName, Stops, new StyleArrayProperty(nullptr, Stop));
        Manager().RegisterCategory(Nest, VelString(L"Nest"), false, true);
        Manager().RegisterProperty(Nest, Note, MakeTextProperty(L"empty nest"));
        RegisterSubstyleSet(Nest, Nest);
        Manager().RegisterProperty(Nest, Nests, new StyleArrayProperty(nullptr, Nest));
    }

    ~SchemaFixture() override
    {
        Manager().ClearImportStyleInfo();
        Manager().Reset();
        Manager().SetCurrentVersion(-1);
    }

    SchemaFixture(const SchemaFixture&) = delete;
    SchemaFixture& operator=(const SchemaFixture&) = delete;

    const PropertyKey Fill = Key(L"fill"), Outline = Key(L"outline"), Character = Key(L"character"),
                      Stop = Key(L"stop"), Nest = Key(L"nest");
    const PropertyKey PatternId = Key(L"patternId"), XScale = Key(L"xScale"), YScale = Key(L"yScale"),
                      Angle = Key(L"angle"), Skew = Key(L"skew"), Color = Key(L"color"), Width = Key(L"width"),
                      Font = Key(L"font"), Size = Key(L"size"), Position = Key(L"position"), Note = Key(L"note"),
                      Number = Key(L"number"), Stops = Key(L"stops"), Nests = Key(L"nests");
};

/// A plain text property that logs what is asked of it, and throws where a test wants it to.
class ProbeProperty : public BaseStyleProperty
{
public:
    explicit ProbeProperty(const VelString& defaultValue = VelString(L"probe"))
        : BaseStyleProperty(nullptr, Any(defaultValue), 0)
    {}

    bool Serialize(const StyleSheet&, const Style*, const Any& value, Json::Variant& output) const override
    {
        Log("serialize");
        output = value.Get<VelString>();
        return true;
    }
    bool Deserialize(const StyleSheet&, Style* style, const Json::Variant* json) const override
    {
        Log("deserialize");
        style->SetProperty(GetPropertyName(), Any(json->Get<VelString>()));
        return true;
    }
    void DestroyPropertyData(const Any&) const override { Log("destroy"); }
    Any MovePropertyData(Style*, Any&& value) override
    {
        Log("move");
        return std::move(value);
    }
    bool CheckType(const Any& value) const override { return value.Is<VelString>(); }

    /// What was asked, in order; shared with the test, since the definition dies with its category.
    std::shared_ptr<std::vector<std::string>> log = std::make_shared<std::vector<std::string>>();
    /// Called with each entry before the operation goes on; may throw.
    std::function<void(const std::string&)> onCall;

protected:
    void Log(const std::string& entry) const
    {
        log->push_back(entry);
        if (onCall)
        {
            onCall(entry);
        }
    }
};

} // namespace Styles::Testing
