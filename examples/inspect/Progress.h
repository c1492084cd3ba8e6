/// \file
/// A line that tells how far long work is, for people who wait at a terminal.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace Inspect
{

/// The line. It is written where somebody sees it, and is gone when the work is done.
class Progress
{
public:
    /// \param err shows the line when it is the standard error of the process and leads to a terminal; with anything
    /// else nothing is ever written
    explicit Progress(std::ostream& err);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// Begins a piece of work on so many things. Of work on few things nothing is shown; of work whose steps nobody
    /// counts, only what it is.
    void Begin(const std::string& what, std::size_t count);

    /// One thing is done.
    void Step();

    /// The work is done: takes the line away.
    void End() noexcept;

private:
    void Show(const std::string& text);

    std::ostream* m_err; ///< null for silence
    std::string m_what;
    std::size_t m_count = 0;
    std::size_t m_done = 0;
    std::size_t m_shownWidth = 0;
};

/// A piece of work, from the beginning of this object's life to its end.
class ProgressPhase
{
public:
    /// \param progress null for silence
    ProgressPhase(Progress* progress, const std::string& what, std::size_t count);
    ProgressPhase(const ProgressPhase&) = delete;
    ProgressPhase& operator=(const ProgressPhase&) = delete;
    ~ProgressPhase();

private:
    Progress* m_progress;
};

/// One thing is done. \param progress null for silence
inline void CountStep(Progress* progress)
{
    if (progress != nullptr)
    {
        progress->Step();
    }
}

} // namespace Inspect
