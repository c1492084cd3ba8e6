// Values, and what hosts make of validators and definitions, fail wherever they can.

#include "faults/FaultWorld.h"

#include <VelUtils/LogMessage.h>

#include <memory>
#include <utility>

namespace Styles::Testing
{

namespace
{

/// A value of a host that may fail whenever it is copied or compared. It lives on the heap of an `Any`.
class Fragile
{
public:
    explicit Fragile(int number) : m_number(number) {}
    Fragile(const Fragile& other) : m_number(other.m_number) { ReachCall(); }
    Fragile(Fragile&& other) noexcept = default;
    Fragile& operator=(const Fragile& other)
    {
        ReachCall();
        m_number = other.m_number;
        return *this;
    }
    ~Fragile() = default;

    bool operator==(const Fragile& other) const
    {
        ReachCall();
        return m_number == other.m_number;
    }
    bool operator<(const Fragile& other) const
    {
        ReachCall();
        return m_number < other.m_number;
    }

    [[nodiscard]] int GetNumber() const { return m_text.empty() ? 0 : m_number; }

private:
    int m_number;
    VelString m_text = L"ein Text, der seinen Speicher braucht";
};

std::string Describe(const Any& value)
{
    if (const auto* fragile = value.GetIf<Fragile>())
    {
        return "fragile " + std::to_string(fragile->GetNumber());
    }
    if (const auto* list = value.GetIf<std::vector<int>>())
    {
        return std::to_string(list->size()) + " numbers";
    }
    return value.Is<VelString>() ? Narrow(value.Get<VelString>()) : value.GetType().name();
}

class ValueWorld
{
public:
    [[nodiscard]] Picture GetIdentity() const
    {
        return {{"fragile", Describe(fragile)}, {"list", Describe(list)}, {"text", Describe(text)}};
    }
    [[nodiscard]] Picture GetContent() const { return GetIdentity(); }
    [[nodiscard]] Picture GetEffect() const { return GetIdentity(); }

    Any fragile{Fragile(1)};
    Any list{std::vector<int>{1, 2, 3}};
    Any text{VelString(L"ein Wert")};
};

using W = ValueWorld;
using Op = Operation<W>;

class ValueFaults : public FaultsOf<W>
{};

TEST_P(ValueFaults, HoldWhatIsPromisedWhenMemoryEnds)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

TEST_P(ValueFaults, HoldWhatIsPromisedWhenTheHostThrows)
{
    RunUnderFailures(GetParam(), /*byMemory*/ false);
}

INSTANTIATE_TEST_SUITE_P(Values, ValueFaults,
                         testing::Values(Op{"Construct",
                                            [](W&) {
                                                const Fragile value(2);
                                                const Any made(value);
                                            }},
                                         Op{"Copy",
                                            [](W& w) {
                                                const Any fragile(w.fragile);
                                                const Any list(w.list);
                                            }},
                                         Op{"AssignOneType",
                                            [](W& w) {
                                                const Any other{Fragile(2)};
                                                w.fragile = other;
                                            }},
                                         Op{"AssignAnotherType", [](W& w) { w.text = w.fragile; }},
                                         Op{"AssignToAHeldValue", [](W& w) { w.fragile = w.list; }},
                                         Op{"MoveSwapAndAsk",
                                            [](W& w) {
                                                Any moved(std::move(w.list));
                                                moved.Swap(w.text);
                                                moved.Swap(w.text);
                                                w.list.Swap(moved);
                                                (void)w.list.Get<std::vector<int>>();
                                                (void)w.fragile.GetIf<Fragile>();
                                                (void)w.fragile.Is<int>();
                                                (void)w.fragile.GetType();
                                                (void)w.fragile.IsEmpty();
                                                (void)w.fragile.GetHolder();
                                            },
                                            Promise::ThrowsNothing, Promise::ThrowsNothing},
                                         Op{"Compare",
                                            [](W& w) {
                                                (void)(w.fragile == w.fragile);
                                                (void)(w.fragile < w.fragile);
                                            },
                                            Promise::ThrowsNothing}),
                         OperationName());

/// A validator of a host.
class FaultyValidator : public VelPref::Validator
{
public:
    bool Validate(Any& /*value*/, const Any& /*defaultValue*/) const override
    {
        ReachCall();
        return true;
    }
};

template <class Definition, class... Arguments>
void MakeDefinition(Arguments&&... arguments)
{
    auto validator = std::make_unique<FaultyValidator>();
    const auto definition = std::make_unique<Definition>(validator.get(), std::forward<Arguments>(arguments)...);
    validator.release();
    Any value(1.0);
    (void)definition->Validate(value);
}

INSTANTIATE_TEST_SUITE_P(
    Definitions, ValueFaults,
    testing::Values(Op{"MakeStyleProperty",
                       [](W&) {
                           const Fragile value(2);
                           auto policy = std::make_unique<FaultyPolicy<double>>();
                           auto validator = std::make_unique<FaultyValidator>();
                           const auto definition =
                               std::make_unique<StyleProperty>(validator.get(), value, policy.get(), 0);
                           validator.release();
                           policy.release();
                       }},
                    Op{"MakeTemporaryStyleProperty", [](W&) { MakeDefinition<TemporaryStyleProperty>(Fragile(2), 0); }},
                    Op{"MakeStyleSetProperty",
                       [](W&) {
                           auto substyle = std::make_unique<Style>(nullptr, K().fill);
                           auto validator = std::make_unique<FaultyValidator>();
                           const auto definition =
                               std::make_unique<StyleSetProperty>(validator.get(), K().fill, substyle.get(), 0);
                           validator.release();
                           substyle.release();
                       }},
                    Op{"MakeStyleArrayProperty", [](W&) { MakeDefinition<StyleArrayProperty>(K().stop); }},
                    Op{"CopyDefinitions",
                       [](W&) {
                           const StyleProperty plain(nullptr, VelString(L"ein langer Text"), nullptr, 0);
                           StyleProperty plainCopy(plain);
                           plainCopy = plain;
                           const TemporaryStyleProperty temporary(nullptr, std::vector<int>{1, 2}, 0);
                           TemporaryStyleProperty temporaryCopy(temporary);
                           temporaryCopy = temporary;
                           const StyleArrayProperty list(nullptr, 0);
                           StyleArrayProperty listCopy(list);
                           listCopy = list;
                           const StyleSetProperty substyle(nullptr, K().fill, nullptr, 0);
                           StyleSetProperty substyleCopy(substyle);
                           substyleCopy = substyle;
                       }},
                    Op{"Validate",
                       [](W&) {
                           const RangeValidator<double> range(0.0, 1.0);
                           const ChoiceValidator<VelString> choice({VelString(L"rot"), VelString(L"blau")});
                           Any number(0.5);
                           Any color(VelString(L"rot"));
                           EXPECT_TRUE(range.Validate(number, number));
                           EXPECT_TRUE(choice.Validate(color, color));
                       }}),
    OperationName());

/// A host that listens, and whose ear may fail.
class Listening
{
public:
    Listening() : m_before(VelUtils::SetLogSink([](const VelString&) { ReachCall(); })) {}
    ~Listening() { VelUtils::SetLogSink(std::move(m_before)); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

private:
    VelUtils::LogSink m_before;
};

class ListeningWorld
{
public:
    [[nodiscard]] Picture GetIdentity() const { return {}; }
    [[nodiscard]] Picture GetContent() const { return {}; }
    [[nodiscard]] Picture GetEffect() const { return {}; }

    Listening listening;
    std::shared_ptr<StyleCategory> category = Manager().GetCategory(K().fill);
};

class LogFaults : public FaultsOf<ListeningWorld>
{};

TEST_P(LogFaults, NeverReachALookUpWhenMemoryEnds)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

TEST_P(LogFaults, NeverReachALookUpWhenTheHostThrows)
{
    RunUnderFailures(GetParam(), /*byMemory*/ false);
}

INSTANTIATE_TEST_SUITE_P(Registry, LogFaults,
                         testing::Values(Operation<ListeningWorld>{
                             "MissingDefinition",
                             [](ListeningWorld& w) {
                                 EXPECT_EQ(w.category->GetStyleProperty(K().unknown), nullptr);
                                 EXPECT_EQ(w.category->GetConversionPolicy(K().unknown), nullptr);
                             },
                             Promise::ThrowsNothing, Promise::ThrowsNothing}),
                         OperationName());

} // namespace

} // namespace Styles::Testing
