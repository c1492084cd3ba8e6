#include "EffectiveValues.h"

#include "InspectTools.h"

#include "Output.h"

#include <set>

namespace Inspect::Testing
{

namespace
{

/// The style that a path like fill.stops[1] leads to through own values; null when it leads nowhere.
const Style* FollowOwn(const Style* style, std::string_view path)
{
    while (style != nullptr && !path.empty())
    {
        const std::size_t end = std::min(path.find('.'), path.size());
        std::string_view step = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        const std::size_t bracket = step.find('[');
        const PropertyKey key(VelPlatform::ToWide(step.substr(0, bracket)));
        if (!style->DoesOverrideProperty(key))
        {
            return nullptr;
        }
        const Any& value = style->GetProperty(key);
        style = bracket == std::string_view::npos
                    ? value.Get<Style*>()
                    : value.Get<StyleList>().at(std::stoul(std::string(step.substr(bracket + 1))));
    }
    return style;
}

/// What a value says of where it comes from is held against the sheet and the registry.
void CheckOrigin(const EffectiveValue& row, const Sheet& sheet, const Origins& origins, const Style& shown)
{
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    if (row.origin.kind == Origin::Kind::Default)
    {
        EXPECT_EQ(&manager.GetDefaultValue(row.origin.category, row.origin.key), row.value);
        EXPECT_FALSE(row.isOwn);
        return;
    }
    ASSERT_EQ(row.origin.kind, Origin::Kind::Style);
    // Found again by the name and the path that people are told.
    const Style* top = sheet.GetStyle(sheet.GetStyleName(origins.GetTop(*row.origin.style)));
    ASSERT_NE(top, nullptr);
    const Style* keeper = FollowOwn(top, origins.GetPath(*row.origin.style));
    ASSERT_EQ(keeper, row.origin.style);
    ASSERT_TRUE(keeper->DoesOverrideProperty(row.origin.key));
    EXPECT_EQ(&keeper->GetProperty(row.origin.key), row.value);
    EXPECT_EQ(row.isOwn, top == &shown && PathTo(origins.GetPath(*keeper), row.origin.key) == row.path);
    EXPECT_EQ(row.isOwn, row.heir == nullptr);
    if (row.heir != nullptr)
    {
        EXPECT_NE(row.heir->GetParent(), nullptr);
        EXPECT_EQ(origins.GetTop(*row.heir), &shown);
    }
}

void CheckText(const EffectiveValue& row)
{
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    if (const auto* policy = manager.GetConversionPolicy(row.category, row.key))
    {
        const VelString text = policy->ToText(*row.value);
        EXPECT_EQ(row.text, row.value->Is<VelString>() ? Quoted(text) : Shown(text));
    }
    else
    {
        EXPECT_EQ(row.text.front(), '(');
    }
}

class SmallSheetTest : public ::testing::Test
{
protected:
    std::vector<EffectiveValue> Collect(const char* sheet, const wchar_t* name)
    {
        Support::WriteBytes(m_folder / "schema.json", SmallSchema);
        Support::WriteBytes(m_folder / "sheet.json", sheet);
        m_open = std::make_unique<OpenSheet>(m_folder / "schema.json", m_folder / "sheet.json");
        const Origins origins(m_open->Get());
        return CollectEffectiveValues(origins, *m_open->Get().GetStyle(VelString(name)), m_isComplete);
    }

    Support::TemporaryFolder m_folder;
    std::unique_ptr<OpenSheet> m_open;
    bool m_isComplete = false;
};

using EffectiveValues = SmallSheetTest;

} // namespace

TEST_F(EffectiveValues, EveryValueOfEveryStyleIsTheOneThatTheStyleAnswersAndStandsWhereItIsSaidToStand)
{
    for (const DataSet& data : DataSets())
    {
        OpenSheet open(data.schema, data.sheet);
        const Origins origins(open.Get());
        EXPECT_EQ(open.Get().GetStyles().size(), data.styleCount);
        for (const Style* style : open.Get().GetStyles())
        {
            SCOPED_TRACE(Shown(open.Get().GetStyleName(style)));
            bool isComplete = false;
            const std::vector<EffectiveValue> rows = CollectEffectiveValues(origins, *style, isComplete);
            EXPECT_TRUE(isComplete);
            EXPECT_GE(rows.size(), style->GetCategory()->GetPropertyNames().size());
            std::set<std::string> paths;
            for (const EffectiveValue& row : rows)
            {
                SCOPED_TRACE(row.path);
                EXPECT_TRUE(paths.insert(row.path).second);
                ASSERT_NE(row.value, nullptr);
                if (row.asked != nullptr)
                {
                    EXPECT_EQ(&row.asked->GetProperty(row.key), row.value);
                    EXPECT_EQ(row.isOwn,
                              row.asked->DoesOverrideProperty(row.key) && origins.GetTop(*row.asked) == style);
                }
                CheckText(row);
                CheckOrigin(row, open.Get(), origins, *style);
            }
        }
    }
}

TEST_F(EffectiveValues, AValueAtAPathOfOwnSubstylesIsThatOfThePathLookUp)
{
    for (const DataSet& data : DataSets())
    {
        OpenSheet open(data.schema, data.sheet);
        const Origins origins(open.Get());
        std::size_t compared = 0;
        for (const Style* style : open.Get().GetStyles())
        {
            bool isComplete = false;
            for (const EffectiveValue& row : CollectEffectiveValues(origins, *style, isComplete))
            {
                const std::size_t point = row.path.rfind('.');
                const std::string outer = row.path.substr(0, point == std::string::npos ? 0 : point);
                if (row.path.find('[') == std::string::npos && FollowOwn(style, outer) != nullptr)
                {
                    EXPECT_EQ(&style->GetPathProperty(Styles::SplitPath(VelPlatform::ToWide(row.path))), row.value);
                    ++compared;
                }
            }
        }
        EXPECT_GT(compared, data.styleCount);
    }
}

TEST_F(EffectiveValues, AStyleInsideItselfIsNotGoneIntoAgain)
{
    const auto rows = Collect(R"({"style": {"A": {"nested": {"inherits": "A", "note": "inner"}}}})", L"A");
    EXPECT_TRUE(m_isComplete);
    std::string again;
    for (const EffectiveValue& row : rows)
    {
        EXPECT_EQ(row.path.find("nested.nested."), std::string::npos);
        again = row.path == "nested.nested" ? row.text : again;
    }
    EXPECT_EQ(again, "(style, inherits \"A\", which this is inside of)");
}

TEST_F(EffectiveValues, AClosedChainEndsInTheDefaults)
{
    const auto rows = Collect(R"({"style": {"A": {"inherits": "B"}, "B": {"inherits": "A", "level": "2"}}})", L"A");
    for (const EffectiveValue& row : rows)
    {
        EXPECT_EQ(row.origin.kind, row.path == "level" ? Origin::Kind::Style : Origin::Kind::Default) << row.path;
    }
}

TEST_F(EffectiveValues, AParentOfAnotherCategoryThatHasNoSuchPropertyIsTold)
{
    const auto rows = Collect(R"({"gradient": {"G": {}}, "style": {"A": {"inherits": "G"}}})", L"A");
    ASSERT_FALSE(rows.empty());
    for (const EffectiveValue& row : rows)
    {
        EXPECT_EQ(row.value, nullptr);
        EXPECT_EQ(row.text.substr(0, 6), "(none:");
    }
}

TEST_F(EffectiveValues, AValueOfAnotherKindFromAParentOfAnotherCategoryIsTold)
{
    const char* schema = R"({"version": 1,
      "styleSets": [{"name": "fill", "uiName": "F", "properties": [{"name": "fill", "type": "string", "default": ""}]}],
      "base": {"uiName": "S", "properties": []}})";
    Support::WriteBytes(m_folder / "schema.json", schema);
    Support::WriteBytes(m_folder / "sheet.json", R"({"fill": {"F": {"inherits": "S"}}, "style": {"S": {"fill": {}}}})");
    OpenSheet open(m_folder / "schema.json", m_folder / "sheet.json");
    const Origins origins(open.Get());
    const auto rows = CollectEffectiveValues(origins, *open.Get().GetStyle(VelString(L"F")), m_isComplete);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].text, "(fill)");
    EXPECT_EQ(origins.GetName(*rows[0].origin.style), "\"S\"");
}

TEST_F(EffectiveValues, WithoutSubstylesTheDefaultsOfTheirCategoriesStandIn)
{
    const auto rows = Collect(R"({"style": {"A": {}}})", L"A");
    std::string paths;
    for (const EffectiveValue& row : rows)
    {
        paths += row.path + ' ';
    }
    EXPECT_EQ(paths, "fill fill.color fill.angle fill.patternId fill.glow fill.gradient fill.gradient.kind "
                     "fill.gradient.stops note level locked nested nested.fill nested.fill.color nested.fill.angle "
                     "nested.fill.patternId nested.fill.glow nested.fill.gradient nested.fill.gradient.kind "
                     "nested.fill.gradient.stops nested.note nested.level nested.locked nested.nested ");
}

} // namespace Inspect::Testing
