/// \file
/// Everything a host of the styles engine needs.
#pragma once

#include "Any.h"
#include "PropertyKey.h"
#include "Style.h"
#include "StyleManager.h"
#include "StyleOverrides.h"
#include "StylePresetManager.h"
#include "StyleProperty.h"
#include "StyleSheet.h"
#include "StylesApi.h"
#include "StylesFwd.h"
#include "SubStyle.h"
#include "TextPolicy.h"
#include "ValueValidators.h"
