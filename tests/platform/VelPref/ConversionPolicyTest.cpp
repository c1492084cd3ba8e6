#include "VelPref/ConversionPolicy.h"

#include <gmock/gmock.h>

#include <memory>

#if !defined(_WIN32)
#    include <dlfcn.h>
#endif

using VelPref::Detail::BadConversion;

TEST(BadConversion, TellsItsText)
{
    EXPECT_STREQ("no number", BadConversion("no number").what());
    EXPECT_STREQ("bad conversion", BadConversion().what());
}

TEST(BadConversion, IsAStandardExceptionThatCopiesWithoutThrowing)
{
    EXPECT_TRUE((std::is_base_of_v<std::exception, BadConversion>));
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<BadConversion>);
    EXPECT_TRUE(std::is_nothrow_copy_assignable_v<BadConversion>);
    EXPECT_FALSE((std::is_convertible_v<std::string, BadConversion>));
    auto original = std::make_unique<BadConversion>("text");
    const BadConversion copy = *original;
    original.reset();
    EXPECT_STREQ("text", copy.what());
}

TEST(ConversionPolicy, HasAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<VelPref::Detail::IConversionPolicy>);
}

#if !defined(_WIN32)

TEST(BadConversion, IsCaughtByItsTypeWhenAnotherModuleThrowsIt)
{
    void* const module = dlopen(STYLES_TEST_MODULES "/SingletonUser.dll", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(nullptr, module) << dlerror();
    const auto throwFromModule = reinterpret_cast<void (*)()>(dlsym(module, "ThrowBadConversion"));
    ASSERT_NE(nullptr, throwFromModule);
    std::string text;
    try
    {
        throwFromModule();
    }
    catch (const BadConversion& error)
    {
        text = error.what();
    }
    EXPECT_EQ("from the module", text);
    dlclose(module);
}

#endif
