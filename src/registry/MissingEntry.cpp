#include "registry/MissingEntry.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace Styles::Detail
{

namespace
{

[[noreturn]] void Throw(std::string_view message, const PropertyKey& name)
{
    const VelStringA narrowName = VelPlatform::ToNarrow(name.GetText());
    throw std::logic_error(std::string(message).append(narrowName.c_str(), narrowName.size()));
}

} // namespace

void ThrowMissingCategory(const PropertyKey& name)
{
    Throw("Source: StyleManager::GetCategory.\nMissing category: ", name);
}

void ThrowMissingDefault(const PropertyKey& name)
{
    Throw("Source: StyleCategory::GetDefaultValue.\nMissing default property: ", name);
}

} // namespace Styles::Detail
