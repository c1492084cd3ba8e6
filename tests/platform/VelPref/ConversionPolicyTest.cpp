#include "VelPref/ConversionPolicy.h"

#include "support/LoadedModule.h"

#include <gmock/gmock.h>

#include <memory>

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

TEST(BadConversion, IsCaughtByItsTypeWhenAnotherModuleThrowsIt)
{
    const Support::LoadedModule module(STYLES_TEST_MODULES "/SingletonUser.dll");
    ASSERT_TRUE(module);
    const auto throwFromModule = module.Find<void()>("ThrowBadConversion");
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
}
