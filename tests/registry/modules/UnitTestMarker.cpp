// A module with nothing in it: its name says that the process runs unit tests.

namespace
{

[[maybe_unused]] const int nothing = 0;

} // namespace
