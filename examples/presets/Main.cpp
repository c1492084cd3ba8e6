// styles-presets FOLDER list | show NAME | add NAME [PROPERTY=VALUE]... | delete NAME
//
// A host with one category, "fill", that keeps presets in a folder.

#include "FolderPresets.h"

#include <styles/Styles.h>

#include <cstdint>
#include <iostream>
#include <string>
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
bool Assign(Style& style, const VelString& assignment)
{
    const VelPlatform::VelStringView text = assignment;
    const std::size_t sign = text.find(L'=');
    const PropertyKey key{VelString(text.substr(0, sign))};
    const auto* policy = style.GetCategory()->GetConversionPolicy(key);
    if (sign == VelPlatform::VelStringView::npos || policy == nullptr)
    {
        std::cerr << ToUtf8(assignment) << " is not PROPERTY=VALUE with a property of a fill.\n";
        return false;
    }
    try
    {
        style.SetProperty(key, policy->FromText(VelString(text.substr(sign + 1))));
        return true;
    }
    catch (const VelPref::Detail::BadConversion&)
    {
        std::cerr << ToUtf8(assignment) << ": the value cannot be read.\n";
        return false;
    }
}

bool CheckSaved(FolderPresets& presets)
{
    if (!presets.IsSaved(FillName))
    {
        std::cerr << "The presets cannot be written to the folder.\n";
        return false;
    }
    return true;
}

bool Add(FolderPresets& presets, const VelString& name, const std::vector<VelString>& assignments)
{
    Style style(nullptr, PropertyKey(FillName));
    for (const VelString& assignment : assignments)
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
    return CheckSaved(presets);
}

bool Delete(FolderPresets& presets, const VelString& name)
{
    if (!presets.DeletePreset(FillName, name))
    {
        std::cerr << "There is no preset " << ToUtf8(name) << ".\n";
        return false;
    }
    return CheckSaved(presets);
}

bool Run(FolderPresets& presets, const std::vector<VelString>& arguments)
{
    const VelString& command = arguments[1];
    return command == L"list"   ? List(presets)
           : command == L"show" ? Show(presets, arguments[2])
           : command == L"add"  ? Add(presets, arguments[2], {arguments.begin() + 3, arguments.end()})
                                : Delete(presets, arguments[2]);
}

bool MakesSense(const std::vector<VelString>& arguments)
{
    const std::size_t count = arguments.size();
    return count >= 2 && ((arguments[1] == L"list" && count == 2) || (arguments[1] == L"show" && count == 3) ||
                          (arguments[1] == L"add" && count >= 3) || (arguments[1] == L"delete" && count == 3));
}

/// Does what the arguments say, and gives the status of the program.
int RunProgram(const std::vector<VelString>& arguments)
{
    if (!MakesSense(arguments))
    {
        std::cerr << "usage: styles-presets FOLDER list | show NAME | add NAME [PROPERTY=VALUE]... | delete NAME\n";
        return 2;
    }
    RegisterSchema();
    bool done = false;
    {
        FolderPresets presets(arguments[0], [](const std::string& text) { std::cerr << text << '\n'; });
        done = Run(presets, arguments);
    }
    ResetStyleManager();
    if (!std::cout.flush())
    {
        std::cerr << "The answer cannot be written.\n";
        done = false;
    }
    return done ? 0 : 1;
}

} // namespace

#ifdef _WIN32

#    include <fcntl.h>
#    include <io.h>
#    include <stdio.h>

int wmain(int count, wchar_t** arguments)
{
    _setmode(_fileno(stdout), _O_BINARY); // the answers are the same bytes on every system
    return RunProgram({arguments + (count > 0 ? 1 : 0), arguments + count});
}

#else

int main(int argc, char** argv)
{
    std::vector<VelString> arguments;
    for (int index = 1; index < argc; ++index)
    {
        arguments.emplace_back();
        if (!VelPlatform::TryToWide(argv[index], arguments.back()))
        {
            std::cerr << "Argument " << index << " is no UTF-8.\n";
            return 2;
        }
    }
    return RunProgram(arguments);
}

#endif
