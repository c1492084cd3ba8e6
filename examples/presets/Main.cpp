// styles-presets FOLDER list | show NAME | add NAME [PROPERTY=VALUE]... | delete NAME
//
// A host with one category, "fill", that keeps presets in a folder.

#include "FolderPresets.h"

#include <styles/Styles.h>

#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

using namespace Styles;

namespace
{

const VelString FillName(L"fill");

template <class T>
void Register(const wchar_t* name, T defaultValue)
{
    StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.RegisterProperty(PropertyKey(FillName), PropertyKey(VelString(name)),
                             new StyleProperty(nullptr, defaultValue, new TextPolicy<T>(), 0));
}

void RegisterSchema()
{
    StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.SetCurrentVersion(1); // without a version sheets are older than every property, and are written without any
    manager.RegisterCategory(PropertyKey(FillName), VelString(L"Fill"), /*isStyleSet*/ true, /*isPublic*/ true);
    Register(L"patternId", std::uint32_t{0});
    Register(L"xScale", 1.0);
    Register(L"yScale", 1.0);
    Register(L"angle", 0.0);
    Register(L"skew", 0.0);
    Register(L"color", VelString(L"#000000"));
}

std::string ToUtf8(const VelString& text)
{
    const VelStringA narrow = VelPlatform::ToNarrow(text);
    return std::string(narrow.begin(), narrow.end());
}

bool List(FolderPresets& presets)
{
    for (const VelString& name : presets.GetPresetNames(FillName))
    {
        std::cout << ToUtf8(name) << '\n';
    }
    return true;
}

bool Show(FolderPresets& presets, const VelString& name)
{
    const Style* preset = presets.GetPreset(FillName, name);
    if (preset == nullptr)
    {
        std::cerr << "There is no preset " << ToUtf8(name) << ".\n";
        return false;
    }
    for (const PropertyKey& key : preset->GetCategory()->GetPropertyNames())
    {
        const Any& value = preset->GetProperty(key);
        std::cout << ToUtf8(key.GetText()) << " = "
                  << ToUtf8(preset->GetCategory()->GetConversionPolicy(key)->ToText(value)) << '\n';
    }
    return true;
}

/// Sets what "PROPERTY=VALUE" says; false, after a message, when it says nothing sensible.
bool Assign(Style& style, std::string_view assignment)
{
    const std::size_t sign = assignment.find('=');
    const PropertyKey key(VelPlatform::ToWide(assignment.substr(0, sign)));
    const auto* policy = style.GetCategory()->GetConversionPolicy(key);
    if (sign == std::string_view::npos || policy == nullptr)
    {
        std::cerr << assignment << " is not PROPERTY=VALUE with a property of a fill.\n";
        return false;
    }
    try
    {
        style.SetProperty(key, policy->FromText(VelPlatform::ToWide(assignment.substr(sign + 1))));
        return true;
    }
    catch (const VelPref::Detail::BadConversion&)
    {
        std::cerr << assignment << ": the value cannot be read.\n";
        return false;
    }
}

bool Add(FolderPresets& presets, const VelString& name, const std::vector<std::string_view>& assignments)
{
    Style style(nullptr, PropertyKey(FillName));
    for (const std::string_view assignment : assignments)
    {
        if (!Assign(style, assignment))
        {
            return false;
        }
    }
    if (!presets.AddPreset(FillName, name, &style, /*replace*/ true))
    {
        std::cerr << "The preset cannot be added.\n";
        return false;
    }
    return true;
}

bool Delete(FolderPresets& presets, const VelString& name)
{
    if (!presets.DeletePreset(FillName, name))
    {
        std::cerr << "There is no preset " << ToUtf8(name) << ".\n";
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const std::string_view command = arguments.size() > 1 ? arguments[1] : "";
    if (command != "list" && (arguments.size() < 3 || (command != "show" && command != "add" && command != "delete")))
    {
        std::cerr << "usage: styles-presets FOLDER list | show NAME | add NAME [PROPERTY=VALUE]... | delete NAME\n";
        return 2;
    }
    RegisterSchema();
    bool done = false;
    {
        FolderPresets presets(VelPlatform::ToWide(arguments[0]),
                              [](const std::string& text) { std::cerr << text << '\n'; });
        const VelString name = arguments.size() > 2 ? VelPlatform::ToWide(arguments[2]) : VelString();
        if (command == "list")
        {
            done = List(presets);
        }
        else if (command == "show")
        {
            done = Show(presets, name);
        }
        else if (command == "add")
        {
            done = Add(presets, name, {arguments.begin() + 3, arguments.end()});
        }
        else
        {
            done = Delete(presets, name);
        }
    }
    ResetStyleManager();
    return done ? 0 : 1;
}
