// styles-inspect: a host of the library. README.md tells what it does.

#include "Failure.h"
#include "Program.h"

#include <iostream>

#ifdef _WIN32

#    include <fcntl.h>
#    include <io.h>
#    include <stdio.h>

int wmain(int count, wchar_t** arguments)
{
    _setmode(_fileno(stdout), _O_BINARY); // a document is written as it is
    return Inspect::Run({arguments + (count > 0 ? 1 : 0), arguments + count}, std::cout, std::cerr);
}

#else

int main(int count, char** arguments)
{
    std::vector<VelPlatform::VelString> wide;
    for (int index = 1; index < count; ++index)
    {
        wide.emplace_back();
        if (!VelPlatform::TryToWide(arguments[index], wide.back()))
        {
            std::cerr << "styles-inspect: argument " << index << " is no UTF-8\n";
            return static_cast<int>(Inspect::Status::BadUsage);
        }
    }
    return Inspect::Run(wide, std::cout, std::cerr);
}

#endif
