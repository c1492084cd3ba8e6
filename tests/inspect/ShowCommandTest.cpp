#include "Commands.h"

#include "InspectTools.h"
#include "Output.h"

#include <algorithm>
#include <set>

namespace Inspect::Testing
{

namespace
{

/// What `show` has to write: a path, and how the value begins.
struct Expected
{
    std::string path;
    std::string value;
};

/// The effective values of a style, as its own look-ups answer: those of its substyles are asked of the style that
/// `GetSubstyle` finds, or, without one, of the category.
class LookUps
{
public:
    void Ask(const std::string& path, const PropertyKey& categoryName, const Style* style)
    {
        const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
        const auto category = manager.GetCategory(categoryName);
        m_open.insert(categoryName);
        for (const PropertyKey& key : category->GetPropertyNames())
        {
            const std::string inner = path.empty() ? Shown(key.GetText()) : path + '.' + Shown(key.GetText());
            const Any& value = style != nullptr ? style->GetProperty(key) : category->GetDefaultValue(key);
            if (const auto* policy = category->GetConversionPolicy(key))
            {
                const VelString text = policy->ToText(value);
                expected.push_back({inner, value.Is<VelString>() ? Quoted(text) : Shown(text)});
            }
            else if (const StyleList* list = value.GetIf<StyleList>())
            {
                expected.push_back({inner, "(list of " + std::to_string(list->size()) + ')'});
                for (std::size_t index = 0; index < list->size(); ++index)
                {
                    const Style* element = (*list)[index];
                    Ask(inner + '[' + std::to_string(index) + ']', element->GetCategoryName(), element);
                }
            }
            else
            {
                const Style* substyle = style != nullptr ? style->GetSubstyle(key, true) : nullptr;
                expected.push_back({inner, substyle != nullptr ? "(" : "(none)"});
                const PropertyKey below = category->GetProperties().at(key)->GetElementCategoryName();
                ASSERT_FALSE(m_open.contains(below)); // no schema at hand nests a category in itself
                Ask(inner, below, substyle);
            }
        }
        m_open.erase(categoryName);
    }

    std::vector<Expected> expected;

private:
    std::set<PropertyKey> m_open;
};

/// The lines of the table that `show` writes.
std::vector<std::string> TableOf(OpenSheet& open, const VelString& name)
{
    Request request;
    request.arguments = {name};
    std::stringstream out;
    std::ostringstream err;
    Session session{open.GetSchema(), open.Get(), request, out, err};
    RunShow(session);
    EXPECT_EQ(err.str(), "");
    std::vector<std::string> lines;
    bool isTable = false;
    for (std::string line; std::getline(out, line);)
    {
        if (isTable)
        {
            lines.push_back(line);
        }
        isTable = isTable || line.starts_with("PROPERTY ");
    }
    return lines;
}

} // namespace

TEST(ShowCommand, WritesWhatTheLookUpsAnswerForEveryStyleAndPath)
{
    for (const DataSet& data : DataSets())
    {
        OpenSheet open(data.schema, data.sheet);
        std::size_t compared = 0;
        for (const Style* style : open.Get().GetStyles())
        {
            const VelString name = open.Get().GetStyleName(style);
            SCOPED_TRACE(Shown(name));
            LookUps lookUps;
            lookUps.Ask({}, style->GetCategoryName(), style);
            const std::vector<std::string> lines = TableOf(open, name);
            ASSERT_EQ(lines.size(), lookUps.expected.size());
            for (std::size_t index = 0; index < lines.size(); ++index)
            {
                const auto& [path, value] = lookUps.expected[index];
                ASSERT_TRUE(lines[index].starts_with(path + "  ")) << lines[index];
                const std::string shown = lines[index].substr(lines[index].find_first_not_of(' ', path.size()));
                EXPECT_TRUE(shown.starts_with(value == "(" ? value : value + "  ")) << lines[index];
                EXPECT_TRUE(value != "(" || !shown.starts_with("(none)")) << lines[index];
                ++compared;
            }
        }
        EXPECT_GT(compared, data.styleCount * 10);
    }
}

} // namespace Inspect::Testing
