/// \file
/// Everything a host of the styles engine needs.
///
/// \mainpage
/// A host registers its properties with Styles::StyleManager, sets and reads them in Styles::Style, and keeps, writes
/// and reads its styles in Styles::StyleSheet. The pages in the folder docs tell how it all fits together.
///
/// \namespace Styles
/// The engine: styles, their definitions and categories, sheets and presets.
///
/// \namespace VelUtils
/// What the engine stands on: values, JSON, streams, the string pool, singletons.
///
/// \namespace VelPlatform
/// Strings, and questions about the running process.
///
/// \namespace VelPref
/// What hosts implement to check values and to convert them from and to text.
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
#include "StylesIO.h"
#include "SubStyle.h"
#include "TextPolicy.h"
#include "ValueValidators.h"
