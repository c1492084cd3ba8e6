// The changes of a pair that helpers and sheets offer, and choosing among all.

#include "core/ModelPair.h"

#include <iterator>

namespace Styles::Modelling
{

void Pair::ChangeInSubstyle()
{
    const Place place = AnyPlace();
    const PropertyKey key = AnyKey(*place.model->category, Kind::Substyle);
    if (key == PropertyKey::Empty)
    {
        return;
    }
    const ModelCategory* element = place.model->category->Of(key).element;
    const PropertyKey text = AnyKey(*element, Kind::Text);
    switch (Below(4))
    {
    case 0:
        GetOrCreate(*place.model, key);
        Expect(GetOrCreateSubstyle(*place.real, key) == place.real->GetSubstyle(key, false),
               "the substyle that is made");
        return;
    case 1:
        GetOrCreate(*place.model, key);
        Expect(place.real->GetSubstyleAndCreateIfMissing(key, element->name) == place.real->GetSubstyle(key, false),
               "the substyle that is made where it is missing");
        return;
    case 2:
        if (ModelStyle* substyle = OwnSubstyle(*place.model, key))
        {
            Modelling::Clear(*substyle, text);
        }
        return ClearSubstyleProperty(*place.real, key, text);
    default: {
        const std::string value = AnyText();
        SetText(GetOrCreate(*place.model, key), text, value);
        return SetSubstyleProperty(*place.real, element->name, key, text, Any(Wide(value)));
    }
    }
}

void Pair::PruneSubstyles()
{
    const Place place = AnyPlace();
    Modelling::ClearEmptySubstyles(*place.model);
    Styles::ClearEmptySubstyles(*place.real);
}

void Pair::TakeSubstylesOfAnother()
{
    const Place place = AnyPlace();
    const Place source = AnyPlaceOf(place.model->category);
    if (source.model != nullptr)
    {
        const bool mergeValues = OneIn(2);
        CopySubstylesOf(*place.model, *source.model, mergeValues);
        CopySourceSubstylesThatExistsInDestinationStyle(place.real, source.real, mergeValues);
    }
}

void Pair::MakeFromASubstyle()
{
    const Place place = AnyPlace();
    const PropertyKey key = AnyKey(*place.model->category, Kind::Substyle);
    if (key == PropertyKey::Empty)
    {
        return;
    }
    const std::unique_ptr<ModelStyle> expected = MakeFromSubstyle(*place.model, key);
    std::set<PropertyKey> keys;
    const std::unique_ptr<Style> made(CreateStyleFromSubstyleWithoutOwnerDependencies(place.real, key, keys));
    if (Expect((made != nullptr) == (expected != nullptr), "whether there is a substyle") && made != nullptr)
    {
        CompareOwn(*made, *expected);
        Expect(keys.size() == expected->category->definitions.size(), "the keys of the category");
    }
}

void Pair::ClearMatching()
{
    const Place place = AnyPlace();
    ClearMatchingInherited(*place.model);
    ClearMatchingInheritedProperties(*place.real);
}

void Pair::KeepAHandle()
{
    const Place place = AnyPlace();
    std::vector<PropertyKey> path;
    const ModelStyle* root = place.model;
    for (; root->owner != nullptr; root = root->owner)
    {
        path.insert(path.begin(), root->ownersKey);
    }
    if (Style* realRoot = RealTop(root); realRoot != nullptr && m_handles.size() < 8)
    {
        m_handles.push_back({SubStyle(place.real), root, path});
        Expect(m_handles.back().handle.GetRoot() == realRoot, "the root of a handle");
    }
}

void Pair::RenameOne()
{
    if (OneIn(4))
    {
        return AddTop();
    }
    const std::string oldName = AnyName();
    const std::string newName = OneIn(2) ? "style" + std::to_string(100 + m_named++) : AnyName();
    m_sheet.RenameStyle(Wide(oldName), Wide(newName));
    if (!m_models.contains(newName))
    {
        auto entry = m_models.extract(oldName);
        entry.key() = newName;
        m_models.insert(std::move(entry));
    }
}

/// Merging one sheet into another empties the styles of the target, which stay, and leaves those of the source without
/// names and to nobody.
void Pair::MergeSheets()
{
    StyleSheet target;
    StyleSheet source;
    std::vector<std::unique_ptr<Style>> left;
    for (std::size_t count = Below(4); count > 0; --count)
    {
        const VelString name = Wide("merged" + std::to_string(count));
        target.AddStyle(name, std::make_unique<Style>(*AnyTop().real).release(), false);
        left.push_back(std::make_unique<Style>(*AnyTop().real));
        source.AddStyle(OneIn(2) ? name : name + Wide(" more"), left.back().get(), false);
    }
    const std::vector<VelString> names = target.GetStyleNames();
    target.MergeIn(source, OneIn(2));
    Expect(target.GetStyleNames() == names && source.GetStyleNames().empty(), "the names after merging sheets");
    for (const VelString& name : names)
    {
        const Style* style = target.GetStyle(name);
        Expect(style != nullptr && style->IsEmpty() && style->GetParent() == nullptr && style->GetCategory() == nullptr,
               "the styles after merging sheets");
    }
}

/// A copy of the whole sheet is as the model says, with parents among its own styles.
void Pair::CopySheet()
{
    StyleSheet copy;
    copy.CopyContentsFrom(m_sheet, nullptr);
    Expect(copy.GetStyleNames() == m_sheet.GetStyleNames(), "the names in a copied sheet");
    for (const Place& top : Tops())
    {
        Style* copied = copy.GetStyle(m_sheet.GetStyleName(top.real));
        if (!Expect(copied != nullptr, "a style in a copied sheet"))
        {
            return;
        }
        const Style* parent = copied->GetParent();
        Expect(copy.GetStyleName(parent) == m_sheet.GetStyleName(top.real->GetParent()),
               "the parent in a copied sheet");
        std::map<Style*, Style*> back;
        for (const Place& other : Tops())
        {
            back[copy.GetStyle(m_sheet.GetStyleName(other.real))] = other.real;
        }
        copied->RemapDependency(back);
        CompareOwn(*copied, *top.model);
    }
}

/// Styles that are copied into each other would grow without end.
void Pair::KeepSmall()
{
    constexpr std::size_t Most = 120;
    if (m_places.size() > Most)
    {
        for (const Place& top : Tops())
        {
            top.model->own.clear();
            top.real->ClearAllProperties();
        }
    }
}

bool Pair::ChangeOnce()
{
    struct Change
    {
        const char* name;
        void (Pair::*make)();
    };
    static constexpr Change changes[] = {{"setting", &Pair::ChangeText},
                                         {"setting once more", &Pair::ChangeText},
                                         {"linking", &Pair::ChangeParent},
                                         {"linking once more", &Pair::ChangeParent},
                                         {"linking again", &Pair::ChangeParent},
                                         {"setting another list", &Pair::ChangeList},
                                         {"setting another substyle", &Pair::ChangeSubstyle},
                                         {"setting a third substyle", &Pair::ChangeSubstyle},
                                         {"setting a list", &Pair::ChangeList},
                                         {"setting a substyle", &Pair::ChangeSubstyle},
                                         {"clearing", &Pair::ClearOne},
                                         {"reverting", &Pair::RevertOne},
                                         {"clearing many", &Pair::ClearMany},
                                         {"copying paths", &Pair::CopyPaths},
                                         {"copying values", &Pair::CopyToAnother},
                                         {"merging", &Pair::MergeAnother},
                                         {"assigning", &Pair::AssignAnother},
                                         {"swapping", &Pair::SwapWithAnother},
                                         {"flattening", &Pair::FlattenOne},
                                         {"flattening a copy", &Pair::FlattenACopy},
                                         {"removing dependencies", &Pair::CutSome},
                                         {"removing all dependencies", &Pair::CutAll},
                                         {"remapping", &Pair::RemapOne},
                                         {"cloning", &Pair::Clone},
                                         {"copying a substyle", &Pair::CopySubstyleOfAnother},
                                         {"changing in a substyle", &Pair::ChangeInSubstyle},
                                         {"pruning", &Pair::PruneSubstyles},
                                         {"taking substyles", &Pair::TakeSubstylesOfAnother},
                                         {"making from a substyle", &Pair::MakeFromASubstyle},
                                         {"clearing what matches", &Pair::ClearMatching},
                                         {"keeping a handle", &Pair::KeepAHandle},
                                         {"deleting", &Pair::DeleteSome},
                                         {"renaming", &Pair::RenameOne},
                                         {"merging sheets", &Pair::MergeSheets},
                                         {"copying the sheet", &Pair::CopySheet}};
    const Change& change = changes[Below(std::size(changes))];
    m_operation = change.name;
    try
    {
        KeepSmall();
        (this->*change.make)();
    }
    catch (const TooLarge&)
    {
        return false;
    }
    return true;
}

} // namespace Styles::Modelling
