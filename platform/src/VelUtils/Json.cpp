#include "VelUtils/Json.h"

#include "JsonObject.h"

#include <new>

namespace VelUtils::Json
{

namespace Detail
{

/// Empties a container from its last value to its first, and the containers in it, on a stack of its own: how deep they
/// are in each other is up to whoever made them, and the stack of the program has an end.
class Dismantler
{
public:
    template <class Container>
    void Empty(Container& root) noexcept
    {
        try
        {
            while (Descend(root))
            {
                while (!m_open.empty())
                {
                    Array* array = m_open.back().GetIf<Array>();
                    if (!(array ? Descend(*array) : Descend(m_open.back().Get<Object>())))
                    {
                        m_open.pop_back();
                    }
                }
            }
        }
        catch (const std::bad_alloc&)
        {
            // What is left is taken apart by the destructors of its parts, as deep as it is.
        }
    }

private:
    static std::vector<Variant>& ItemsOf(Array& array) noexcept { return array.m_values; }
    static std::vector<Object::Member>& ItemsOf(Object& object) noexcept
    {
        object.m_index.reset(); // it refers to the names
        return object.m_members;
    }
    static Variant& ValueOf(Variant& item) noexcept { return item; }
    static Variant& ValueOf(Object::Member& item) noexcept { return item.value; }

    static bool IsFilled(const Variant& value) noexcept
    {
        const Array* array = value.GetIf<Array>();
        const Object* object = value.GetIf<Object>();
        return (array && array->GetSize() > 0) || (object && object->GetSize() > 0);
    }

    /// Drops values off the end up to the next container, which goes to the stack; false when there is none.
    template <class Container>
    bool Descend(Container& container)
    {
        auto& items = ItemsOf(container);
        while (!items.empty())
        {
            if (Variant& last = ValueOf(items.back()); IsFilled(last))
            {
                Variant taken = std::move(last);
                items.pop_back();
                m_open.push_back(std::move(taken));
                return true;
            }
            items.pop_back();
        }
        return false;
    }

    std::vector<Variant> m_open;
};

} // namespace Detail

Array::Array() noexcept = default;
Array::Array(const Array& other) = default;
Array::Array(Array&& other) noexcept = default;

Array::~Array()
{
    Detail::Dismantler().Empty(*this);
}

Array& Array::operator=(const Array& other)
{
    return *this = Array(other);
}

Array& Array::operator=(Array&& other) noexcept
{
    Array taken(std::move(other));
    m_values.swap(taken.m_values);
    return *this;
}

std::size_t Array::GetSize() const noexcept
{
    return m_values.size();
}

const Variant* Array::GetValue(std::size_t index) const noexcept
{
    return index < m_values.size() ? &m_values[index] : nullptr;
}

Variant* Array::GetValue(std::size_t index) noexcept
{
    return index < m_values.size() ? &m_values[index] : nullptr;
}

void Array::AddValue(Variant value)
{
    m_values.push_back(std::move(value));
}

bool operator==(const Array& left, const Array& right) noexcept
{
    return left.m_values == right.m_values;
}

Object::Object() noexcept = default;

Object::Object(const Object& other) : m_members(other.m_members)
{
    BuildIndex();
}

Object::Object(Object&& other) noexcept = default;

Object::~Object()
{
    Detail::Dismantler().Empty(*this);
}

Object& Object::operator=(const Object& other)
{
    return *this = Object(other);
}

Object& Object::operator=(Object&& other) noexcept
{
    Object taken(std::move(other));
    m_members.swap(taken.m_members);
    m_index.swap(taken.m_index);
    return *this;
}

std::size_t Object::GetSize() const noexcept
{
    return m_members.size();
}

const VelString& Object::GetValueName(std::size_t index) const noexcept
{
    return m_members[index].name;
}

const Variant* Object::GetValue(std::size_t index) const noexcept
{
    return index < m_members.size() ? &m_members[index].value : nullptr;
}

Variant* Object::GetValue(std::size_t index) noexcept
{
    return index < m_members.size() ? &m_members[index].value : nullptr;
}

const Variant* Object::GetValue(const VelString& name) const noexcept
{
    return GetValue(Find(name));
}

Variant* Object::GetValue(const VelString& name) noexcept
{
    return GetValue(Find(name));
}

bool Object::AddValue(const VelString& name, Variant value)
{
    if (Find(name) != m_members.size())
    {
        return false;
    }
    if (m_members.capacity() == 0)
    {
        m_members.reserve(8); // few objects have one member only
    }
    Append(name, std::move(value));
    return true;
}

/// The place of the member; behind the end when there is none.
std::size_t Object::Find(const VelString& name) const noexcept
{
    if (m_index)
    {
        return m_index->Find(m_members, name);
    }
    std::size_t place = 0;
    while (place < m_members.size() && m_members[place].name != name)
    {
        ++place;
    }
    return place;
}

/// Adds a member of a name that no other has.
void Object::Append(const VelString& name, Variant&& value)
{
    m_members.push_back({name, std::move(value)});
    try
    {
        if (m_index)
        {
            m_index->AddLast(m_members);
        }
        else
        {
            BuildIndex();
        }
    }
    catch (...)
    {
        m_members.pop_back();
        throw;
    }
}

void Object::BuildIndex()
{
    if (m_members.size() > kMembersWithoutIndex)
    {
        m_index = std::make_unique<Index>(m_members);
    }
}

bool operator==(const Object& left, const Object& right) noexcept
{
    return left.m_members == right.m_members;
}

} // namespace VelUtils::Json
