// What a value costs to make, copy, assign, compare, read and move, in our container and in others.
//
// Each operation is done to 256 containers that lie side by side. The peers know the type of what they compare and
// read, as we do: none of them compares two values of unknown type.

#include "Rows.h"

#include <styles/Styles.h>

#ifdef STYLES_PEER_BOOST
#    include <boost/any.hpp>
#endif
#ifdef STYLES_PEER_GLIB
#    include <glib-object.h>
#endif
#ifdef STYLES_PEER_QT
#    include <QString>
#    include <QVariant>
#endif

#include <any>
#include <array>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <variant>
#include <vector>

namespace
{

using Styles::Any;
using Styles::Style;
using Styles::VelString;

constexpr std::size_t Count = 256;

// The values, one for each container.

template <class T>
T ValueAt(std::size_t index);

template <>
double ValueAt<double>(std::size_t index)
{
    return 0.5 + static_cast<double>(index);
}

template <>
Style* ValueAt<Style*>(std::size_t index)
{
    static std::array<Style, Count> styles;
    return &styles[index];
}

template <>
std::wstring ValueAt<std::wstring>(std::size_t index)
{
    return L"text of " + std::to_wstring(10 + index % 90);
}

template <>
VelString ValueAt<VelString>(std::size_t index)
{
    return VelString(std::wstring_view(ValueAt<std::wstring>(index)));
}

double Digest(double value)
{
    return value;
}

std::size_t Digest(Style* value)
{
    return reinterpret_cast<std::size_t>(value);
}

template <class Text>
std::size_t Digest(const Text& value)
{
    return static_cast<std::size_t>(value.size());
}

// The contenders: how each of them makes a container of a value, reads, compares and assigns it.

template <class T>
struct Ours
{
    using Box = Any;
    using Value = T;
    static const T& Read(const Box& box) { return box.Get<T>(); }
    static bool Equal(const Box& left, const Box& right) { return left == right; }
    static void Assign(Box& target, const Box& source) { target = source; }
};

template <class T>
struct StdAny
{
    using Box = std::any;
    using Value = T;
    static const T& Read(const Box& box) { return std::any_cast<const T&>(box); }
    static bool Equal(const Box& left, const Box& right) { return Read(left) == Read(right); }
    static void Assign(Box& target, const Box& source) { target = source; }
};

/// For who knows the type: assigns to the value itself.
template <class T>
struct StdAnyInPlace : StdAny<T>
{
    static void Assign(std::any& target, const std::any& source)
    {
        std::any_cast<T&>(target) = std::any_cast<const T&>(source);
    }
};

template <class T>
struct Variant
{
    using Box = std::variant<std::monostate, bool, std::int64_t, double, Style*, const Style*, std::wstring,
                             std::vector<Style*>>;
    using Value = T;
    static const T& Read(const Box& box) { return std::get<T>(box); }
    static bool Equal(const Box& left, const Box& right) { return left == right; }
    static void Assign(Box& target, const Box& source) { target = source; }
};

/// The least that holds any type: the address of a table of functions and 16 bytes, trivial types without a call.
class TableAndBytes
{
public:
    template <class T>
    explicit TableAndBytes(const T& value) : m_table(&TableOf<T>)
    {
        ::new (static_cast<void*>(m_bytes)) T(value);
    }
    TableAndBytes(const TableAndBytes& source) : m_table(source.m_table)
    {
        source.m_table->copy ? source.m_table->copy(source.m_bytes, m_bytes) : Take(source);
    }
    TableAndBytes(TableAndBytes&& source) noexcept : m_table(std::exchange(source.m_table, &Nothing)) { Take(source); }
    TableAndBytes& operator=(const TableAndBytes& source)
    {
        if (m_table == source.m_table && !m_table->copy)
        {
            Take(source);
        }
        else if (this != &source)
        {
            this->~TableAndBytes();
            ::new (static_cast<void*>(this)) TableAndBytes(source);
        }
        return *this;
    }
    ~TableAndBytes()
    {
        if (m_table->destroy)
        {
            m_table->destroy(m_bytes);
        }
    }

    template <class T>
    const T& Get() const
    {
        if (m_table != &TableOf<T>)
        {
            throw std::bad_cast();
        }
        return *std::launder(reinterpret_cast<const T*>(m_bytes));
    }

    friend bool operator==(const TableAndBytes& left, const TableAndBytes& right)
    {
        return left.m_table == right.m_table && left.m_table->equal(left.m_bytes, right.m_bytes);
    }

private:
    struct Table
    {
        void (*copy)(const std::byte* from, std::byte* to);
        void (*destroy)(std::byte* value);
        bool (*equal)(const std::byte* left, const std::byte* right);
    };

    void Take(const TableAndBytes& source) { std::memcpy(m_bytes, source.m_bytes, sizeof m_bytes); }

    template <class T>
    static constexpr Table TableOf = {
        std::is_trivially_copyable_v<T>
            ? nullptr
            : +[](const std::byte* from,
                  std::byte* to) { ::new (static_cast<void*>(to)) T(*std::launder(reinterpret_cast<const T*>(from))); },
        std::is_trivially_copyable_v<T> ? nullptr
                                        : +[](std::byte* value) { std::launder(reinterpret_cast<T*>(value))->~T(); },
        [](const std::byte* left, const std::byte* right) {
            return *std::launder(reinterpret_cast<const T*>(left)) == *std::launder(reinterpret_cast<const T*>(right));
        }};
    static constexpr Table Nothing{};

    const Table* m_table;
    alignas(8) std::byte m_bytes[16]{};
};

template <class T>
struct Limit
{
    using Box = TableAndBytes;
    using Value = T;
    static const T& Read(const Box& box) { return box.Get<T>(); }
    static bool Equal(const Box& left, const Box& right) { return left == right; }
    static void Assign(Box& target, const Box& source) { target = source; }
};

#ifdef STYLES_PEER_BOOST
template <class T>
struct BoostAny
{
    using Box = boost::any;
    using Value = T;
    static const T& Read(const Box& box) { return boost::any_cast<const T&>(box); }
    static bool Equal(const Box& left, const Box& right) { return Read(left) == Read(right); }
    static void Assign(Box& target, const Box& source) { target = source; }
};
#endif

#ifdef STYLES_PEER_QT
template <class T>
struct QtVariant
{
    struct Box : QVariant
    {
        explicit Box(double value) : QVariant(value) {}
        explicit Box(Style* value) : QVariant(QVariant::fromValue<void*>(value)) {}
        explicit Box(const QString& value) : QVariant(value) {}
    };
    using Value = T;
    static T Read(const Box& box)
    {
        if constexpr (std::is_pointer_v<T>)
        {
            return static_cast<T>(box.template value<void*>());
        }
        else
        {
            return box.template value<T>();
        }
    }
    static bool Equal(const Box& left, const Box& right) { return left == right; }
    static void Assign(Box& target, const Box& source) { target = source; }
};

template <>
QString ValueAt<QString>(std::size_t index)
{
    return QString::fromStdWString(ValueAt<std::wstring>(index));
}
#endif

#ifdef STYLES_PEER_GLIB
template <class T>
struct GLibValue
{
    class Box
    {
    public:
        explicit Box(double value)
        {
            g_value_init(&m_value, G_TYPE_DOUBLE);
            g_value_set_double(&m_value, value);
        }
        explicit Box(Style* value)
        {
            g_value_init(&m_value, G_TYPE_POINTER);
            g_value_set_pointer(&m_value, value);
        }
        Box(const Box& source)
        {
            g_value_init(&m_value, G_VALUE_TYPE(&source.m_value));
            g_value_copy(&source.m_value, &m_value);
        }
        Box(Box&& source) noexcept : m_value(std::exchange(source.m_value, GValue G_VALUE_INIT)) {}
        Box& operator=(const Box& source)
        {
            g_value_copy(&source.m_value, &m_value);
            return *this;
        }
        ~Box()
        {
            if (G_IS_VALUE(&m_value))
            {
                g_value_unset(&m_value);
            }
        }
        const GValue* Get() const { return &m_value; }

    private:
        GValue m_value G_VALUE_INIT;
    };
    using Value = T;
    static T Read(const Box& box)
    {
        if constexpr (std::is_pointer_v<T>)
        {
            return static_cast<T>(g_value_get_pointer(box.Get()));
        }
        else
        {
            return g_value_get_double(box.Get());
        }
    }
    static bool Equal(const Box& left, const Box& right) { return Read(left) == Read(right); }
    static void Assign(Box& target, const Box& source) { target = source; }
};
#endif

// The operations.

/// Room for the containers; who makes them there destroys them.
template <class Box>
struct Room
{
    alignas(Box) std::byte bytes[Count * sizeof(Box)];

    void* Place(std::size_t index) { return bytes + index * sizeof(Box); }
    Box& At(std::size_t index) { return *std::launder(reinterpret_cast<Box*>(Place(index))); }
    void Destroy()
    {
        for (std::size_t i = 0; i < Count; ++i)
        {
            At(i).~Box();
        }
    }
};

/// The containers that an operation finds, `left` and `right` holding equal values in places of their own.
template <class Contender>
struct Containers
{
    using Box = typename Contender::Box;

    Containers()
    {
        for (std::size_t i = 0; i < Count; ++i)
        {
            values.push_back(ValueAt<typename Contender::Value>(i));
            left.emplace_back(ValueAt<typename Contender::Value>(i));
            right.emplace_back(ValueAt<typename Contender::Value>(i));
            other.emplace_back(ValueAt<typename Contender::Value>((i + 1) % Count));
        }
    }

    std::vector<typename Contender::Value> values;
    std::vector<Box> left;
    std::vector<Box> right;
    std::vector<Box> other; // another value than `right` at the same index
    Room<Box> room;
};

template <class Contender, class Work>
void AddRow(const std::string& workload, const std::string& contender, std::size_t items, Work work)
{
    Rows::Add(workload, contender, items, [work] {
        return [work, containers = std::make_shared<Containers<Contender>>()] {
            work(*containers);
            Rows::Keep(*containers);
        };
    });
}

/// Assigns two values in turn: what is assigned is never there already.
template <class Contender>
void AddAssignRow(const std::string& what, const std::string& contender)
{
    const auto assign = [](Containers<Contender>& all) {
        for (const auto* sources : {&all.left, &all.other})
        {
            for (std::size_t i = 0; i < Count; ++i)
            {
                Contender::Assign(all.right[i], (*sources)[i]);
            }
            Rows::Keep(all);
        }
    };
    AddRow<Contender>("assign " + what + " to the same type", contender, 2 * Count, assign);
}

template <class Contender>
void AddRows(const std::string& what, const std::string& contender)
{
    using Box = typename Contender::Box;
    using All = Containers<Contender>;
    AddRow<Contender>("make and destroy " + what, contender, Count, [](All& all) {
        for (std::size_t i = 0; i < Count; ++i)
        {
            ::new (all.room.Place(i)) Box(all.values[i]);
        }
        Rows::Keep(all);
        all.room.Destroy();
    });
    AddRow<Contender>("copy and destroy " + what, contender, Count, [](All& all) {
        for (std::size_t i = 0; i < Count; ++i)
        {
            ::new (all.room.Place(i)) Box(all.left[i]);
        }
        Rows::Keep(all);
        all.room.Destroy();
    });
    AddAssignRow<Contender>(what, contender);
    AddRow<Contender>("compare " + what, contender, Count, [](All& all) {
        const Box* const left = all.left.data();
        const Box* const right = all.right.data();
        std::size_t equal = 0;
        for (std::size_t i = 0; i < Count; ++i)
        {
            equal += Contender::Equal(left[i], right[i]) ? 1 : 0;
        }
        Rows::Keep(equal);
    });
    AddRow<Contender>("read " + what, contender, Count, [](All& all) {
        decltype(Digest(all.values[0])) sum = 0;
        for (std::size_t i = 0; i < Count; ++i)
        {
            sum += Digest(Contender::Read(all.left[i]));
        }
        Rows::Keep(sum);
    });
    // As a container does that grows: a move to the new place, then the end of the old one. There and back again, so
    // that every call finds the values where it expects them.
    const auto relocate = [](All& all) {
        for (std::size_t i = 0; i < Count; ++i)
        {
            ::new (all.room.Place(i)) Box(std::move(all.left[i]));
            all.left[i].~Box();
        }
        Rows::Keep(all);
        for (std::size_t i = 0; i < Count; ++i)
        {
            ::new (static_cast<void*>(&all.left[i])) Box(std::move(all.room.At(i)));
            all.room.At(i).~Box();
        }
    };
    AddRow<Contender>("relocate " + what, contender, 2 * Count, relocate);
}

/// Ours by Swap, which exchanges the bytes of inline values and calls nothing of theirs.
template <class Contender>
void AddExchangeRow(const std::string& what, const std::string& contender)
{
    using All = Containers<Contender>;
    AddRow<Contender>("exchange " + what + " with another", contender, Count, [](All& all) {
        for (std::size_t i = 0; i < Count; ++i)
        {
            if constexpr (std::is_same_v<typename Contender::Box, Any>)
            {
                all.left[i].Swap(all.right[i]);
            }
            else
            {
                all.left[i].swap(all.right[i]);
            }
        }
    });
}

template <class T>
void AddRowsOfValue(const std::string& what)
{
    AddRows<Ours<T>>(what, Rows::Ours);
    AddRows<StdAny<T>>(what, "std::any");
    AddAssignRow<StdAnyInPlace<T>>(what, "std::any in place");
    AddRows<Variant<T>>(what, "std::variant");
    AddRows<Limit<T>>(what, "limit: table and 16 bytes");
#ifdef STYLES_PEER_BOOST
    AddRows<BoostAny<T>>(what, "boost::any");
#endif
#ifdef STYLES_PEER_QT
    AddRows<QtVariant<T>>(what, "QVariant");
#endif
#ifdef STYLES_PEER_GLIB
    AddRows<GLibValue<T>>(what, "GValue");
#endif
    AddExchangeRow<Ours<T>>(what, Rows::Ours);
    AddExchangeRow<StdAny<T>>(what, "std::any");
    AddExchangeRow<Variant<T>>(what, "std::variant");
}

[[maybe_unused]] const bool kAdded = [] {
    AddRowsOfValue<double>("a number");
    AddRowsOfValue<Style*>("a pointer");
    // Each in its own wide text, and in a place of its own where equal texts are compared.
    const std::string text = "a wide text of 10";
    AddRows<Ours<VelString>>(text, Rows::Ours);
    AddRows<StdAny<std::wstring>>(text, "std::any");
    AddAssignRow<StdAnyInPlace<std::wstring>>(text, "std::any in place");
    AddRows<Variant<std::wstring>>(text, "std::variant");
#ifdef STYLES_PEER_BOOST
    AddRows<BoostAny<std::wstring>>(text, "boost::any");
#endif
#ifdef STYLES_PEER_QT
    AddRows<QtVariant<QString>>(text, "QVariant");
#endif
    return true;
}();

} // namespace
