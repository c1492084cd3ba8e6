#pragma once

/// @file
/// The library's one way of telling the host something that is not a failure. Silent unless the host listens.

#include "VelPlatform/String.h"

#include <functional>

namespace VelUtils
{

/// What a host does with a message. May be called from any thread, from several at once.
using LogSink = std::function<void(const VelPlatform::VelString& text)>;

/// Hands the text to the sink, if there is one. What the sink throws ends here: a report must not turn into a failure
/// of the operation that makes it.
VEL_API void LogMessage(const VelPlatform::VelString& text) noexcept;

/// Installs the sink, an empty one for silence, and returns the one before. Safe from any thread; a message that is
/// under way may still reach the old sink. Throws std::bad_alloc, the old sink staying.
VEL_API LogSink SetLogSink(LogSink sink);

/// Whether a sink is installed, so that a message need not be made for nobody.
VEL_API bool IsLogging() noexcept;

} // namespace VelUtils
