// The styles that an import has replaced.
#pragma once

#include <styles/StyleSheet.h>

#include <map>

namespace Styles::Detail
{

/// The styles that an import has replaced, each with its replacement; owned. They live until the heirs have been told.
class ReplacedStyles
{
public:
    /// `destroy` is called for each of the styles in the end; it must live as long as this object.
    explicit ReplacedStyles(Delegate<void(Style*)> destroy) noexcept : m_destroy(destroy) {}
    ReplacedStyles(const ReplacedStyles&) = delete;
    ReplacedStyles& operator=(const ReplacedStyles&) = delete;
    ~ReplacedStyles();

    /// Makes the next `Add` safe.
    void Prepare(Style* style) { m_prepared.insert_or_assign(nullptr, style); }

    /// Takes over `removed`, in whose place the style stands that was prepared last.
    void Add(Style* removed) noexcept;

    /// Lets the heirs among `styles` inherit from the replacements. Every style is told, then the first exception goes
    /// on.
    void TellHeirs(const StyleSheet::NameMap& styles);

private:
    void FindLastReplacement(Style* style);

    Delegate<void(Style*)> m_destroy;
    std::map<Style*, Style*> m_replacements;
    std::map<Style*, Style*> m_prepared; // one entry at most
};

} // namespace Styles::Detail
