// The headers of the library where a host has macros for names that are common, as those of a large system have.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <exception>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <ostream>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

// After the standard headers, since some of them take such macros away.
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define near
#define far
#define ERROR 0

#include <styles/Styles.h>

#include <VelPlatform/Module.h>
#include <VelPlatform/String.h>
#include <VelPlatform/StringDetail.h>
#include <VelPlatform/StringIO.h>
#include <VelPlatform/Unicode.h>
#include <VelPlatform/VelApi.h>
#include <VelPref/ConversionPolicy.h>
#include <VelPref/Validator.h>
#include <VelUtils/CaseInsensitiveOrder.h>
#include <VelUtils/Delegate.h>
#include <VelUtils/Json.h>
#include <VelUtils/LogMessage.h>
#include <VelUtils/MaybeSortedSpan.h>
#include <VelUtils/Path.h>
#include <VelUtils/Singleton.h>
#include <VelUtils/Stream.h>
#include <VelUtils/StringPool.h>
#include <VelUtils/StringUtils.h>
#include <VelUtils/TextStream.h>

TEST(HostMacros, OfCommonNamesAreLeftToTheHost)
{
#if defined(min) && defined(max) && defined(near) && defined(far) && defined(ERROR)
    constexpr bool areThere = true;
#else
    constexpr bool areThere = false;
#endif
    EXPECT_TRUE(areThere);
    EXPECT_EQ(min(1, 2) + max(1, 2) + ERROR, 3);
}
