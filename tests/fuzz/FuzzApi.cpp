// Bytes as a sequence of public operations on the styles of a sheet: whatever is done, everything can be used after it.

#include "fuzz/FuzzSchema.h"

#include <VelUtils/Stream.h>

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <utility>

using namespace Styles;
using namespace Styles::Fuzzing;

namespace
{

constexpr std::size_t MostOperations = 64;
constexpr std::size_t MostStyles = 12;
constexpr std::size_t MostValues = 400;

/// What the input says next; zeros behind its end.
class Choices
{
public:
    explicit Choices(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool AreLeft() const { return m_next < m_bytes.size(); }
    std::size_t Below(std::size_t count) { return AreLeft() ? m_bytes[m_next++] % count : 0; }
    bool Flip() { return Below(2) == 1; }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_next = 0;
};

/// How many values a style holds, those of the styles inside included.
std::size_t CountValues(const Style& style)
{
    std::size_t count = 0;
    const_cast<Style&>(style).ProcessProperties([&count](Any&, Style*, const PropertyKey&) { return ++count < 1000; });
    return count + GetOverriddenPropertyPaths(style).size();
}

class Player
{
public:
    explicit Player(Choices choices) : m_choices(choices) {}

    void Play()
    {
        for (std::size_t step = 0; step < MostOperations && m_choices.AreLeft(); ++step)
        {
            DoOne();
            if (!IsSmall())
            {
                break; // styles that are copied into each other grow without end
            }
        }
        for (const Style* style : m_sheet.GetStyles())
        {
            ResolveAll(*style);
        }
        OpenSheet copy;
        copy.CopyContentsFrom(m_sheet, nullptr);
        Require(copy.GetStyleNames() == m_sheet.GetStyleNames());
    }

private:
    bool IsSmall() const
    {
        std::size_t values = 0;
        for (const Style* style : m_sheet.GetStyles())
        {
            values += CountValues(*style);
        }
        return values < MostValues;
    }

    Style* AnyStyle()
    {
        const std::vector<Style*> styles = m_sheet.GetStyles();
        if (styles.empty())
        {
            auto* style = new Style(nullptr, StyleCategoryName);
            m_sheet.AddStyle(L"first", style, true);
            return style;
        }
        Style* style = styles[m_choices.Below(styles.size())];
        for (std::size_t down = m_choices.Below(3); down > 0; --down)
        {
            if (Style* substyle = style->GetSubstyle(AnyKey(), false))
            {
                style = substyle;
            }
        }
        return style;
    }

    Style* AnyListedStyle()
    {
        const std::vector<Style*> styles = m_sheet.GetStyles();
        return styles.empty() ? nullptr : styles[m_choices.Below(styles.size())];
    }

    PropertyKey AnyKey()
    {
        static const std::vector<PropertyKey> keys = {Key(L"fill"),  Key(L"outline"), Key(L"nest"),
                                                      Key(L"color"), Key(L"width"),   Key(L"note"),
                                                      Key(L"stops"), Key(L"nests"),   Key(L"on")};
        return keys[m_choices.Below(keys.size())];
    }

    VelString AnyName()
    {
        static const std::vector<VelString> names = {L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"};
        return names[m_choices.Below(names.size())];
    }

    /// A value of the type that `style` has under `key`.
    void SetSomething(Style& style, const PropertyKey& key)
    {
        const auto category = style.GetCategory();
        const auto* definition = category ? category->GetStyleProperty(key) : nullptr;
        if (definition == nullptr)
        {
            style.SetProperty(key, Any(1.0));
            return;
        }
        Any value(definition->GetDefaultValue());
        if (value.Is<std::vector<Style*>>())
        {
            Style element(AnyListedStyle(), const_cast<BaseStyleProperty*>(definition)->GetElementCategoryName());
            value = Any(std::vector<Style*>{&element});
            style.SetProperty(key, value);
            return;
        }
        if (value.Is<Style*>())
        {
            GetOrCreateSubstyle(style, key);
            return;
        }
        if (value.Is<VelString>())
        {
            value = Any(AnyName());
        }
        style.SetProperty(key, value);
    }

    void DoOne();
    void ChangeStyle(std::size_t operation);
    void ChangeSheet(std::size_t operation);

    Choices m_choices;
    OpenSheet m_sheet;
};

void Player::DoOne()
{
    const std::size_t operation = m_choices.Below(32);
    try
    {
        if (operation < 24)
        {
            ChangeStyle(operation);
        }
        else
        {
            ChangeSheet(operation - 24);
        }
    }
    catch (const std::logic_error&) // a property that a category does not know
    {}
    catch (const std::bad_cast&) // a value that is no substyle
    {}
}

void Player::ChangeStyle(std::size_t operation)
{
    Style& style = *AnyStyle();
    Style* const other = AnyListedStyle();
    const std::vector<Style*> some = {AnyListedStyle(), AnyListedStyle(), nullptr};
    const PropertyKey key = AnyKey();
    switch (operation)
    {
    case 0:
    case 1:
    case 2:
        return SetSomething(style, key);
    case 3:
        return style.SetParent(other == &style ? nullptr : other);
    case 4:
        return static_cast<void>(style.ClearProperty(key));
    case 5:
        return style.ClearAllProperties();
    case 6:
        return static_cast<void>(style.RevertPathProperty({key, AnyKey()}, m_choices.Flip()));
    case 7:
        return style.MergeProperties(other, m_choices.Flip());
    case 8:
        return style.MergeParentProperties(other);
    case 9:
        return static_cast<void>(style.Flatten());
    case 10:
        return style.RemoveDependency(some, m_choices.Flip());
    case 11:
        style.RemoveAllDependencies();
        return Require(!style.SubstylesHaveAnyParentalRelationships() && style.GetParent() == nullptr);
    case 12:
        return static_cast<void>(style.HasDependency(some) || style.HasParentalDependency(some) ||
                                 style.HasDirectDependency(some) || style.HasParentalDependency());
    case 13:
        return static_cast<void>(style.GetDependencies(some, m_choices.Flip()));
    case 14:
        return style.RemapDependency({{some[0], some[1]}});
    case 15:
        style = *AnyStyle();
        return;
    case 16: {
        const std::unique_ptr<Style> flat(style.CreateFlattenedStyle());
        const std::unique_ptr<Style> clone(style.CreateStyleCloneWithNoDependencyOnOwner());
        const std::unique_ptr<Style> inner(style.CreateSubStyleCloneWithNoDependencyOnOwner(key));
        return Require(flat->GetParent() == nullptr);
    }
    case 17:
        return style.CopySubstyleProperties(other, key);
    case 18:
        return ClearMatchingInheritedProperties(style);
    case 19:
        return ClearEmptySubstyles(style);
    case 20:
        return CopySourceSubstylesThatExistsInDestinationStyle(&style, other, m_choices.Flip());
    case 21:
        return style.SwapData(*AnyStyle());
    case 22: {
        std::set<PropertyKey> keys;
        const std::unique_ptr<Style> made(CreateStyleFromSubstyleWithoutOwnerDependencies(&style, key, keys));
        return;
    }
    default: {
        const SubStyle handle(&style);
        Style* const reached = handle;
        return Require(reached == nullptr || reached == &style);
    }
    }
}

void Player::ChangeSheet(std::size_t operation)
{
    static const PropertyKey categories[] = {StyleCategoryName, Key(L"fill"), Key(L"outline"), Key(L"nest")};
    switch (operation)
    {
    case 0:
    case 1:
    case 2:
        if (m_sheet.GetStyles().size() < MostStyles)
        {
            m_sheet.AddStyle(AnyName(), new Style(AnyListedStyle(), categories[m_choices.Below(4)]), false);
        }
        return;
    case 3:
        return m_sheet.RenameStyle(AnyName(), AnyName());
    case 4:
    case 5: {
        // Deleting cuts what inherits directly; what is inherited through other styles of the span goes with them.
        std::vector<Style*> doomed = {AnyListedStyle(), AnyListedStyle()};
        m_sheet.DeleteStyles(doomed);
        return;
    }
    case 6: {
        std::vector<Style*> dependants;
        return m_sheet.GetDependencies(std::vector<Style*>{AnyListedStyle()}, dependants);
    }
    default:
        Require(m_sheet.ImportFromString(m_sheet.GetText(), true));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool registered = (RegisterSchema(), true);
    static_cast<void>(registered);

    Player(Choices({data, size})).Play();
    return 0;
}
