// Any text: what is read is written and read back as the same, in both layouts.

#include <VelUtils/Json.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace Json = VelUtils::Json;
using VelPlatform::VelString;

namespace
{

void Require(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const VelString text = VelPlatform::ToWide({reinterpret_cast<const char*>(data), size});
    Json::Variant value;
    VelString errorText;
    if (!Json::Parse(text, value, errorText))
    {
        Require(value == Json::Variant() && !errorText.empty());
        return 0;
    }
    for (const bool compact : {true, false})
    {
        const VelString written = Json::ValueToString(value, compact);
        Json::Variant again;
        Require(Json::Parse(written, again, errorText));
        Require(Json::ValueToString(again, compact) == written);
        Require(again == value);
    }
    return 0;
}
