// Paths: taking them from a text and putting them together.

#include "support/SchemaFixture.h"

#include <gmock/gmock.h>

using Styles::MakePath;
using Styles::MakePaths;
using Styles::PropertyKey;
using Styles::PropertyPath;
using Styles::SplitPath;
using Styles::VelString;
using Styles::Testing::Key;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(PropertyPath, SplittingGivesTheKeysBetweenThePoints)
{
    EXPECT_THAT(SplitPath(VelString(L"a.b")), ElementsAre(Key(L"a"), Key(L"b")));
    EXPECT_THAT(SplitPath(VelString(L"character.fill.color")),
                ElementsAre(Key(L"character"), Key(L"fill"), Key(L"color")));
}

TEST(PropertyPath, ATextWithoutAPointGivesOneKey)
{
    EXPECT_THAT(SplitPath(VelString(L"fill")), ElementsAre(Key(L"fill")));
    EXPECT_THAT(SplitPath(VelString()), ElementsAre(PropertyKey::Empty));
}

TEST(PropertyPath, EmptyPiecesAreEmptyKeys)
{
    EXPECT_THAT(SplitPath(VelString(L".a")), ElementsAre(PropertyKey::Empty, Key(L"a")));
    EXPECT_THAT(SplitPath(VelString(L"a.")), ElementsAre(Key(L"a"), PropertyKey::Empty));
    EXPECT_THAT(SplitPath(VelString(L"a..b")), ElementsAre(Key(L"a"), PropertyKey::Empty, Key(L"b")));
    EXPECT_THAT(SplitPath(VelString(L".")), ElementsAre(PropertyKey::Empty, PropertyKey::Empty));
}

TEST(PropertyPath, PiecesAreNeitherTrimmedNorFolded)
{
    EXPECT_THAT(SplitPath(VelString(L" a . B")), ElementsAre(Key(L" a "), Key(L" B")));
    EXPECT_THAT(SplitPath(VelString(L"no such property.*")), ElementsAre(Key(L"no such property"), Key(L"*")));
}

TEST(PropertyPath, OneTwoAndThreeKeysStandInTheirOrder)
{
    const PropertyKey a = Key(L"a"), b = Key(L"b"), c = Key(L"c");
    EXPECT_THAT(MakePath(b), ElementsAre(b));
    EXPECT_THAT(MakePath(b, a), ElementsAre(b, a));
    EXPECT_THAT(MakePath(c, a, b), ElementsAre(c, a, b));
    EXPECT_THAT(MakePath(a, a, a), ElementsAre(a, a, a));
}

TEST(PropertyPath, AKeyGoesBeforeOrBehindAPath)
{
    const PropertyKey a = Key(L"a"), b = Key(L"b"), c = Key(L"c");
    const PropertyPath path{b, c};
    EXPECT_THAT(MakePath(a, path), ElementsAre(a, b, c));
    EXPECT_THAT(MakePath(path, a), ElementsAre(b, c, a));
    EXPECT_THAT(path, ElementsAre(b, c));
}

TEST(PropertyPath, TwoPathsStandOneBehindTheOther)
{
    const PropertyKey a = Key(L"a"), b = Key(L"b"), c = Key(L"c");
    EXPECT_THAT(MakePath(PropertyPath{c, b}, PropertyPath{a, c}), ElementsAre(c, b, a, c));
    const PropertyPath path{a, b};
    EXPECT_THAT(MakePath(path, path), ElementsAre(a, b, a, b));
}

TEST(PropertyPath, AnEmptyPathAddsNothing)
{
    const PropertyKey a = Key(L"a");
    const PropertyPath empty;
    EXPECT_THAT(MakePath(empty, a), ElementsAre(a));
    EXPECT_THAT(MakePath(a, empty), ElementsAre(a));
    EXPECT_THAT(MakePath(empty, PropertyPath{a}), ElementsAre(a));
    EXPECT_THAT(MakePath(PropertyPath{a}, empty), ElementsAre(a));
    EXPECT_THAT(MakePath(empty, empty), IsEmpty());
}

TEST(PropertyPath, ASetBecomesPathsInItsOwnOrder)
{
    const std::set<PropertyKey> keys{Key(L"c"), Key(L"a"), Key(L"b")};
    const std::vector<PropertyPath> paths = MakePaths(keys);
    ASSERT_EQ(paths.size(), 3u);
    auto key = keys.begin();
    for (const PropertyPath& path : paths)
    {
        EXPECT_THAT(path, ElementsAre(*key));
        ++key;
    }
}

TEST(PropertyPath, AVectorBecomesPathsInItsOrderWithItsDuplicates)
{
    const PropertyKey a = Key(L"a"), b = Key(L"b");
    const std::vector<PropertyKey> keys{b, a, b};
    EXPECT_THAT(MakePaths(keys), ElementsAre(ElementsAre(b), ElementsAre(a), ElementsAre(b)));
}

TEST(PropertyPath, NoKeysBecomeNoPaths)
{
    EXPECT_THAT(MakePaths(std::set<PropertyKey>()), IsEmpty());
    EXPECT_THAT(MakePaths(std::vector<PropertyKey>()), IsEmpty());
}
