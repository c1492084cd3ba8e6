/// \file
/// Values as people read them.
#pragma once

#include "Origins.h"

#include <string>
#include <string_view>

namespace Inspect
{

/// What a style inside another is, in round brackets, with what it inherits from; `remark` stands at the end.
[[nodiscard]] std::string DescribeStyle(const Origins& origins, const Style* style, std::string_view remark = {});

/// Any value of a property: a text in quotes, the text of a number, in round brackets what a style inside is.
[[nodiscard]] std::string DescribeValue(const Origins& origins, const Styles::BaseStyleProperty& definition,
                                        const Any& value);

} // namespace Inspect
