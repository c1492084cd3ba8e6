#include "Progress.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

#ifdef _WIN32
#    include <io.h>
#else
#    include <unistd.h>
#endif

namespace Inspect
{

namespace
{

/// Work on fewer things is over before anybody could read of it.
constexpr std::size_t WorthShowing = 5000;

bool IsTerminal()
{
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

} // namespace

Progress::Progress(std::ostream& err) : m_err(&err == &std::cerr && IsTerminal() ? &err : nullptr) {}

Progress::~Progress()
{
    End();
}

void Progress::Begin(const std::string& what, std::size_t count)
{
    End();
    m_what = what;
    m_count = count;
    m_done = 0;
    if (m_err != nullptr && m_count >= WorthShowing)
    {
        Show(m_what + " ...");
    }
}

void Progress::Step()
{
    ++m_done;
    if (m_err == nullptr || m_count < WorthShowing)
    {
        return;
    }
    const std::size_t percent = std::min<std::size_t>(m_done * 100 / m_count, 100);
    if (percent != (m_done - 1) * 100 / m_count)
    {
        Show(m_what + " ... " + std::to_string(percent) + " %");
    }
}

void Progress::Show(const std::string& text)
{
    const std::size_t blanks = m_shownWidth > text.size() ? m_shownWidth - text.size() : 0;
    *m_err << '\r' << text << std::string(blanks, ' ') << std::flush;
    m_shownWidth = text.size() + blanks;
}

void Progress::End() noexcept
{
    if (m_shownWidth == 0)
    {
        return;
    }
    try
    {
        *m_err << '\r' << std::string(m_shownWidth, ' ') << '\r' << std::flush;
    }
    catch (...) // a line that stays is no reason to give up the work
    {}
    m_shownWidth = 0;
}

ProgressPhase::ProgressPhase(Progress* progress, const std::string& what, std::size_t count) : m_progress(progress)
{
    if (m_progress != nullptr)
    {
        m_progress->Begin(what, count);
    }
}

ProgressPhase::~ProgressPhase()
{
    if (m_progress != nullptr)
    {
        m_progress->End();
    }
}

} // namespace Inspect
