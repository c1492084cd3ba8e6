#include "SheetData.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace SheetData
{

namespace
{

using Styles::Any;
using Styles::PropertyKey;
using Styles::Style;
using Styles::StyleManager;
using Styles::VelString;

struct Keys
{
    PropertyKey other{VelString(L"other")};
    PropertyKey substyle{VelString(L"fill")};
    PropertyKey list{VelString(L"stops")};
    PropertyKey stop{VelString(L"stop")};
    PropertyKey text{VelString(L"note")};
    PropertyKey secondText{VelString(L"color")};
    PropertyKey number{VelString(L"number")};

    Keys()
    {
        StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
        manager.SetCurrentVersion(1);
        manager.RegisterCategory(substyle, VelString(L"Fill"), true, true);
        manager.RegisterCategory(stop, VelString(L"Stop"), false, false);
        manager.RegisterCategory(other, VelString(L"Other"), false, true);
        Styles::RegisterStyleCategory(VelString(L"Style"));
        for (const PropertyKey& category : {substyle, stop, other, Styles::StyleCategoryName})
        {
            for (const PropertyKey& key : {text, secondText})
            {
                manager.RegisterProperty(
                    category, key,
                    new Styles::StyleProperty(nullptr, VelString(L""), new Styles::TextPolicy<VelString>, 0));
            }
        }
        manager.RegisterProperty(Styles::StyleCategoryName, number,
                                 new Styles::StyleProperty(nullptr, 0.0, new Styles::TextPolicy<double>, 0));
        manager.RegisterProperty(Styles::StyleCategoryName, list, new Styles::StyleArrayProperty(nullptr, stop));
    }
};

const Keys& AllKeys()
{
    static const Keys keys;
    return keys;
}

void GiveTexts(Style& style, std::size_t index)
{
    style.SetProperty(AllKeys().text, Any(VelString(std::to_wstring(index).c_str())));
    style.SetProperty(AllKeys().secondText, Any(VelString(std::to_wstring(index * 7).c_str())));
}

} // namespace

const PropertyKey& Category()
{
    static_cast<void>(AllKeys());
    return Styles::StyleCategoryName;
}

const PropertyKey& OtherCategory()
{
    return AllKeys().other;
}

const PropertyKey& TextKey()
{
    return AllKeys().text;
}

const PropertyKey& NumberKey()
{
    return AllKeys().number;
}

const PropertyKey& SubstyleKey()
{
    return AllKeys().substyle;
}

const PropertyKey& ListKey()
{
    return AllKeys().list;
}

VelString NameOf(std::size_t index)
{
    // An odd factor gives every index below 2^32 another number.
    const auto number = static_cast<std::uint32_t>(index * 2654435761u);
    return VelString((L"Paragraph " + std::to_wstring(number)).c_str());
}

VelString NameInOtherCase(std::size_t index)
{
    std::wstring name(NameOf(index).c_str());
    std::transform(name.begin(), name.end(), name.begin(),
                   [](wchar_t unit) { return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - 32) : unit; });
    return VelString(name.c_str());
}

std::vector<VelString> NamesOf(std::size_t count)
{
    std::vector<VelString> names;
    names.reserve(count);
    for (std::size_t index = 0; index < count; ++index)
    {
        names.push_back(NameOf(index));
    }
    return names;
}

std::vector<std::size_t> Shuffled(std::size_t count)
{
    std::vector<std::size_t> numbers(count);
    std::iota(numbers.begin(), numbers.end(), std::size_t{0});
    std::shuffle(numbers.begin(), numbers.end(), std::minstd_rand(1));
    return numbers;
}

Style& FilledSheet::Add(Style* parent, const PropertyKey& category)
{
    auto style = std::make_unique<Style>(parent, category);
    styles.push_back(style.get());
    sheet->AddStyle(NameOf(styles.size() - 1), style.release(), false);
    return *styles.back();
}

FilledSheet MakeFlatSheet(std::size_t count)
{
    FilledSheet made;
    made.styles.reserve(count);
    for (std::size_t index = 0; index < count; ++index)
    {
        made.Add(nullptr, index % 2 == 0 ? Category() : OtherCategory());
    }
    return made;
}

FilledSheet MakeRichSheet(std::size_t count)
{
    FilledSheet made;
    made.styles.reserve(count);
    for (std::size_t index = 0; index < count; ++index)
    {
        Style* parent = index != 0 ? made.styles[index / 8] : nullptr;
        Style& style = made.Add(parent);
        GiveTexts(style, index);
        style.SetProperty(NumberKey(), Any(static_cast<double>(index)));

        Style substyle(parent != nullptr ? parent->GetSubstyle(SubstyleKey(), false) : nullptr, SubstyleKey());
        GiveTexts(substyle, index);
        style.SetSubstyle(SubstyleKey(), &substyle);
        if (index % 4 == 0)
        {
            Style element(nullptr, AllKeys().stop);
            GiveTexts(element, index);
            style.SetProperty(ListKey(), Any(std::vector<Style*>(2, &element)));
        }
    }
    return made;
}

Styles::StyleSpan Span(const std::vector<Style*>& styles, bool sorted)
{
    return Styles::StyleSpan(std::span<Style* const>(styles), sorted);
}

std::vector<std::size_t> Doubling(std::size_t largest)
{
    return {largest / 8, largest / 4, largest / 2, largest};
}

std::string Sized(const std::string& workload, std::size_t size)
{
    return workload + '/' + std::to_string(size);
}

} // namespace SheetData
