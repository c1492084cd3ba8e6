#include "JsonLibrary.h"

#include <boost/json/src.hpp>
