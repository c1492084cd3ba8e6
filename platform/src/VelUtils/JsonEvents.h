#pragma once

#include <string_view>

namespace VelUtils::Json
{

/// Told what a JSON text holds, in the order of the text. Every operation answers whether reading is to go on. Texts
/// are UTF-8 and good during the call.
class JsonEvents
{
public:
    virtual ~JsonEvents() = default;

    /// Forget all that was told: the text is told once more from its beginning.
    virtual void Restart() = 0;

    virtual bool Null() = 0;
    virtual bool Truth(bool value) = 0;
    virtual bool Number(double value) = 0;
    virtual bool String(std::string_view text) = 0;
    virtual bool StartObject() = 0;
    /// The name of the member whose value comes next; names may repeat.
    virtual bool Name(std::string_view text) = 0;
    virtual bool EndObject() = 0;
    virtual bool StartArray() = 0;
    virtual bool EndArray() = 0;
};

} // namespace VelUtils::Json
