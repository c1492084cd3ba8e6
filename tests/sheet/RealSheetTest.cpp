// The styles of a drawing template, where the test data is there: a sheet that people use.

#include <styles/StyleSheet.h>

#include "support/RegistryFixture.h"
#include "support/SchemaFile.h"
#include "support/TemporaryFolder.h"
#include "support/TestSheet.h"

#include <gmock/gmock.h>

#include <VelUtils/Stream.h>

#include <filesystem>
#include <string>

namespace Styles::Testing
{

namespace
{

const std::filesystem::path dataFolder = std::filesystem::path(STYLES_TEST_DATA) / "draw-bpmn";

class RealSheet : public RegistryFixture
{
protected:
    /// Whether the data is there; the sheet has been read then.
    bool Read(TestSheet& sheet) const
    {
        if (!std::filesystem::exists(dataFolder / "schema.json"))
        {
            return false;
        }
        SchemaFile::Register(Support::BytesOf(dataFolder / "schema.json"));
        VelUtils::Stream stream = VelUtils::FileStream::Open(Support::ToText(dataFolder / "sheet.json"));
        EXPECT_TRUE(sheet.Import(stream, false));
        return true;
    }

    /// The number of values of a style and the styles inside it; each is asked for.
    static std::size_t Resolve(const Style& style)
    {
        std::size_t count = 0;
        for (const PropertyKey& key : style.GetCategory()->GetPropertyNames())
        {
            const Any& value = style.GetProperty(key);
            count += !value.IsEmpty();
            if (const Style* substyle = style.GetSubstyle(key, false))
            {
                count += Resolve(*substyle);
            }
            else if (const auto* elements = value.GetIf<std::vector<Style*>>())
            {
                for (const Style* element : *elements)
                {
                    count += Resolve(*element);
                }
            }
        }
        return count;
    }
};

} // namespace

TEST_F(RealSheet, EveryStyleResolves)
{
    TestSheet sheet;
    if (!Read(sheet))
    {
        return;
    }
    EXPECT_EQ(sheet.GetStyles().size(), 100u);
    EXPECT_EQ(sheet.GetVersion(), 3);
    std::size_t heirs = 0;
    for (const Style* style : sheet.GetStyles())
    {
        heirs += style->GetParent() != nullptr;
        EXPECT_GT(Resolve(*style), 0u) << sheet.GetStyleName(style);
    }
    EXPECT_GT(heirs, 0u);
}

TEST_F(RealSheet, ExportedAndImportedItStaysTheSame)
{
    TestSheet sheet;
    if (!Read(sheet))
    {
        return;
    }
    const std::string document = sheet.Write();
    TestSheet again;
    ASSERT_TRUE(again.Read(document));
    EXPECT_EQ(again.Write(), document);
    for (const VelString& name : sheet.GetStyleNames())
    {
        ASSERT_NE(again.GetStyle(name), nullptr);
        EXPECT_EQ(again.GetStyleName(again.GetStyle(name)->GetParent()),
                  sheet.GetStyleName(sheet.GetStyle(name)->GetParent()));
        EXPECT_EQ(again.GetStyle(name)->GetCategoryName(), sheet.GetStyle(name)->GetCategoryName());
    }
}

TEST_F(RealSheet, WithoutItsSchemaNothingIsReadAndNothingFails)
{
    std::string document;
    {
        TestSheet sheet;
        if (!Read(sheet))
        {
            return;
        }
        document = sheet.Write();
    }
    Manager().Reset();
    TestSheet without;
    EXPECT_TRUE(without.Read(document));
    EXPECT_THAT(without.GetStyles(), testing::IsEmpty());
    EXPECT_EQ(without.GetVersion(), 3);
}

} // namespace Styles::Testing
