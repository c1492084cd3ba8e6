/// \file
/// The program without its main function.
#pragma once

#include <VelPlatform/String.h>

#include <ostream>
#include <vector>

namespace Inspect
{

/// Does what a command line asks. Answers go to `out`, messages to `err`, both in UTF-8. Never throws.
/// \param arguments without the name of the program
/// \return the status for the shell, see `Status`
int Run(const std::vector<VelPlatform::VelString>& arguments, std::ostream& out, std::ostream& err) noexcept;

} // namespace Inspect
