// Asks a category for a property that it does not have, and answers how many reports that makes.
//
// Arguments, done in order: "miss" asks; "load" loads the module UnitTestMarker.dll.

#include <styles/StyleManager.h>

#include "support/LoadedModule.h"

#include <VelUtils/LogMessage.h>

#include <string>
#include <vector>

int main(int argumentCount, char** arguments)
{
    std::vector<Support::LoadedModule> modules;
    int reports = 0;
    VelUtils::SetLogSink([&reports](const VelPlatform::VelString&) { ++reports; });
    const Styles::PropertyKey name(VelPlatform::VelString(L"missing"));
    const Styles::StyleCategory category(name, VelPlatform::VelString(L"Category"), true);
    for (int index = 1; index < argumentCount; ++index)
    {
        if (arguments[index] == std::string("load"))
        {
            modules.emplace_back(STYLES_TEST_MODULES "/UnitTestMarker.dll");
            if (!modules.back())
            {
                return 100;
            }
        }
        else if (category.GetStyleProperty(name) != nullptr)
        {
            return 101;
        }
    }
    VelUtils::SetLogSink({});
    return reports;
}
