#include "VelUtils/Json.h"

#include <algorithm>
#include <new>

namespace VelUtils::Json
{

struct Object::Member
{
    VelString name;
    Variant value;
};

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

namespace
{

// Comparing so many names one by one takes no longer than going through an index, and most objects have no more.
constexpr std::size_t kMembersWithoutIndex = 16;

} // namespace

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
    const Member* member = Find(name);
    return member ? &member->value : nullptr;
}

Variant* Object::GetValue(const VelString& name) noexcept
{
    return const_cast<Variant*>(std::as_const(*this).GetValue(name));
}

bool Object::AddValue(const VelString& name, Variant value)
{
    if (Find(name))
    {
        return false;
    }
    m_members.push_back({name, std::move(value)});
    try
    {
        if (m_index)
        {
            m_index->emplace(m_members.back().name, m_members.size() - 1);
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
    return true;
}

const Object::Member* Object::Find(VelStringView name) const noexcept
{
    if (m_index)
    {
        const auto found = m_index->find(name);
        return found == m_index->end() ? nullptr : &m_members[found->second];
    }
    const auto found =
        std::find_if(m_members.begin(), m_members.end(), [name](const Member& member) { return member.name == name; });
    return found == m_members.end() ? nullptr : &*found;
}

void Object::BuildIndex()
{
    if (m_members.size() <= kMembersWithoutIndex)
    {
        return;
    }
    auto built = std::make_unique<Index>();
    for (std::size_t i = 0; i < m_members.size(); ++i)
    {
        built->emplace(m_members[i].name, i);
    }
    m_index = std::move(built);
}

bool operator==(const Object& left, const Object& right) noexcept
{
    return std::equal(
        left.m_members.begin(), left.m_members.end(), right.m_members.begin(), right.m_members.end(),
        [](const Object::Member& a, const Object::Member& b) { return a.name == b.name && a.value == b.value; });
}

} // namespace VelUtils::Json
