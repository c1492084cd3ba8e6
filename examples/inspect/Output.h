/// \file
/// Texts and tables for a terminal, in UTF-8.
#pragma once

#include <VelPlatform/String.h>

#include <cstddef>
#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace Inspect
{

using VelPlatform::VelString;
using VelPlatform::VelStringView;

/// The text with everything escaped that would move the cursor, ring the bell or turn the direction of writing:
/// "\n", "\t", "\\" and "\u{202E}".
[[nodiscard]] std::string Shown(VelStringView text);

/// The same between double quotes, with those inside escaped.
[[nodiscard]] std::string Quoted(VelStringView text);

/// The number of columns that a terminal gives to a shown text.
[[nodiscard]] std::size_t WidthOf(std::string_view shown);

/// "1 style", "3 styles".
[[nodiscard]] std::string Counted(std::size_t count, std::string_view noun);

/// Rows of cells, written in aligned columns.
class Table
{
public:
    explicit Table(std::initializer_list<std::string> headings);

    void AddRow(std::vector<std::string> cells);

    /// Writes the headings and the rows, each behind `indentation`. A cell that is wider than its column may be is
    /// written whole and pushes the rest of its row to the right.
    void Write(std::ostream& out, std::string_view indentation = "") const;

private:
    std::vector<std::vector<std::string>> m_rows;
};

} // namespace Inspect
