// Registration is all or nothing when memory ends.

#include "faults/FaultWorld.h"

#include <memory>
#include <stdexcept>
#include <utility>

namespace Styles::Testing
{

namespace
{

/// A manager with two style-set categories, and what it knows as a picture.
class RegistryWorld
{
public:
    RegistryWorld()
    {
        Manager().Reset();
        Manager().RegisterCategory(K().fill, VelString(L"Füllung, mit langem Namen"), true, true);
        Manager().RegisterCategory(K().outline, VelString(L"Umriss, mit langem Namen"), true, true);
        Manager().RegisterProperty(K().fill, K().color, MakeTextProperty(L"weiß"));
    }
    ~RegistryWorld() { Manager().Reset(); }
    RegistryWorld(const RegistryWorld&) = delete;
    RegistryWorld& operator=(const RegistryWorld&) = delete;

    [[nodiscard]] Picture GetIdentity() const
    {
        Picture picture;
        for (const PropertyKey& category : Manager().GetCategoryNames())
        {
            const std::string place = Narrow(category.GetText());
            picture[place] = Narrow(Manager().TranslateCategory(category));
            for (std::size_t index = 0; const PropertyKey& property : Manager().GetStylePropertyNames(category))
            {
                const BaseStyleProperty* definition = Manager().GetStyleProperty(category, property);
                picture[place + "/" + std::to_string(index++)] =
                    Narrow(property.GetText()) + (definition != nullptr ? " is defined" : " is not defined");
            }
        }
        for (const PropertyKey& category : Manager().GetStyleSetCategoryNames())
        {
            picture["(sets)"] += Narrow(category.GetText()) + ",";
        }
        return picture;
    }
    [[nodiscard]] Picture GetContent() const { return GetIdentity(); }
    [[nodiscard]] Picture GetEffect() const { return GetIdentity(); }
};

using W = RegistryWorld;
using Op = Operation<W>;

class RegistryFaults : public testing::TestWithParam<Op>
{};

TEST_P(RegistryFaults, AreAllOrNothing)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

INSTANTIATE_TEST_SUITE_P(
    Registry, RegistryFaults,
    testing::Values(
        Op{"RegisterCategory", [](W&) { Manager().RegisterCategory(K().nest, L"ein langer Name", false, true); }},
        Op{"RegisterStyleSet", [](W&) { Manager().RegisterCategory(K().nest, L"ein langer Name", true, true); }},
        Op{"RegisterProperty",
           [](W&) {
               auto definition = std::make_unique<StyleProperty>(nullptr, VelString(L"ein langer Text"), nullptr, 0);
               Manager().RegisterProperty(K().fill, K().note, definition.get());
               definition.release();
           }},
        Op{"RegisterStyleCategory", [](W&) { RegisterStyleCategory(L"Grafikstil, mit langem Namen"); }},
        Op{"RegisterSubstyleSet", [](W&) { RegisterSubstyleSet(K().fill, K().outline); }},
        Op{"Deregister", [](W&) { Manager().DeregisterCategory(K().fill); }, Promise::ThrowsNothing},
        Op{"DeregisterStyleCategory", [](W&) { DeregisterStyleCategory(); }, Promise::ThrowsNothing, Promise::Unchanged,
           false, true, Promise::AllOrNothing, [](W&) { RegisterStyleCategory(L"Grafikstil, mit langem Namen"); }},
        Op{"ResetStyleManager", [](W&) { ResetStyleManager(); }, Promise::ThrowsNothing},
        Op{"AddToTheStyleCategory", [](W&) { RegisterStyleCategory(L"Grafikstil, mit langem Namen"); },
           Promise::Stepwise, Promise::Unchanged, false, true, Promise::AllOrNothing,
           [](W&) { Manager().RegisterCategory(StyleCategoryName, L"Grafikstil", false, true); }},
        Op{"Ask",
           [](W&) {
               (void)Manager().GetCategoryNames();
               (void)Manager().GetStylePropertyNames(K().fill);
               (void)Manager().CategoryExists(VelString(L"Füllung, mit langem Namen"));
               (void)Manager().UntranslateCategory(L"Umriss, mit langem Namen");
               (void)Manager().TranslateCategory(K().fill);
               (void)Manager().GetDefaultValue(K().fill, K().color);
           }},
        Op{"AskForWhatIsMissing",
           [](W&) {
               try
               {
                   (void)Manager().GetDefaultValue(K().fill, K().note);
               }
               catch (const std::logic_error&)
               {}
               try
               {
                   (void)Manager().GetCategory(K().nest);
               }
               catch (const std::logic_error&)
               {}
           }},
        Op{"AskWithoutFailure",
           [](W&) {
               Manager().SetCurrentVersion(Manager().GetCurrentVersion());
               (void)Manager().CategoryExists(K().fill);
               (void)Manager().GetStyleProperty(K().fill, K().color);
               (void)Manager().GetStyleProperty(K().nest, K().color);
               (void)Manager().GetConversionPolicy(K().fill, K().color);
               (void)Manager().GetStyleSetCategoryNames();
               const auto category = Manager().GetCategory(K().fill);
               (void)category->GetProperties();
               (void)category->GetPropertyNames();
               (void)category->IsPublic();
           },
           Promise::ThrowsNothing},
        Op{"CopyCategory",
           [](W&) {
               const StyleCategory copy(*Manager().GetCategory(K().fill));
               StyleCategory assigned;
               assigned = copy;
           }},
        Op{"FillImportStyleInfo",
           [](W&) {
               Manager().GetImportStyleInfo().nameSet.insert(L"ein langer Name");
               Manager().ClearImportStyleInfo();
           }}),
    OperationName());

} // namespace

} // namespace Styles::Testing
