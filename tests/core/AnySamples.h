// Two values of each type that values commonly have, and where such a value lives.
#pragma once

#include <styles/Styles.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace Styles::Testing
{

/// Small() is less than Large() where the type has an order.
template <class T>
struct AnySamples;

template <bool IsInline, bool HasEquality, bool HasOrder>
struct AnyFlags
{
    static constexpr bool Inline = IsInline;
    static constexpr bool EqualityComparable = HasEquality;
    static constexpr bool LessComparable = HasOrder;
};

inline Style* SampleStyle(std::size_t index)
{
    static Style styles[3];
    return &styles[index];
}

template <>
struct AnySamples<double> : AnyFlags<true, true, true>
{
    static double Small() { return -1.5; }
    static double Large() { return 2.0; }
};

template <>
struct AnySamples<std::uint32_t> : AnyFlags<true, true, true>
{
    static std::uint32_t Small() { return 0; }
    static std::uint32_t Large() { return 0xFFFFFFFFu; }
};

template <>
struct AnySamples<Style*> : AnyFlags<true, true, true>
{
    static Style* Small() { return SampleStyle(0); }
    static Style* Large() { return SampleStyle(1); }
};

template <>
struct AnySamples<const Style*> : AnyFlags<true, true, true>
{
    static const Style* Small() { return SampleStyle(0); }
    static const Style* Large() { return SampleStyle(1); }
};

template <>
struct AnySamples<VelString> : AnyFlags<true, true, true>
{
    static VelString Small() { return VelString(L"a text that is kept on the heap"); }
    static VelString Large() { return VelString(L"b"); }
};

/// An enumeration with one value has no two samples of its own.
template <>
struct AnySamples<Json::NullType> : AnyFlags<true, true, true>
{
    static Json::NullType Small() { return Json::NullType::Null; }
    static Json::NullType Large() { return static_cast<Json::NullType>(1); }
};

template <>
struct AnySamples<std::vector<Style*>> : AnyFlags<false, true, true>
{
    static std::vector<Style*> Small() { return {SampleStyle(0), SampleStyle(1)}; }
    static std::vector<Style*> Large() { return {SampleStyle(0), SampleStyle(1), nullptr}; }
};

template <>
struct AnySamples<Json::Object> : AnyFlags<false, true, false>
{
    static Json::Object Small()
    {
        Json::Object object;
        object.AddValue(VelString(L"member"), VelString(L"value"));
        return object;
    }
    static Json::Object Large()
    {
        Json::Object object = Small();
        object.AddValue(VelString(L"another"), 1.0);
        return object;
    }
};

template <>
struct AnySamples<Json::Array> : AnyFlags<false, true, false>
{
    static Json::Array Small()
    {
        Json::Array array;
        array.AddValue(true);
        return array;
    }
    static Json::Array Large()
    {
        Json::Array array = Small();
        array.AddValue(AnySamples<Json::Object>::Small());
        return array;
    }
};

using HeldTypes = ::testing::Types<double, Style*, const Style*, VelString, Json::NullType, std::vector<Style*>,
                                   Json::Object, Json::Array, std::uint32_t>;

/// Whether `part` is a part of the memory of `any`.
inline bool LivesInside(const void* part, const Any& any)
{
    const std::less<const void*> less;
    return !less(part, &any) && less(part, &any + 1);
}

} // namespace Styles::Testing
