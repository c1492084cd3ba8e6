// The shared schema and a category of probes, which say what is asked of them and fail where a test wants it.
#pragma once

#include "support/SchemaFixture.h"

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace Styles::Testing
{

/// The category "probes" has three text properties whose keys are in key order. Every call of one of them is noted as
/// its number and what was asked: "0 move".
class ProbeFixture : public SchemaFixture
{
protected:
    ProbeFixture()
    {
        std::sort(Keys.begin(), Keys.end(), std::less<PropertyKey>());
        Manager().RegisterCategory(Probes, VelString(L"Probes"), false, false);
        for (std::size_t index = 0; index < Keys.size(); ++index)
        {
            definitions[index] = new ProbeProperty();
            definitions[index]->onCall = [this, index](const std::string& operation) {
                calls.push_back(std::to_string(index) + " " + operation);
                if (failing.contains(calls.back()))
                {
                    throw std::runtime_error(calls.back());
                }
            };
            Manager().RegisterProperty(Probes, Keys[index], definitions[index]);
        }
    }

    /// What was asked since the last time.
    std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }

    /// Gives `style` that text for each of the probes.
    void SetAll(Style& style, const wchar_t* text) const
    {
        for (const PropertyKey& key : Keys)
        {
            style.SetProperty(key, Any(text));
        }
    }

    const PropertyKey Probes = Key(L"probes");
    std::array<PropertyKey, 3> Keys{Key(L"probe a"), Key(L"probe b"), Key(L"probe c")};
    /// Owned by the category.
    std::array<ProbeProperty*, 3> definitions{};
    std::vector<std::string> calls;
    /// The calls that throw a `std::runtime_error` of the same text.
    std::set<std::string> failing;
};

/// The text of the exception that `action` throws; empty for none.
template <class Action>
std::string ThrownBy(const Action& action)
{
    try
    {
        action();
    }
    catch (const std::exception& exception)
    {
        return exception.what();
    }
    return {};
}

} // namespace Styles::Testing
