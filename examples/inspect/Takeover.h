/// \file
/// What becomes of styles that lose their parents: noted before that happens, told afterwards.
#pragma once

#include "Commands.h"
#include "EffectiveValues.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Inspect
{

/// The heirs, styles that are about to lose their parents, with what they have and inherit.
///
/// The library moves what an heir inherited into it, so that it looks as before. There are two exceptions. A substyle
/// whose own parent goes inherits through its owner from then on, and what was a default may change: `Settle` gives it
/// that value as its own. A style that contains itself, by inheritance, has no end that could be kept; `Settle` tells.
class Takeover
{
public:
    /// Whether `style`, which is `top` itself or inside of it, loses its parent.
    using Condition = std::function<bool(const Style& style, const Style& top)>;

    /// Notes the heirs among `affected` and inside of these: the styles of the sheet that depend on what changes and
    /// remain. These are to outlive this object; the change may put others in the place of the styles inside.
    /// \throws Failure when one of them unfolds to too much.
    Takeover(const Sheet& sheet, const std::vector<Style*>& affected, const Condition& losesParent);

    /// What the change has done.
    struct Outcome
    {
        std::vector<std::string> changes; ///< the effective values that are others now, a message each
        std::string report;               ///< the heirs, with their parents and with the values that they took over
    };

    /// To be called after the change: keeps what can be kept, and tells the rest.
    [[nodiscard]] Outcome Settle() const;

private:
    struct Heir
    {
        const Style* top = nullptr;
        std::string name;
        std::string path; ///< from the top
        std::string parent;
    };

    /// A value of a top as it was.
    struct Before
    {
        std::string text;
        std::string kind; ///< what of it must not change
        Any value;        ///< empty where it cannot be given to a style just like that
        bool isOwn = false;
    };

    struct Change
    {
        Style* top = nullptr;
        std::string path;
        Any before;
        std::string message;
    };

    using Values = std::unordered_map<std::string, Before>;

    static Before Note(const EffectiveValue& row);
    const Heir* FindHeir(const Style& top, const std::string& path) const;
    std::vector<Change> FindChanges() const;
    std::string Report() const;

    const Sheet& m_sheet;
    std::vector<Heir> m_heirs; // a style before those inside of it
    std::vector<Style*> m_watched;
    std::unordered_map<const Style*, Values> m_before;
};

/// The effective values of a style of the sheet. \throws Failure when it unfolds to too much.
[[nodiscard]] std::vector<EffectiveValue> CollectAllValues(const Origins& origins, const Style& style);

/// Goes on when nothing has changed or, with a warning of each change, when the user accepts it. \throws Failure
/// otherwise.
void AcceptChanges(Session& session, const std::vector<std::string>& changes);

} // namespace Inspect
