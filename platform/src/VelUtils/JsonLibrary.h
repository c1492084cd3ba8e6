#pragma once

// The JSON library, of which only headers are installed, as a matter of this one: under a name of our own and hidden,
// so that a host that uses the library itself, in another version, never meets ours.
#define boost vel_private_boost
#define BOOST_USER_CONFIG "boost/config/user.hpp" // quoted, or its name would change with the other

#include <boost/config.hpp>

#undef BOOST_SYMBOL_VISIBLE
#define BOOST_SYMBOL_VISIBLE

#include <boost/json/basic_parser_impl.hpp>

namespace VelUtils::Json
{

namespace Library = boost::json;

/// The code that stands for no error of the library: the events asked to stop.
inline Library::error_code MakeStopCode()
{
    return make_error_code(boost::system::errc::operation_canceled);
}

} // namespace VelUtils::Json
