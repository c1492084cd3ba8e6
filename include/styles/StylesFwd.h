/// \file
/// The names of the engine's classes, for headers that only name them: next to nothing to compile.
#pragma once

namespace VelPlatform
{

template <class CharT>
class VelStringT;
using VelString = VelStringT<wchar_t>;
using VelStringA = VelStringT<char>;

} // namespace VelPlatform

namespace VelUtils
{

class Any;
class Stream;

template <class T>
class maybe_sorted_span;

namespace Json
{
class Array;
class Object;
class Variant;
} // namespace Json

} // namespace VelUtils

struct WImportStyleInfo;

namespace Styles
{

using VelPlatform::VelString;
using VelUtils::Any;
namespace Json = VelUtils::Json;

class PropertyKey;

class BaseStyleProperty;
class StyleProperty;
class TemporaryStyleProperty;
class StyleSetProperty;
class StyleArrayProperty;

class StyleCategory;
class StyleManager;

class Style;
class IStyleSheetDuplicationContext;
class StyleSheet;

class SubStyle;
class StylePresetManager;

template <class T>
class TextPolicy;
template <class T>
class RangeValidator;
template <class T>
class ChoiceValidator;

} // namespace Styles
