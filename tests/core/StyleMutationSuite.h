// The fixture of the tests of changing values, which are in several files.
#pragma once

#include "support/ProbeFixture.h"
#include "support/TestSheet.h"

#include <string>
#include <vector>

namespace Styles::Testing
{

/// Makes nothing of the text "nothing".
class ChoosyProperty : public ProbeProperty
{
public:
    Any MovePropertyData(Style* newOwner, Any&& value) override
    {
        if (value.Is<VelString>() && value.Get<VelString>() == VelString(L"nothing"))
        {
            Log("move");
            return Any();
        }
        return ProbeProperty::MovePropertyData(newOwner, std::move(value));
    }
};

class StyleMutation : public ProbeFixture
{
protected:
    StyleMutation() : choosy(new ChoosyProperty()), log(*choosy->log)
    {
        Manager().RegisterProperty(Probes, Choosy, choosy);
    }

    static std::vector<Style*> ListOf(const Style& style, const PropertyKey& key)
    {
        Any value;
        return style.GetOverrideProperty(key, value) ? value.Get<std::vector<Style*>>() : std::vector<Style*>();
    }

    const PropertyKey Choosy = Key(L"choosy");
    ChoosyProperty* choosy; // owned by its category
    std::vector<std::string>& log;
};

} // namespace Styles::Testing
