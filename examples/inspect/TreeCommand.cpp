// tree: who inherits from whom.

#include "Commands.h"
#include "Output.h"
#include "OwnValues.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Inspect
{

namespace
{

/// Lines do not move to the right for ever: what is deeper is written at this depth, with its depth before it.
constexpr std::size_t DeepestIndentation = 24;

class TreePrinter
{
public:
    explicit TreePrinter(Session& session) : m_sheet(session.sheet), m_out(session.out)
    {
        for (const Style* style : m_sheet.GetStyles())
        {
            if (style != nullptr && style->GetParent() != nullptr)
            {
                m_children[style->GetParent()].push_back(style);
            }
        }
    }

    /// The styles of a category that inherit from nothing, and all below them.
    void PrintRoots(const PropertyKey& category)
    {
        PrintAll(category, [](const Style* style) { return style->GetParent() == nullptr; });
    }

    /// What no root leads to: styles that inherit from themselves in the end, and all below them.
    void PrintClosedChains(const PropertyKey& category)
    {
        PrintAll(category, [this](const Style* style) { return !m_printed.contains(style); });
    }

private:
    struct Line
    {
        const Style* style;
        std::string indentation;
        std::size_t depth;
        bool isLast;
    };

    template <class Condition>
    void PrintAll(const PropertyKey& category, const Condition& condition)
    {
        bool isFirst = true;
        for (const Style* style : m_sheet.GetStylesByCategory(category))
        {
            if (!condition(style))
            {
                continue;
            }
            if (isFirst)
            {
                const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
                m_out << Shown(manager.TranslateCategory(category)) << " (" << Shown(category.GetText()) << ")\n";
                isFirst = false;
            }
            Print(OnTheChain(style));
        }
        m_out << (isFirst ? "" : "\n");
    }

    /// The style itself, or, where its parents are a closed chain, the first style that is met twice on it.
    static const Style* OnTheChain(const Style* style)
    {
        std::unordered_set<const Style*> met;
        const Style* current = style;
        while (current != nullptr && met.insert(current).second)
        {
            current = current->GetParent();
        }
        return current != nullptr ? current : style;
    }

    /// A loop with a stack of its own: chains may be as long as documents.
    void Print(const Style* root)
    {
        std::vector<Line> open{{root, "", 0, true}};
        while (!open.empty())
        {
            const Line line = open.back();
            open.pop_back();
            const bool closes = !m_printed.insert(line.style).second;
            PrintLine(line, closes);
            const auto children = m_children.find(line.style);
            if (closes || children == m_children.end())
            {
                continue;
            }
            const std::string indentation = line.depth == 0 || line.depth >= DeepestIndentation
                                                ? line.indentation
                                                : line.indentation + (line.isLast ? "   " : "│  ");
            for (auto child = children->second.rbegin(); child != children->second.rend(); ++child)
            {
                open.push_back({*child, indentation, line.depth + 1, child == children->second.rbegin()});
            }
        }
    }

    void PrintLine(const Line& line, bool closes)
    {
        m_out << "  " << line.indentation << (line.depth == 0 ? "" : line.isLast ? "└─ " : "├─ ");
        if (line.depth > DeepestIndentation)
        {
            m_out << '[' << std::to_string(line.depth) << "] ";
        }
        m_out << Shown(m_sheet.GetStyleName(line.style));
        const Style* parent = line.style->GetParent();
        if (line.depth > 0 && parent->GetCategoryName() != line.style->GetCategoryName())
        {
            m_out << " (" << Shown(line.style->GetCategoryName().GetText()) << ')';
        }
        if (closes)
        {
            m_out << "  <- the chain is closed here";
        }
        else if (line.depth == 0 && parent != nullptr)
        {
            m_out << "  (inherits from " << Quoted(m_sheet.GetStyleName(parent)) << ", in a closed chain)";
        }
        m_out << '\n';
    }

    const Sheet& m_sheet;
    std::ostream& m_out;
    std::unordered_map<const Style*, std::vector<const Style*>> m_children; // in the order of their names
    std::unordered_set<const Style*> m_printed;
};

} // namespace

void RunTree(Session& session)
{
    TreePrinter printer(session);
    for (const PropertyKey& category : session.schema.GetCategoryNames())
    {
        printer.PrintRoots(category);
    }
    for (const PropertyKey& category : session.schema.GetCategoryNames())
    {
        printer.PrintClosedChains(category);
    }
}

} // namespace Inspect
