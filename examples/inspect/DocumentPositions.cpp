#include "DocumentPositions.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

namespace Inspect
{

namespace
{

/// With so many members an object's names are looked up in a table; with fewer, one after the other.
constexpr std::size_t ManyMembers = 16;
/// What of a long name, and how many steps at both ends of a long way, a place shows.
constexpr std::size_t ShownOfName = 120;
constexpr std::size_t ShownOfWay = 16;

VelString ShortName(const VelString& name)
{
    if (name.size() <= ShownOfName)
    {
        return name;
    }
    std::wstring shown(name.c_str(), ShownOfName);
    shown += L'\u2026';
    return VelString(VelPlatform::VelStringView(shown));
}

/// The place at the end of a way of so many steps, which `addStep` adds one by one.
template <class AddStep>
Place PlaceOf(std::size_t count, const AddStep& addStep)
{
    Place place;
    for (std::size_t index = 0; index < count; ++index)
    {
        if (index == ShownOfWay && count > 2 * ShownOfWay)
        {
            place = place.Omission();
            index = count - ShownOfWay;
        }
        place = addStep(place, index);
    }
    return place;
}

/// Walks through valid JSON text. It never checks what the reader has checked.
class PositionReader
{
public:
    PositionReader(std::string_view text, std::vector<RepeatedMember>& repeated) : m_text(text), m_repeated(repeated) {}

    PositionNode Read()
    {
        if (m_text.starts_with("\xEF\xBB\xBF"))
        {
            m_next = 3;
        }
        SkipBlanks();
        PositionNode root{m_position, {}};
        ReadValue(root);
        return root;
    }

private:
    /// The members of an object on the way.
    struct Members
    {
        std::vector<std::string> names;
        std::unordered_map<std::string, std::size_t> table; ///< once there are many

        /// The place of that name; where it is new, the next one.
        std::size_t Find(const std::string& name) const
        {
            if (table.empty())
            {
                return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
            }
            const auto found = table.find(name);
            return found != table.end() ? found->second : names.size();
        }

        void Add(std::string name)
        {
            names.push_back(std::move(name));
            if (names.size() == ManyMembers)
            {
                for (std::size_t index = 0; index < names.size(); ++index)
                {
                    table.emplace(names[index], index);
                }
            }
            else if (names.size() > ManyMembers)
            {
                table.emplace(names.back(), names.size() - 1);
            }
        }
    };

    bool AtEnd() const { return m_next >= m_text.size(); }

    /// One byte further. A carriage return with a line feed behind it ends one line, not two.
    void Advance()
    {
        const char c = m_text[m_next++];
        if (c == '\n' || (c == '\r' && (AtEnd() || m_text[m_next] != '\n')))
        {
            ++m_position.line;
            m_position.column = 1;
        }
        else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
        {
            ++m_position.column;
        }
    }

    void SkipBlanks()
    {
        while (!AtEnd() && std::string_view(" \t\r\n").find(m_text[m_next]) != std::string_view::npos)
        {
            Advance();
        }
    }

    /// One of these characters, and the blanks behind it.
    char Take()
    {
        const char c = m_text[m_next];
        Advance();
        SkipBlanks();
        return c;
    }

    /// A text with its quotes.
    std::string_view TakeString()
    {
        const std::size_t start = m_next;
        Advance();
        while (m_text[m_next] != '"')
        {
            if (m_text[m_next] == '\\')
            {
                Advance();
            }
            Advance();
        }
        Advance();
        return m_text.substr(start, m_next - start);
    }

    static std::string NameOf(std::string_view quoted)
    {
        Json::Variant name;
        VelString error;
        if (quoted.find('\\') != std::string_view::npos && Json::Parse(VelPlatform::ToWide(quoted), name, error))
        {
            return std::string(std::string_view(VelPlatform::ToNarrow(name.Get<VelString>())));
        }
        return std::string(quoted.substr(1, quoted.size() - 2));
    }

    void ReadValue(PositionNode& node)
    {
        const char first = m_text[m_next];
        if (first == '{')
        {
            ReadObject(node);
        }
        else if (first == '[')
        {
            ReadArray(node);
        }
        else if (first == '"')
        {
            TakeString();
        }
        else
        {
            while (!AtEnd() && std::string_view(" \t\r\n,]}").find(m_text[m_next]) == std::string_view::npos)
            {
                Advance();
            }
        }
        SkipBlanks();
    }

    void ReadArray(PositionNode& node)
    {
        Take();
        while (m_text[m_next] != ']')
        {
            m_way.push_back({nullptr, node.inside.size()});
            node.inside.push_back({m_position, {}});
            ReadValue(node.inside.back());
            m_way.pop_back();
            if (m_text[m_next] == ',')
            {
                Take();
            }
        }
        Advance();
    }

    void ReadObject(PositionNode& node)
    {
        Take();
        Members members;
        while (m_text[m_next] != '}')
        {
            const TextPosition at = m_position;
            const std::string name = NameOf(TakeString());
            SkipBlanks();
            Take(); // the colon
            m_way.push_back({&name, 0});
            const std::size_t index = members.Find(name);
            if (index < members.names.size())
            {
                m_repeated.push_back({GetPlace(), at, node.inside[index].at});
                node.inside[index] = PositionNode{at, {}};
            }
            else
            {
                members.Add(name);
                node.inside.push_back(PositionNode{at, {}});
            }
            ReadValue(node.inside[index]);
            m_way.pop_back();
            if (m_text[m_next] == ',')
            {
                Take();
            }
        }
        Advance();
    }

    Place GetPlace() const
    {
        return PlaceOf(m_way.size(), [this](const Place& place, std::size_t index) {
            const Step& step = m_way[index];
            return step.name != nullptr ? place.Member(ShortName(VelPlatform::ToWide(*step.name)))
                                        : place.Element(step.index);
        });
    }

    struct Step
    {
        const std::string* name; ///< null for an element
        std::size_t index;
    };

    std::string_view m_text;
    std::size_t m_next = 0;
    TextPosition m_position{1, 1};
    std::vector<Step> m_way;
    std::vector<RepeatedMember>& m_repeated;
};

} // namespace

DocumentPositions::DocumentPositions(std::string_view bytes) : m_root(PositionReader(bytes, m_repeated).Read()) {}

Spot Spot::Member(const Json::Object& object, std::size_t index) const
{
    return {this, &object.GetValueName(index), 0, GetNode(index)};
}

Spot Spot::Element(std::size_t index) const
{
    return {this, nullptr, index, GetNode(index)};
}

Place Spot::GetPlace() const
{
    std::vector<const Spot*> way;
    for (const Spot* spot = this; spot->m_outer != nullptr; spot = spot->m_outer)
    {
        way.push_back(spot);
    }
    return PlaceOf(way.size(), [&way](const Place& place, std::size_t index) {
        const Spot& spot = *way[way.size() - 1 - index];
        return spot.m_name != nullptr ? place.Member(ShortName(*spot.m_name)) : place.Element(spot.m_index);
    });
}

} // namespace Inspect
