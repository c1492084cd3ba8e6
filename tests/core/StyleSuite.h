// The fixture of the tests of the style object, which are in several files.
#pragma once

#include "support/ProbeFixture.h"
#include "support/TestSheet.h"

namespace Styles::Suites
{

using Testing::EffectiveNumber;
using Testing::EffectiveText;
using Testing::Key;
using Testing::Manager;
using Testing::OwnText;
using Testing::ThrownBy;

/// Named after the class that it tests, which is `Styles::Style` here.
class Style : public Testing::ProbeFixture
{
protected:
    /// The own substyle under `key`, made when there is none.
    static Styles::Style& Substyle(Styles::Style& style, const PropertyKey& key)
    {
        return *GetOrCreateSubstyle(style, key);
    }

    /// Gives `style` a list of that many empty elements, and answers the elements.
    static std::vector<Styles::Style*> MakeList(Styles::Style& style, const PropertyKey& list,
                                                const PropertyKey& category, std::size_t count)
    {
        Styles::Style element(nullptr, category);
        style.SetProperty(list, Any(std::vector<Styles::Style*>(count, &element)));
        return ElementsOf(style, list);
    }

    static std::vector<Styles::Style*> ElementsOf(const Styles::Style& style, const PropertyKey& list)
    {
        Any value;
        return style.GetOverrideProperty(list, value) ? value.Get<std::vector<Styles::Style*>>()
                                                      : std::vector<Styles::Style*>();
    }
};

} // namespace Styles::Suites
