#include <styles/PropertyKey.h>

#include <VelUtils/StringUtils.h>

namespace Styles
{

namespace
{

template <class Keys>
std::vector<PropertyPath> MakePathsOf(const Keys& keys)
{
    std::vector<PropertyPath> paths;
    paths.reserve(keys.size());
    for (const PropertyKey& key : keys)
    {
        paths.push_back({key});
    }
    return paths;
}

} // namespace

PropertyPath SplitPath(const VelString& text)
{
    const std::vector<VelString> pieces = VelUtils::String::Split(VelPlatform::VelStringView(text), L'.', false, false);
    PropertyPath path;
    path.reserve(pieces.size());
    for (const VelString& piece : pieces)
    {
        path.emplace_back(piece);
    }
    return path;
}

PropertyPath MakePath(const PropertyKey& first)
{
    return {first};
}

PropertyPath MakePath(const PropertyKey& first, const PropertyKey& second)
{
    return {first, second};
}

PropertyPath MakePath(const PropertyKey& first, const PropertyKey& second, const PropertyKey& third)
{
    return {first, second, third};
}

PropertyPath MakePath(const PropertyKey& first, const PropertyPath& rest)
{
    PropertyPath path;
    path.reserve(1 + rest.size());
    path.push_back(first);
    path.insert(path.end(), rest.begin(), rest.end());
    return path;
}

PropertyPath MakePath(const PropertyPath& start, const PropertyKey& last)
{
    PropertyPath path;
    path.reserve(start.size() + 1);
    path.insert(path.end(), start.begin(), start.end());
    path.push_back(last);
    return path;
}

PropertyPath MakePath(const PropertyPath& start, const PropertyPath& rest)
{
    PropertyPath path;
    path.reserve(start.size() + rest.size());
    path.insert(path.end(), start.begin(), start.end());
    path.insert(path.end(), rest.begin(), rest.end());
    return path;
}

std::vector<PropertyPath> MakePaths(const std::set<PropertyKey>& keys)
{
    return MakePathsOf(keys);
}

std::vector<PropertyPath> MakePaths(const std::vector<PropertyKey>& keys)
{
    return MakePathsOf(keys);
}

} // namespace Styles
