// A module with nothing in it, to be found by its name.

namespace
{

[[maybe_unused]] const int nothing = 0;

} // namespace
