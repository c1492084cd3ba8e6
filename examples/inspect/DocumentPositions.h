/// \file
/// Where the values of a document stand in its text.
#pragma once

#include "Document.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Inspect
{

/// Where a value stands: a member of an object at its name, anything else where it begins.
struct PositionNode
{
    TextPosition at;
    /// In the order of the members and elements of the value.
    std::vector<PositionNode> inside;
};

/// A member whose name its object had before. Of such members the last is the one that counts.
struct RepeatedMember
{
    Place place;
    TextPosition at;
    TextPosition before;
};

/// The positions of all values of a document, and the members that reading lost because their names came again.
class DocumentPositions
{
public:
    /// Of no document.
    DocumentPositions() = default;
    /// \param bytes a document that was read without a mistake: valid UTF-8 and valid JSON
    explicit DocumentPositions(std::string_view bytes);

    /// The document itself, in the shape of its value.
    [[nodiscard]] const PositionNode& GetRoot() const noexcept { return m_root; }

    [[nodiscard]] const std::vector<RepeatedMember>& GetRepeatedMembers() const noexcept { return m_repeated; }

private:
    std::vector<RepeatedMember> m_repeated; // filled while m_root is made
    PositionNode m_root;
};

/// A value on the way through a document, linked to those around it, which must outlive it.
class Spot
{
public:
    /// The document itself. \param positions null where they are of no interest
    explicit Spot(const PositionNode* positions) : m_node(positions) {}

    [[nodiscard]] Spot Member(const Json::Object& object, std::size_t index) const;
    [[nodiscard]] Spot Element(std::size_t index) const;

    /// How the place is called. Long names, and the middle of long ways, are left out.
    [[nodiscard]] Place GetPlace() const;
    /// Line 0 where the positions are of no interest.
    [[nodiscard]] TextPosition GetPosition() const { return m_node != nullptr ? m_node->at : TextPosition{0, 0}; }

private:
    Spot(const Spot* outer, const VelString* name, std::size_t index, const PositionNode* node)
        : m_outer(outer), m_name(name), m_index(index), m_node(node)
    {}
    [[nodiscard]] const PositionNode* GetNode(std::size_t index) const
    {
        return m_node != nullptr ? &m_node->inside[index] : nullptr;
    }

    const Spot* m_outer = nullptr;
    const VelString* m_name = nullptr; ///< null for an element
    std::size_t m_index = 0;
    const PositionNode* m_node = nullptr;
};

} // namespace Inspect
