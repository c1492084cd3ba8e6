// A sheet that has one of each kind of thing that a document holds, and as little as that allows: each of its members
// is many places to fail.
#pragma once

#include "faults/FaultWorld.h"

#include <memory>
#include <vector>

namespace Styles::Testing
{

/// A sheet whose virtual operations may fail, too.
class FaultySheet : public OpenSheet
{
public:
    VelString GetExternalID() override
    {
        ReachCall();
        return OpenSheet::GetExternalID();
    }

protected:
    void ExportToString(VelString& out, bool includeTemporaries) const override
    {
        ReachCall();
        OpenSheet::ExportToString(out, includeTemporaries);
    }
    bool ImportFromString(const VelString& text, bool replace) override
    {
        ReachCall();
        return OpenSheet::ImportFromString(text, replace);
    }
    void ExportJson(Json::Variant& out, bool includeTemporaries) const override
    {
        ReachCall();
        OpenSheet::ExportJson(out, includeTemporaries);
    }
    bool ImportJson(Json::Object* root, bool replace) override
    {
        ReachCall();
        return OpenSheet::ImportJson(root, replace);
    }
};

/// Five styles that documents name, and one that none does, which inherits from them in every way.
class DocumentWorld
{
public:
    DocumentWorld()
    {
        const FaultKeys& k = K();
        sheet.SetExternalID(L"diese Tabelle");
        Style* base = Add(L"Basis", nullptr, StyleCategoryName);
        Style* child = Add(L"Kind", base, StyleCategoryName);
        Style* line = Add(L"Linie", nullptr, k.outline);
        Style* point = Add(L"Punkt", nullptr, k.stop);
        Style* nest = Add(L"Nest", nullptr, k.nest);
        base->SetProperty(k.number, Any(4.0));
        base->SetExternalName(L"Name der Basis");
        FaultWorld::Set(*base, MakePath(k.fill, k.color), L"rot");
        child->GetSubstyleAndCreateIfMissing(k.outline, k.outline)->SetParent(line);
        FaultWorld::AddStops(*child, 1, point);
        line->SetProperty(k.width, Any(2.0));
        point->SetProperty(k.color, Any(VelString(L"grau")));
        {
            const Style element(nest, k.nest);
            nest->SetProperty(k.nests, Any(std::vector<Style*>{const_cast<Style*>(&element)}));
        }
        Style* stranger = Add(L"Fremd", child, StyleCategoryName);
        stranger->GetSubstyleAndCreateIfMissing(k.outline, k.outline)->SetParent(line);
        FaultWorld::AddStops(*stranger, 1, point);
    }

    Style* Add(const wchar_t* name, Style* parent, const PropertyKey& category)
    {
        auto* style = new Style(parent, category);
        sheet.AddStyle(VelString(name), style, true);
        return style;
    }

    [[nodiscard]] Picture GetIdentity() const { return Draw(Painter::Look::Identity); }
    [[nodiscard]] Picture GetContent() const { return Draw(Painter::Look::Content); }
    [[nodiscard]] Picture GetEffect() const { return Draw(Painter::Look::Effect); }

    ~DocumentWorld()
    {
        for (Style* style : abandoned)
        {
            delete style;
        }
    }
    DocumentWorld(const DocumentWorld&) = delete;
    DocumentWorld& operator=(const DocumentWorld&) = delete;

    FaultySheet sheet;
    /// Styles that an operation has left to nobody.
    std::vector<Style*> abandoned;
    /// For operations between two sheets; no part of the picture.
    std::unique_ptr<FaultySheet> other;

private:
    Picture Draw(Painter::Look look) const
    {
        Picture picture;
        Painter(sheet, look, picture).DrawSheet();
        if (look != Painter::Look::Effect)
        {
            auto& open = const_cast<FaultySheet&>(sheet);
            picture["(version)"] = std::to_string(sheet.GetVersion());
            picture["(id)"] = Narrow(open.GetExternalID());
        }
        return picture;
    }
};

} // namespace Styles::Testing
