#pragma once

#include <clocale>
#include <locale.h>
#if defined(__APPLE__)
#    include <xlocale.h>
#elif defined(_WIN32)
#    include <string>
#endif

namespace VelUtils
{

/// While one lives, the functions of the C library read and write numbers in this thread as in the "C" locale,
/// whatever the host has set for its own.
class NumericLocale
{
public:
    NumericLocale(const NumericLocale&) = delete;
    NumericLocale& operator=(const NumericLocale&) = delete;

#if defined(_WIN32)
    NumericLocale()
        : m_perThread(_configthreadlocale(_ENABLE_PER_THREAD_LOCALE)), m_before(setlocale(LC_NUMERIC, nullptr))
    {
        setlocale(LC_NUMERIC, "C");
    }
    ~NumericLocale()
    {
        setlocale(LC_NUMERIC, m_before.c_str());
        _configthreadlocale(m_perThread);
    }

private:
    int m_perThread;
    std::string m_before;
#else
    NumericLocale() noexcept
        : m_plain(newlocale(LC_ALL_MASK, "C", nullptr)), m_before(m_plain ? uselocale(m_plain) : nullptr)
    {}
    ~NumericLocale()
    {
        if (m_plain)
        {
            uselocale(m_before);
            freelocale(m_plain);
        }
    }

private:
    locale_t m_plain;
    locale_t m_before;
#endif
};

} // namespace VelUtils
