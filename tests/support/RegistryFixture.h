// An empty registry for each test, and definitions that tell when they die.
#pragma once

#include "support/SchemaFixture.h"

#include <VelPlatform/StringIO.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace Styles::Testing
{

class RegistryFixture : public ::testing::Test
{
protected:
    RegistryFixture() { Forget(); }
    ~RegistryFixture() override { Forget(); }
    RegistryFixture(const RegistryFixture&) = delete;
    RegistryFixture& operator=(const RegistryFixture&) = delete;

    const PropertyKey A = Key(L"a"), B = Key(L"b"), C = Key(L"c"), Unknown = Key(L"unknown");
    /// What `MortalProperty` writes to.
    std::vector<std::string> deaths;

private:
    static void Forget()
    {
        Manager().Reset();
        Manager().ClearImportStyleInfo();
        Manager().SetCurrentVersion(-1);
    }
};

/// A definition that notes its name when it dies, and shows the names that registration gave it.
class MortalProperty : public ProbeProperty
{
public:
    explicit MortalProperty(std::vector<std::string>& deaths, std::string name = "definition")
        : m_deaths(deaths), m_name(std::move(name))
    {}
    MortalProperty(const MortalProperty&) = delete;
    MortalProperty& operator=(const MortalProperty&) = delete;
    ~MortalProperty() override { m_deaths.push_back(m_name); }

    using BaseStyleProperty::GetCategoryName;
    using BaseStyleProperty::GetPropertyName;

private:
    std::vector<std::string>& m_deaths;
    std::string m_name;
};

/// The text of the `std::logic_error` that `call` throws; another text when it throws none.
template <class Call>
std::string LogicErrorOf(const Call& call)
{
    try
    {
        static_cast<void>(call());
    }
    catch (const std::logic_error& error)
    {
        return error.what();
    }
    return "(no error)";
}

} // namespace Styles::Testing
