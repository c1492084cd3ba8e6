// A sheet of styles that every kind of operation finds something to do in, under definitions that may throw.
#pragma once

#include "faults/FaultyDefinitions.h"
#include "faults/Painter.h"
#include "faults/UnderFailures.h"
#include "support/SchemaFixture.h"

#include <memory>
#include <string>
#include <vector>

namespace Styles::Testing
{

struct FaultKeys
{
    const PropertyKey fill = Key(L"fill"), outline = Key(L"outline"), character = Key(L"character"),
                      stop = Key(L"stop"), nest = Key(L"nest");
    const PropertyKey pattern = Key(L"patternId"), scale = Key(L"xScale"), color = Key(L"color"), width = Key(L"width"),
                      font = Key(L"font"), size = Key(L"size"), position = Key(L"position"), note = Key(L"note"),
                      number = Key(L"number"), stops = Key(L"stops"), nests = Key(L"nests"), unknown = Key(L"unknown");
};

/// The keys; tests name many of them.
inline const FaultKeys& K()
{
    static const FaultKeys keys;
    return keys;
}

inline void RegisterFaultyText(const PropertyKey& category, const PropertyKey& name, const wchar_t* defaultValue)
{
    Manager().RegisterProperty(
        category, name, new Faulty<StyleProperty>(nullptr, VelString(defaultValue), new FaultyPolicy<VelString>(), 0));
}

inline void RegisterFaultyNumber(const PropertyKey& category, const PropertyKey& name)
{
    Manager().RegisterProperty(category, name, new Faulty<StyleProperty>(nullptr, 0.5, new FaultyPolicy<double>(), 0));
}

inline void RegisterFaultySubstyle(const PropertyKey& category, const PropertyKey& name)
{
    Manager().RegisterProperty(category, name, new Faulty<StyleSetProperty>(nullptr, name, nullptr, 0));
}

inline void RegisterFaultyList(const PropertyKey& category, const PropertyKey& name, const PropertyKey& elements)
{
    Manager().RegisterProperty(category, name, new Faulty<StyleArrayProperty>(nullptr, elements));
}

inline void RegisterFaultySchema()
{
    const FaultKeys& k = K();
    Manager().Reset();
    Manager().SetCurrentVersion(3);
    Manager().RegisterCategory(k.fill, VelString(L"Fill"), true, true);
    Manager().RegisterCategory(k.outline, VelString(L"Outline"), true, true);
    Manager().RegisterCategory(k.character, VelString(L"Character"), true, true);
    Manager().RegisterCategory(k.stop, VelString(L"Gradient stop"), false, false);
    Manager().RegisterCategory(k.nest, VelString(L"Nest"), false, true);
    Manager().RegisterCategory(StyleCategoryName, VelString(L"Graphic style"), false, true);
    Manager().RegisterProperty(
        k.fill, k.pattern, new Faulty<StyleProperty>(nullptr, std::uint32_t{7}, new FaultyPolicy<std::uint32_t>(), 0));
    RegisterFaultyNumber(k.fill, k.scale);
    RegisterFaultyText(k.fill, k.color, L"white");
    RegisterFaultyNumber(k.outline, k.width);
    RegisterFaultyText(k.outline, k.color, L"black");
    RegisterFaultyText(k.character, k.font, L"Sans");
    RegisterFaultyNumber(k.character, k.size);
    RegisterFaultySubstyle(k.character, k.fill);
    RegisterFaultyNumber(k.stop, k.position);
    RegisterFaultyText(k.stop, k.color, L"grey");
    RegisterFaultyText(StyleCategoryName, k.note, L"default note");
    RegisterFaultyNumber(StyleCategoryName, k.number);
    RegisterFaultySubstyle(StyleCategoryName, k.fill);
    RegisterFaultySubstyle(StyleCategoryName, k.outline);
    RegisterFaultySubstyle(StyleCategoryName, k.character);
    RegisterFaultyList(StyleCategoryName, k.stops, k.stop);
    RegisterFaultyText(k.nest, k.note, L"empty nest");
    RegisterFaultySubstyle(k.nest, k.nest);
    RegisterFaultyList(k.nest, k.nests, k.nest);
}

/// Gives tests the text of a document, and an identity.
class OpenSheet : public StyleSheet
{
public:
    using StyleSheet::ExportJson;
    using StyleSheet::ExportToString;
    using StyleSheet::GenerateCategoryStyleMap;
    using StyleSheet::ImportFromString;
    using StyleSheet::ImportJson;
    using StyleSheet::SetExternalID;
};

/// Styles that inherit, nest and hold lists, in a sheet, and one that is in none.
class FaultWorld
{
public:
    FaultWorld()
    {
        const FaultKeys& k = K();
        ancestor = Add(L"Ur-Großmutter, die Älteste", nullptr, StyleCategoryName);
        base = Add(L"Basis für alle anderen", ancestor, StyleCategoryName);
        child = Add(L"Kind der Basis, übernommen", base, StyleCategoryName);
        grandchild = Add(L"Enkel der Basis, noch kleiner", child, StyleCategoryName);
        oldLine = Add(L"Linie, wie sie immer war", nullptr, k.outline);
        line = Add(L"Linie, etwas neuer", oldLine, k.outline);
        stopParent = Add(L"Verlaufspunkt", nullptr, k.stop);
        nest = Add(L"Nest im Nest im Nest", nullptr, k.nest);
        loose = std::make_unique<Style>(base, StyleCategoryName);

        Set(*ancestor, MakePath(k.fill, k.color), L"rot, aber ein sehr dunkles Rot");
        Set(*ancestor, MakePath(k.character, k.font), L"Grotesk");
        ancestor->SetPathProperty(MakePath(k.outline, k.width), Any(0.125));
        AddStops(*ancestor, 2, nullptr);
        Set(*base, MakePath(k.note), L"Notiz der Basis, die lang genug ist");
        base->SetPathProperty(MakePath(k.fill, k.pattern), Any(std::uint32_t{3}));
        Set(*base, MakePath(k.character, k.fill, k.color), L"blau");
        base->SetProperty(k.number, Any(4.0));
        base->SetExternalID(L"äußere Kennung der Basis");
        base->SetExternalName(L"äußerer Name der Basis");
        child->SetPathProperty(MakePath(k.fill, k.scale), Any(2.0));
        child->GetSubstyleAndCreateIfMissing(k.outline, k.outline)->SetParent(line);
        Set(*grandchild, MakePath(k.note), L"Notiz des Enkels");
        grandchild->SetPathProperty(MakePath(k.character, k.size), Any(24.0));
        grandchild->SetPathProperty(MakePath(k.character, k.fill, k.scale), Any(3.0));
        stopParent->SetProperty(k.color, Any(VelString(L"Farbe des Verlaufspunkts")));
        AddStops(*grandchild, 2, stopParent);
        oldLine->SetProperty(k.width, Any(2.0));
        line->SetProperty(k.color, Any(VelString(L"Farbe der Linie")));
        Set(*nest, MakePath(k.nest, k.nest, k.note), L"innerste Notiz");
        {
            Style element(nest, k.nest);
            Set(element, MakePath(k.note), L"Notiz eines Nests");
            nest->SetProperty(k.nests, Any(std::vector<Style*>{&element}));
        }
        Set(*loose, MakePath(k.fill, k.color), L"lose Farbe");
        loose->SetProperty(k.number, Any(1.0));
    }

    [[nodiscard]] Picture GetIdentity() const { return Draw(Painter::Look::Identity); }
    [[nodiscard]] Picture GetContent() const { return Draw(Painter::Look::Content); }
    [[nodiscard]] Picture GetEffect() const { return Draw(Painter::Look::Effect); }

    static void Set(Style& style, const PropertyPath& path, const wchar_t* text)
    {
        style.SetPathProperty(path, Any(VelString(text)));
    }

    Style* Add(const wchar_t* name, Style* parent, const PropertyKey& category)
    {
        auto* style = new Style(parent, category);
        sheet.AddStyle(VelString(name), style, true);
        return style;
    }

    static void AddStops(Style& style, int count, Style* parent)
    {
        std::vector<Style> elements;
        for (int index = 0; index < count; ++index)
        {
            elements.emplace_back(parent, K().stop).SetProperty(K().position, Any(0.25 * index));
        }
        std::vector<Style*> list;
        for (Style& element : elements)
        {
            list.push_back(&element);
        }
        style.SetProperty(K().stops, Any(list));
    }

    OpenSheet sheet;
    Style *ancestor, *base, *child, *grandchild, *oldLine, *line, *stopParent, *nest;
    std::unique_ptr<Style> loose;
    /// For operations that make something; part of the picture.
    std::unique_ptr<Style> made;
    /// For operations that cannot be done twice.
    bool isDone = false;

private:
    Picture Draw(Painter::Look look) const
    {
        Picture picture;
        Painter painter(sheet, look, picture);
        painter.DrawSheet();
        if (look != Painter::Look::Effect)
        {
            picture["(sheet)"] =
                std::to_string(sheet.GetVersion()) + " " + Narrow(const_cast<OpenSheet&>(sheet).GetExternalID());
            if (made != nullptr)
            {
                painter.Draw("(made)", *made);
            }
        }
        painter.Draw("(loose)", *loose);
        return picture;
    }
};

/// The definitions that may throw, for the time of a test.
class FaultySchema
{
public:
    FaultySchema() { RegisterFaultySchema(); }
    ~FaultySchema()
    {
        Manager().ClearImportStyleInfo();
        Manager().Reset();
        Manager().SetCurrentVersion(-1);
    }
    FaultySchema(const FaultySchema&) = delete;
    FaultySchema& operator=(const FaultySchema&) = delete;
};

/// A test for each operation on a world of styles.
template <class World>
class FaultsOf : public testing::TestWithParam<Operation<World>>
{
private:
    FaultySchema m_schema;
};

using WorldFaults = FaultsOf<FaultWorld>;

} // namespace Styles::Testing
