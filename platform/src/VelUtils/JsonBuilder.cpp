#include "JsonBuilder.h"

namespace VelUtils::Json
{

bool JsonBuilder::Null()
{
    return Add(NullType::Null);
}

bool JsonBuilder::Truth(bool value)
{
    return Add(value);
}

bool JsonBuilder::Number(double value)
{
    return Add(value);
}

bool JsonBuilder::String(std::string_view text)
{
    return Add(VelPlatform::ToWide(text));
}

bool JsonBuilder::StartObject()
{
    return Open(Object());
}

bool JsonBuilder::Name(std::string_view text)
{
    m_open.back().name = VelPlatform::ToWide(text);
    return true;
}

bool JsonBuilder::EndObject()
{
    return Close();
}

bool JsonBuilder::StartArray()
{
    return Open(Array());
}

bool JsonBuilder::EndArray()
{
    return Close();
}

bool JsonBuilder::Open(Variant container)
{
    if (m_open.size() == kDeepest)
    {
        return false;
    }
    m_open.push_back({std::move(container), VelString()});
    return true;
}

bool JsonBuilder::Close()
{
    Variant container = std::move(m_open.back().container);
    m_open.pop_back();
    return Add(std::move(container));
}

bool JsonBuilder::Add(Variant value)
{
    if (m_open.empty())
    {
        m_document = std::move(value);
    }
    else if (Array* array = m_open.back().container.GetIf<Array>())
    {
        array->AddValue(std::move(value));
    }
    else
    {
        Object& object = m_open.back().container.Get<Object>();
        const VelString& name = m_open.back().name;
        if (Variant* first = object.GetValue(name))
        {
            *first = std::move(value);
        }
        else
        {
            object.AddValue(name, std::move(value));
        }
    }
    return true;
}

} // namespace VelUtils::Json
