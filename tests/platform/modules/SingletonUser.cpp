// A second module that uses the singleton of tests/platform/VelUtils/SingletonTest.cpp and throws an exception of the
// platform library.

#include "platform/VelUtils/SharedCounter.h"

#include "VelPref/ConversionPolicy.h"

#if defined(_WIN32)
#    define MODULE_API extern "C" __declspec(dllexport)
#else
#    define MODULE_API extern "C" __attribute__((visibility("default")))
#endif

MODULE_API void* GetCounterOfModule()
{
    return &VelUtils::Singleton<SharedCounter, 0>::GetInstance();
}

MODULE_API void* GetNumberedCounterOfModule()
{
    return &VelUtils::Singleton<SharedCounter, 7>::GetInstance();
}

MODULE_API void ThrowBadConversion()
{
    throw VelPref::Detail::BadConversion("from the module");
}
