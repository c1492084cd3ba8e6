#include "core/border/Library.h"

#include <memory>

namespace Border
{

namespace
{

Styles::Json::Object MakeObject()
{
    Styles::Json::Object object;
    object.AddValue(VelString(L"name"), VelString(L"value"));
    object.AddValue(VelString(L"number"), 2.5);
    return object;
}

Styles::Json::Array MakeArray()
{
    Styles::Json::Array array;
    array.AddValue(MakeObject());
    array.AddValue(true);
    return array;
}

template <class T>
bool Reads(const Any& value, const T& expected)
{
    return value.Is<T>() && value.Get<T>() == expected;
}

/// A text property of this library, with a table of virtual operations that is hidden in it.
class ShoutingProperty : public Styles::StyleProperty
{
public:
    ShoutingProperty() : StyleProperty(nullptr, VelString(L"silence"), new Styles::TextPolicy<VelString>(), 0) {}

    Any MovePropertyData(Style* /*newOwner*/, Any&& value) override
    {
        return Any(value.Get<VelString>() + VelString(L"!"));
    }
};

} // namespace

std::vector<Any> MakeValues(Style* style)
{
    std::vector<Any> values;
    values.emplace_back();
    values.emplace_back(1.25);
    values.emplace_back(style);
    values.emplace_back(static_cast<const Style*>(style));
    values.emplace_back(VelString(L"a text of the other side"));
    values.emplace_back(Styles::Json::NullType::Null);
    values.emplace_back(std::vector<Style*>{style, nullptr});
    values.emplace_back(MakeObject());
    values.emplace_back(MakeArray());
    values.emplace_back(Point{3, -4});
    values.emplace_back(Box{1, 2, 3, 4});
    values.emplace_back(Fruit::Pear);
    return values;
}

bool ReadsValue(std::size_t index, const Any& value, const Style* style)
{
    Style* mutableStyle = const_cast<Style*>(style);
    switch (index)
    {
    case 0:
        return value.IsEmpty() && value.Is<Any::null_holder_type>();
    case 1:
        return Reads(value, 1.25);
    case 2:
        return Reads(value, mutableStyle);
    case 3:
        return Reads(value, style);
    case 4:
        return Reads(value, VelString(L"a text of the other side"));
    case 5:
        return Reads(value, Styles::Json::NullType::Null);
    case 6:
        return Reads(value, std::vector<Style*>{mutableStyle, nullptr});
    case 7:
        return Reads(value, MakeObject());
    case 8:
        return Reads(value, MakeArray());
    case 9:
        return Reads(value, Point{3, -4});
    case 10:
        return Reads(value, Box{1, 2, 3, 4});
    case 11:
        return Reads(value, Fruit::Pear) && value.GetHolder()->IsEnum() && value.GetHolder()->GetEnumValue() == -2;
    default:
        return false;
    }
}

bool AreEqual(const Any& a, const Any& b)
{
    return a == b;
}

bool IsLess(const Any& a, const Any& b)
{
    return a < b;
}

void Assign(Any& target, const Any& source)
{
    target = source;
}

void Exchange(Any& a, Any& b)
{
    a.Swap(b);
}

Any MoveOut(Any& source)
{
    return std::move(source);
}

double GetNumber(const Any& value)
{
    return value.Get<double>();
}

PropertyKey MakeKey(const wchar_t* text)
{
    return PropertyKey(VelString(text));
}

PropertyKey MakeDefaultKey()
{
    return {};
}

const PropertyKey* GetEmptyKey()
{
    return &PropertyKey::Empty;
}

Styles::StyleManager* GetManager()
{
    return &VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
}

void RegisterCategory()
{
    Styles::StyleManager& manager = *GetManager();
    const PropertyKey category = MakeKey(L"border");
    manager.RegisterCategory(category, VelString(L"Border"), false, true);
    manager.RegisterProperty(category, MakeKey(L"double"),
                             new Styles::StyleProperty(nullptr, 0.5, new Styles::TextPolicy<double>(), 0));
    manager.RegisterProperty(category, MakeKey(L"text"), new ShoutingProperty());
    manager.RegisterProperty(category, MakeKey(L"box"), new Styles::TemporaryStyleProperty(nullptr, Box{}, 0));
    manager.RegisterProperty(category, MakeKey(L"list"), new Styles::StyleArrayProperty(nullptr, category));
    Styles::RegisterSubstyleSet(category, category);
}

Style* MakeStyle()
{
    const PropertyKey category = MakeKey(L"border");
    auto style = std::make_unique<Style>(nullptr, category);
    style->SetProperty(MakeKey(L"double"), Any(7.5));
    style->SetProperty(MakeKey(L"box"), Any(Box{1, 2, 3, 4}));
    SetText(*style, MakeKey(L"text"), L"made there");
    SetText(*style->GetSubstyleAndCreateIfMissing(category, category), MakeKey(L"text"), L"inside");
    Style element(nullptr, category);
    style->SetProperty(MakeKey(L"list"), Any(std::vector<Style*>{&element}));
    return style.release();
}

VelString ReadText(const Style& style, const PropertyKey& key)
{
    return style.GetProperty(key).Get<VelString>();
}

void SetText(Style& style, const PropertyKey& key, const wchar_t* text)
{
    style.SetProperty(key, Any(text));
}

} // namespace Border
