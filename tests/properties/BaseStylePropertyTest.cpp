#include "support/TestSheet.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <new>
#include <set>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Styles::Testing
{

namespace
{

using Definition = Styles::BaseStyleProperty;

/// A definition that leaves everything as it is by default.
class BareProperty : public Definition
{
public:
    explicit BareProperty(VelPref::Validator* validator = nullptr, Any defaultValue = Any(1.5), int newSinceVersion = 4)
        : Definition(validator, std::move(defaultValue), newSinceVersion)
    {}

    bool Serialize(const StyleSheet&, const Style*, const Any&, Json::Variant&) const override { return true; }
    bool Deserialize(const StyleSheet&, Style*, const Json::Variant*) const override { return true; }
    bool CheckType(const Any&) const override { return true; }

    using Definition::GetCategoryName;
    using Definition::GetPropertyName;
    using Definition::SetName;
};

/// Counts what happens to it; corrects numbers below zero and refuses those above ten.
class CountingValidator : public VelPref::Validator
{
public:
    struct Counts
    {
        int calls = 0;
        int deaths = 0;
        Any lastDefault;
    };

    explicit CountingValidator(Counts& counts) : m_counts(counts) {}
    CountingValidator(const CountingValidator&) = delete;
    CountingValidator& operator=(const CountingValidator&) = delete;
    ~CountingValidator() override { ++m_counts.deaths; }

    bool Validate(Any& value, const Any& defaultValue) const override
    {
        ++m_counts.calls;
        m_counts.lastDefault = defaultValue;
        if (value.Get<double>() < 0.0)
        {
            value = defaultValue;
        }
        return value.Get<double>() <= 10.0;
    }

private:
    Counts& m_counts;
};

/// Where an object lives that is never destroyed.
template <class T>
class Undestroyed
{
public:
    template <class... Arguments>
    explicit Undestroyed(Arguments&&... arguments) : m_object(*new (m_storage) T(std::forward<Arguments>(arguments)...))
    {}
    Undestroyed(const Undestroyed&) = delete;
    Undestroyed& operator=(const Undestroyed&) = delete;
    ~Undestroyed() = default;

    T& operator*() { return m_object; }
    T* operator->() { return &m_object; }

private:
    alignas(T) std::byte m_storage[sizeof(T)];
    T& m_object;
};

/// The slot of a virtual operation, where the destructor, which takes two, counts once.
template <class Operation>
std::size_t SlotOf(Operation operation)
{
    static_assert(sizeof operation == 2 * sizeof(std::ptrdiff_t));
    std::size_t encoded = 0;
    std::memcpy(&encoded, &operation, sizeof encoded);
    return encoded / sizeof(void*) - 1;
}

class BaseStyleProperty : public SchemaFixture
{
protected:
    BaseStyleProperty() { Manager().RegisterProperty(StyleCategoryName, Bare, bare); }

    const PropertyKey Bare = Key(L"bare");
    BareProperty* bare = new BareProperty;
    TestSheet sheet;
    Style style{nullptr, StyleCategoryName};
};

} // namespace

TEST_F(BaseStyleProperty, TheOrderAndTheConstnessOfTheVirtualOperationsArePartOfTheInterface)
{
    using D = Definition;
    using Policy = VelPref::Detail::IConversionPolicy;
    using Pairs = std::vector<std::pair<Any, Any>>;
    using Visitor = Delegate<bool(Any&, Style*, const PropertyKey&)>;
    using Span = maybe_sorted_span<Style* const>;
    const std::vector<std::size_t> slots{
        SlotOf<PropertyKey (D::*)()>(&D::GetElementCategoryName),
        SlotOf<bool (D::*)(const StyleSheet&, const Style*, const Any&, Json::Variant&) const>(&D::Serialize),
        SlotOf<bool (D::*)(const StyleSheet&, Style*, const Json::Variant*) const>(&D::Deserialize),
        SlotOf<bool (D::*)() const>(&D::NeedAdjustementsForStyleIO),
        SlotOf<void (D::*)(const StyleSheet&, Style*) const>(&D::AdjustAfterDeserialize),
        SlotOf<const Policy* (D::*)() const>(&D::GetConversionPolicy),
        SlotOf<void (D::*)(const Any&) const>(&D::DestroyPropertyData),
        SlotOf<Any (D::*)(Style*, Any &&)>(&D::MovePropertyData),
        SlotOf<std::vector<Style*> (D::*)(const Any&, Span, bool)>(&D::GetDependencies),
        SlotOf<bool (D::*)(const Any&, Span, bool) const>(&D::HasDependency),
        SlotOf<void (D::*)(Any&, Span, bool) const>(&D::RemoveDependency),
        SlotOf<bool (D::*)(const Any&) const>(&D::HasParentalDependency),
        SlotOf<void (D::*)(Any&) const>(&D::RemoveAllDependencies),
        SlotOf<void (D::*)(Any&, const std::map<Style*, Style*>&) const>(&D::RemapDependency),
        SlotOf<void (D::*)(Any&, const Pairs&) const>(&D::RemapPointer),
        SlotOf<void (D::*)(Any&, Style*, const PropertyKey&) const>(&D::SetOwner),
        SlotOf<bool (D::*)(Any&, const Visitor&, Style*, const PropertyKey&) const>(&D::ProcessProperty),
        SlotOf<void (D::*)(Style*, const Style*, const PropertyKey&, bool) const>(&D::MergeProperty),
        SlotOf<void (D::*)(Style*, const Style*, const PropertyKey&) const>(&D::MergeParentProperty),
        SlotOf<bool (D::*)(Style*, const PropertyKey&) const>(&D::FlattenProperty),
        SlotOf<bool (D::*)(const Any&, const Any&) const>(&D::IsEqual),
        SlotOf<bool (D::*)() const>(&D::IsDeprecated),
        SlotOf<bool (D::*)(const Any&, const Any&) const>(&D::IsLess),
        SlotOf<bool (D::*)(const Any&, const Delegate<bool(Style*)>&) const>(&D::ProcessStylesInProperty),
        SlotOf<bool (D::*)(const Any&) const>(&D::CheckType),
        SlotOf<bool (D::*)() const>(&D::IsTemporary),
        SlotOf<bool (D::*)() const>(&D::IsSubstyle),
    };
    std::vector<std::size_t> expected;
    for (std::size_t slot = 1; slot <= 27; ++slot) // the destructor comes before them all
    {
        expected.push_back(slot);
    }
    EXPECT_EQ(slots, expected);
}

TEST_F(BaseStyleProperty, ADefinitionAddsNoOperationsOfItsOwn)
{
    static_assert(std::has_virtual_destructor_v<Definition> && std::is_abstract_v<Definition>);
    struct Further : BareProperty
    {
        virtual void BehindAllOthers() {}
    };
    EXPECT_EQ(SlotOf(&Further::BehindAllOthers), 28U);
}

TEST_F(BaseStyleProperty, ByDefaultAValueHasNoStylesAndNoTextAndIsNothingSpecial)
{
    Any value(2.5);
    const Any same(value);
    Style* const members[] = {&style};
    const StyleSpan span(members);

    EXPECT_EQ(bare->GetElementCategoryName(), PropertyKey::Empty);
    EXPECT_FALSE(bare->NeedAdjustementsForStyleIO());
    EXPECT_EQ(bare->GetConversionPolicy(), nullptr);
    EXPECT_TRUE(bare->GetDependencies(value, span, false).empty());
    EXPECT_TRUE(bare->GetDependencies(value, span, true).empty());
    EXPECT_FALSE(bare->HasDependency(value, span, false));
    EXPECT_FALSE(bare->HasDependency(value, span, true));
    EXPECT_FALSE(bare->HasParentalDependency(value));
    EXPECT_FALSE(bare->IsDeprecated());
    EXPECT_FALSE(bare->ProcessStylesInProperty(value, [](Style*) -> bool { throw std::bad_cast(); }));
    EXPECT_FALSE(bare->IsTemporary());
    EXPECT_FALSE(bare->IsSubstyle());
    EXPECT_EQ(value, same);
}

TEST_F(BaseStyleProperty, ByDefaultTheOperationsOnValuesAndStylesChangeNothing)
{
    Any value(2.5);
    const Any same(value);
    Style* const members[] = {&style};
    const StyleSpan span(members);

    bare->AdjustAfterDeserialize(sheet, &style);
    bare->DestroyPropertyData(value);
    bare->RemoveDependency(value, span, false);
    bare->RemoveDependency(value, span, true);
    bare->RemoveAllDependencies(value);
    bare->RemapDependency(value, {{&style, nullptr}});
    bare->RemapPointer(value, {{Any(2.5), Any(3.5)}});
    bare->SetOwner(value, &style, Bare);

    EXPECT_EQ(value, same);
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetParent(), nullptr);
}

TEST_F(BaseStyleProperty, MovingAValueHandsItOnWithoutLookingAtTheStyle)
{
    Any text(VelString(L"moved"));
    const Any moved = bare->MovePropertyData(nullptr, std::move(text));
    EXPECT_EQ(moved.Get<VelString>(), L"moved");
    EXPECT_TRUE(bare->MovePropertyData(&style, Any()).IsEmpty());
}

TEST_F(BaseStyleProperty, ProcessingHandsValueStyleAndKeyToTheVisitorAndAnswersAsItDoes)
{
    Any value(2.5);
    for (const bool answer : {true, false})
    {
        int calls = 0;
        EXPECT_EQ(bare->ProcessProperty(
                      value,
                      [&](Any& visited, Style* holder, const PropertyKey& key) {
                          EXPECT_EQ(&visited, &value);
                          EXPECT_EQ(holder, &style);
                          EXPECT_EQ(key, Number);
                          ++calls;
                          return answer;
                      },
                      &style, Number),
                  answer);
        EXPECT_EQ(calls, 1);
    }
}

TEST_F(BaseStyleProperty, NamesAreEmptyUntilTheyAreGiven)
{
    BareProperty definition;
    EXPECT_EQ(definition.GetCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(definition.GetPropertyName(), PropertyKey::Empty);
    definition.SetName(Fill, Angle);
    EXPECT_EQ(definition.GetCategoryName(), Fill);
    EXPECT_EQ(definition.GetPropertyName(), Angle);
    EXPECT_EQ(bare->GetCategoryName(), StyleCategoryName);
    EXPECT_EQ(bare->GetPropertyName(), Bare);
}

TEST_F(BaseStyleProperty, DefaultAndVersionAreThoseItWasMadeWith)
{
    EXPECT_EQ(bare->GetDefaultValue().Get<double>(), 1.5);
    EXPECT_EQ(bare->GetNewSinceVersion(), 4);
    EXPECT_EQ(&bare->GetDefaultValue(), &bare->GetDefaultValue());
}

TEST_F(BaseStyleProperty, DeletesItsValidator)
{
    CountingValidator::Counts counts;
    {
        const BareProperty definition(new CountingValidator(counts));
        EXPECT_EQ(counts.deaths, 0);
    }
    EXPECT_EQ(counts.deaths, 1);
}

TEST_F(BaseStyleProperty, WithoutAValidatorNoValueIsValid)
{
    Any value(2.5);
    EXPECT_FALSE(bare->Validate(value));
    EXPECT_EQ(value.Get<double>(), 2.5);
}

TEST_F(BaseStyleProperty, TheValidatorSeesTheDefaultAndMayCorrectTheValue)
{
    CountingValidator::Counts counts;
    const BareProperty definition(new CountingValidator(counts), Any(3.0));
    Any good(2.5);
    Any corrected(-1.0);
    Any bad(11.0);
    EXPECT_TRUE(definition.Validate(good));
    EXPECT_EQ(good.Get<double>(), 2.5);
    EXPECT_TRUE(definition.Validate(corrected));
    EXPECT_EQ(corrected.Get<double>(), 3.0);
    EXPECT_FALSE(definition.Validate(bad));
    EXPECT_EQ(counts.calls, 3);
    EXPECT_EQ(counts.lastDefault.Get<double>(), 3.0);
}

TEST_F(BaseStyleProperty, ACopySharesTheValidatorOfItsSource)
{
    CountingValidator::Counts counts;
    {
        BareProperty original(new CountingValidator(counts), Any(3.0), 9);
        original.SetName(Fill, Angle);
        Undestroyed<BareProperty> copy(original);
        Undestroyed<BareProperty> assigned;
        *assigned = original;
        for (BareProperty* other : {&*copy, &*assigned})
        {
            Any value(2.5);
            const int before = counts.calls;
            EXPECT_TRUE(other->Validate(value));
            EXPECT_EQ(counts.calls, before + 1);
            EXPECT_EQ(other->GetDefaultValue().Get<double>(), 3.0);
            EXPECT_NE(&other->GetDefaultValue(), &original.GetDefaultValue());
            EXPECT_EQ(other->GetNewSinceVersion(), 9);
            EXPECT_EQ(other->GetCategoryName(), Fill);
            EXPECT_EQ(other->GetPropertyName(), Angle);
        }
        EXPECT_EQ(counts.deaths, 0);
    }
    EXPECT_EQ(counts.deaths, 1);
}

TEST_F(BaseStyleProperty, MergingKeepsAnOwnValueUnlessToldToOverwriteIt)
{
    Style source(nullptr, StyleCategoryName);
    source.SetProperty(Bare, Any(7.0));
    style.SetProperty(Bare, Any(6.0));
    bare->MergeProperty(&style, &source, Bare, false);
    EXPECT_EQ(style.GetProperty(Bare).Get<double>(), 6.0);
    bare->MergeProperty(&style, &source, Bare, true);
    EXPECT_EQ(style.GetProperty(Bare).Get<double>(), 7.0);
    EXPECT_EQ(source.GetProperty(Bare).Get<double>(), 7.0);
}

TEST_F(BaseStyleProperty, MergingBringsInTheOwnElseTheInheritedElseTheDefaultValueOfTheSource)
{
    Style grandparent(nullptr, StyleCategoryName);
    Style source(&grandparent, StyleCategoryName);

    bare->MergeProperty(&style, &source, Bare, false);
    EXPECT_EQ(style.GetProperty(Bare), Any(1.5));

    grandparent.SetProperty(Bare, Any(8.0));
    bare->MergeProperty(&style, &source, Bare, true);
    EXPECT_EQ(style.GetProperty(Bare), Any(8.0));

    source.SetProperty(Bare, Any(9.0));
    bare->MergeProperty(&style, &source, Bare, true);
    EXPECT_EQ(style.GetProperty(Bare), Any(9.0));
}

TEST_F(BaseStyleProperty, MergingAParentBringsInItsEffectiveValueButNoDefault)
{
    Style grandparent(nullptr, StyleCategoryName);
    Style parent(&grandparent, StyleCategoryName);

    bare->MergeParentProperty(&style, &parent, Bare);
    EXPECT_TRUE(style.IsEmpty());

    grandparent.SetProperty(Bare, Any(8.0));
    bare->MergeParentProperty(&style, &parent, Bare);
    EXPECT_EQ(style.GetProperty(Bare), Any(8.0));

    parent.SetProperty(Bare, Any(9.0));
    bare->MergeParentProperty(&style, &parent, Bare);
    EXPECT_EQ(style.GetProperty(Bare), Any(8.0));
}

TEST_F(BaseStyleProperty, FlatteningMakesTheEffectiveValueAnOwnOneAndTellsWhetherThereWasOne)
{
    Style parent(nullptr, StyleCategoryName);
    style.SetParent(&parent);
    EXPECT_FALSE(bare->FlattenProperty(&style, Bare));
    EXPECT_TRUE(style.IsEmpty());

    parent.SetProperty(Bare, Any(9.0));
    EXPECT_TRUE(bare->FlattenProperty(&style, Bare));
    EXPECT_EQ(style.GetProperty(Bare), Any(9.0));
    EXPECT_TRUE(bare->FlattenProperty(&style, Bare)); // an own value counts as found, too
    EXPECT_EQ(style.GetParent(), &parent);
}

TEST_F(BaseStyleProperty, EqualityAsksForTheTypeFirst)
{
    EXPECT_TRUE(bare->IsEqual(Any(), Any()));
    EXPECT_FALSE(bare->IsEqual(Any(), Any(1.0)));
    EXPECT_FALSE(bare->IsEqual(Any(1.0), Any()));
    EXPECT_TRUE(bare->IsEqual(Any(1.0), Any(1.0)));
    EXPECT_FALSE(bare->IsEqual(Any(1.0), Any(2.0)));
    EXPECT_FALSE(bare->IsEqual(Any(1.0), Any(1)));
}

TEST_F(BaseStyleProperty, ValuesOfDifferentTypesAreOrderedByTheirTypes)
{
    EXPECT_TRUE(bare->IsLess(Any(1.0), Any(2.0)));
    EXPECT_FALSE(bare->IsLess(Any(2.0), Any(1.0)));
    EXPECT_FALSE(bare->IsLess(Any(1.0), Any(1.0)));
    EXPECT_FALSE(bare->IsLess(Any(), Any()));

    const std::vector<Any> mixed{Any(), Any(1.0), Any(2), Any(VelString(L"3")), Any(true), Any(std::uint32_t{4})};
    for (const Any& a : mixed)
    {
        for (const Any& b : mixed)
        {
            const bool before = &a != &b && a.GetType().before(b.GetType());
            EXPECT_EQ(bare->IsLess(a, b), before);
        }
    }
}

} // namespace Styles::Testing
