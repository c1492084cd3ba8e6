#pragma once

#include "JsonEvents.h"
#include "VelUtils/Json.h"

#include <vector>

namespace VelUtils::Json
{

/// Makes a Variant of what it is told. Asks to stop at containers that are too deep in each other.
class JsonBuilder final : public JsonEvents
{
public:
    /// The outermost container counted.
    static constexpr std::size_t kDeepest = 512;

    /// What was read, once reading is through.
    Variant& GetDocument() noexcept { return m_document; }

    bool Null() override;
    bool Truth(bool value) override;
    bool Number(double value) override;
    bool String(std::string_view text) override;
    bool StartObject() override;
    bool Name(std::string_view text) override;
    bool EndObject() override;
    bool StartArray() override;
    bool EndArray() override;

private:
    struct Level
    {
        Variant container;
        VelString name; ///< of the member whose value comes next
    };

    bool Open(Variant container);
    bool Close();
    bool Add(Variant value);

    std::vector<Level> m_open;
    Variant m_document;
};

} // namespace VelUtils::Json
