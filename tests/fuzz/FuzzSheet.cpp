// Any document: what is imported resolves, and is exported, imported and exported as the same.

#include "fuzz/FuzzSchema.h"

#include <VelUtils/Stream.h>

#include <cstdint>
#include <string_view>

using namespace Styles::Fuzzing;

namespace
{

/// The document with all members of each object in the order of their names: that of the blocks is left open.
VelUtils::Json::Variant InOrder(const VelUtils::Json::Variant& value)
{
    namespace Json = VelUtils::Json;
    const auto* object = value.GetIf<Json::Object>();
    if (object == nullptr)
    {
        return value;
    }
    std::map<VelPlatform::VelString, const Json::Variant*> members;
    for (std::size_t index = 0; index < object->GetSize(); ++index)
    {
        members.emplace(object->GetValueName(index), object->GetValue(index));
    }
    Json::Object ordered;
    for (const auto& [name, member] : members)
    {
        ordered.AddValue(name, InOrder(*member));
    }
    return ordered;
}

VelUtils::Json::Variant DocumentOf(const OpenSheet& sheet)
{
    VelUtils::Json::Variant document;
    VelPlatform::VelString errorText;
    Require(VelUtils::Json::Parse(sheet.GetText(), document, errorText));
    return InOrder(document);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool registered = (RegisterSchema(), true);
    static_cast<void>(registered);

    OpenSheet first;
    VelUtils::MemoryStream input(std::string_view(reinterpret_cast<const char*>(data), size));
    const bool whole = first.Import(input, /*replace*/ true);
    for (const Styles::Style* style : first.GetStyles())
    {
        ResolveAll(*style);
    }
    if (!whole)
    {
        return 0;
    }
    OpenSheet second;
    Require(second.ImportFromString(first.GetText(), /*replace*/ true));
    OpenSheet third;
    Require(third.ImportFromString(second.GetText(), /*replace*/ true));
    Require(DocumentOf(third) == DocumentOf(second));
    Require(DocumentOf(second) == DocumentOf(first));
    // Once more over what is there: every style is replaced by its equal.
    Require(second.ImportFromString(third.GetText(), /*replace*/ true));
    Require(DocumentOf(second) == DocumentOf(third));
    return 0;
}
