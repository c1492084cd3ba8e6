// The main function of every test program.
//
// The environment variable STYLES_TEST_LOCALE, when it is set, names a locale that is made the locale of the
// process (of C and of C++) before the first test, as a host would: the suite has to pass under a decimal comma.

#include <gmock/gmock.h>

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>
#include <stdexcept>

namespace
{

bool UseLocale(const char* name)
{
    try
    {
        std::locale::global(std::locale(name));
    }
    catch (const std::runtime_error&)
    {
        return false;
    }
    return std::setlocale(LC_ALL, name) != nullptr;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    testing::InitGoogleMock(&argumentCount, arguments);

    const char* locale = std::getenv("STYLES_TEST_LOCALE");
    if (locale != nullptr && !UseLocale(locale))
    {
        std::cerr << "STYLES_TEST_LOCALE names a locale that this system does not have: " << locale << '\n';
        return 2;
    }
    return RUN_ALL_TESTS();
}
