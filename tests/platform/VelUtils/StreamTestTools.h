#pragma once

#include "VelUtils/Stream.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <string_view>

namespace Support
{

inline bool Write(VelUtils::Stream& stream, std::string_view bytes)
{
    return stream.Write(bytes.data(), bytes.size());
}

inline bool Save(const std::filesystem::path& path, std::string_view bytes)
{
    VelUtils::Stream stream = VelUtils::FileStream::Create(ToText(path));
    return stream && Write(stream, bytes) && stream.Close();
}

} // namespace Support
