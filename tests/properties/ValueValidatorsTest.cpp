#include <styles/ValueValidators.h>

#include "support/TestSheet.h"

#include <cstdint>
#include <limits>

namespace Styles::Testing
{

namespace
{

template <class Validator>
bool Accepts(const Validator& validator, const Any& candidate)
{
    Any value(candidate);
    const bool accepted = validator.Validate(value, Any());
    EXPECT_EQ(value.GetType(), candidate.GetType());
    return accepted;
}

} // namespace

TEST(ValueValidators, ARangeIncludesItsEnds)
{
    const RangeValidator<double> range(-1.0, 2.0);
    EXPECT_TRUE(Accepts(range, Any(-1.0)));
    EXPECT_TRUE(Accepts(range, Any(0.5)));
    EXPECT_TRUE(Accepts(range, Any(2.0)));
    EXPECT_FALSE(Accepts(range, Any(-1.0000001)));
    EXPECT_FALSE(Accepts(range, Any(2.0000001)));
}

TEST(ValueValidators, ARangeRefusesWhatDoesNotCompare)
{
    const RangeValidator<double> range(-1.0, 2.0);
    EXPECT_FALSE(Accepts(range, Any(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_FALSE(Accepts(range, Any(std::numeric_limits<double>::infinity())));
    const RangeValidator<double> nothing(2.0, -1.0);
    EXPECT_FALSE(Accepts(nothing, Any(0.0)));
}

TEST(ValueValidators, ARangeOfTextsIsInTheirOrder)
{
    const RangeValidator<VelString> range(VelString(L"b"), VelString(L"d"));
    EXPECT_TRUE(Accepts(range, Any(VelString(L"c"))));
    EXPECT_FALSE(Accepts(range, Any(VelString(L"a"))));
    EXPECT_FALSE(Accepts(range, Any(VelString(L"da"))));
}

TEST(ValueValidators, AChoiceAcceptsItsValuesOnly)
{
    const ChoiceValidator<VelString> choice({VelString(L"left"), VelString(L"right")});
    EXPECT_TRUE(Accepts(choice, Any(VelString(L"left"))));
    EXPECT_TRUE(Accepts(choice, Any(VelString(L"right"))));
    EXPECT_FALSE(Accepts(choice, Any(VelString(L"Left"))));
    EXPECT_FALSE(Accepts(choice, Any(VelString())));
    EXPECT_FALSE(Accepts(ChoiceValidator<VelString>({}), Any(VelString())));
}

TEST(ValueValidators, AValueOfAnotherTypeIsRefused)
{
    const RangeValidator<double> range(-1.0, 2.0);
    EXPECT_FALSE(Accepts(range, Any(1)));
    EXPECT_FALSE(Accepts(range, Any()));
    const ChoiceValidator<std::int32_t> choice({1, 2});
    EXPECT_TRUE(Accepts(choice, Any(std::int32_t{1})));
    EXPECT_FALSE(Accepts(choice, Any(std::uint32_t{1})));
    EXPECT_FALSE(Accepts(choice, Any()));
}

TEST(ValueValidators, ADefinitionAsksItsValidatorAndTheValueStays)
{
    const Styles::StyleProperty definition(new RangeValidator<double>(0.0, 1.0), 0.5, new TextPolicy<double>(), 0);
    Any inside(1.0);
    Any outside(1.5);
    EXPECT_TRUE(definition.Validate(inside));
    EXPECT_FALSE(definition.Validate(outside));
    EXPECT_EQ(outside.Get<double>(), 1.5);
}

} // namespace Styles::Testing
