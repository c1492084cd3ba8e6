// Writes much to the file that its argument names, and is gone before that is finished, like a process that is killed.

#include "VelUtils/Stream.h"

#include <cstdlib>
#include <string>

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
    {
        return 1;
    }
    VelUtils::Stream stream = VelUtils::FileStream::Create(VelPlatform::ToWide(arguments[1]));
    const std::string bytes(200'000, 'n');
    if (!stream.Write(bytes.data(), bytes.size()))
    {
        return 2;
    }
    std::_Exit(3);
}
