// A property whose definition counts the values, and so the styles, that are destroyed.
#pragma once

#include "support/TestSheet.h"

#include <string>
#include <vector>

namespace Styles::Testing
{

/// The schema with a property "probe" of the base category. The styles that are made here tell when they die.
class DestructionFixture : public SchemaFixture
{
protected:
    DestructionFixture() { Manager().RegisterProperty(StyleCategoryName, Probe, new Definition(destroyed)); }

    /// A style of the base category; `name` is noted when it dies.
    Style* MakeStyle(const wchar_t* name, Style* parent = nullptr) const
    {
        auto style = std::make_unique<Style>(parent, StyleCategoryName);
        style->SetProperty(Probe, Any(VelString(name)));
        return style.release();
    }

    /// As `MakeStyle`, and `sheet` owns it.
    Style* AddTo(TestSheet& sheet, const wchar_t* name, Style* parent = nullptr) const
    {
        Style* style = MakeStyle(name, parent);
        sheet.AddStyle(VelString(name), style, false);
        return style;
    }

    const PropertyKey Probe = Key(L"probe");
    /// The names of the styles that died, in order.
    std::vector<std::string> destroyed;

private:
    class Definition : public ProbeProperty
    {
    public:
        explicit Definition(std::vector<std::string>& destroyed) : m_destroyed(destroyed) {}
        void DestroyPropertyData(const Any& value) const override
        {
            m_destroyed.push_back(Utf8(value.Get<VelString>()));
        }

    private:
        std::vector<std::string>& m_destroyed;
    };
};

} // namespace Styles::Testing
