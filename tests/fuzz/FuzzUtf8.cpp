// Any bytes: the conversions and the reader agree on what is text, and give it back as it was.

#include <VelPlatform/String.h>
#include <VelUtils/Stream.h>
#include <VelUtils/TextStream.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using VelPlatform::VelString;
using VelPlatform::VelStringA;
using VelUtils::MemoryStream;
using VelUtils::TextStream;
using VelUtils::TextStreamReader;
using VelUtils::TextStreamWriter;

namespace
{

void Require(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

void CheckRoundTrip(const VelString& text, TextStream::Encoding encoding)
{
    MemoryStream written;
    if (!TextStreamWriter(written, encoding, true).Write(text))
    {
        Require(encoding == TextStream::Encoding::Latin1);
        return;
    }
    TextStreamReader reader(MemoryStream(written.GetBytes()), encoding);
    const VelString read = reader.ReadToEnd();
    // Latin-1 has no byte-order mark.
    Require(!reader.Failed() && read == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    VelString text = L"untouched";
    const bool isText = VelPlatform::TryToWide(bytes, text);
    const VelString repaired = VelPlatform::ToWide(bytes);
    const std::string_view withoutMark = bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes;

    TextStreamReader reader(MemoryStream(bytes), TextStream::Encoding::Utf8);
    const VelString read = reader.ReadToEnd();
    Require(reader.Failed() == !isText);
    if (isText)
    {
        Require(text == repaired && read == VelPlatform::ToWide(withoutMark));
        const VelStringA back = VelPlatform::ToNarrow(text);
        Require(std::string_view(back) == bytes);
        VelStringA strictly;
        Require(VelPlatform::TryToNarrow(text, strictly) && strictly == back);
    }
    else
    {
        Require(text == L"untouched" && read.empty());
        Require(VelPlatform::ToWide(VelPlatform::ToNarrow(repaired)) == repaired);
    }
    for (const auto encoding : {TextStream::Encoding::Utf8, TextStream::Encoding::Utf16LittleEndian,
                                TextStream::Encoding::Utf16BigEndian, TextStream::Encoding::Latin1})
    {
        CheckRoundTrip(repaired, encoding);
    }
    for (const auto encoding : {TextStream::Encoding::Utf16LittleEndian, TextStream::Encoding::Utf16BigEndian})
    {
        static_cast<void>(TextStreamReader(MemoryStream(bytes), encoding).ReadToEnd());
    }
    return 0;
}
