/// The rows that a benchmark program measures: a workload, a contender who does it, and the operation.
///
/// A program adds its rows before `main`, by an object of namespace scope; `main` is in Rows.cpp. The same rows are
/// timed (by Google Benchmark, whose arguments the program takes), counted in instructions (`--count-instructions`,
/// under callgrind) and run once in a fresh process (`--run-once=<name>`).
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace Rows
{

/// What is measured: one call does the work of a row once.
using Operation = std::function<void()>;

/// Makes the operation, with everything that belongs to it and is not to be measured.
using Preparation = std::function<Operation()>;

/// Who does our part in every workload; the others are peers, or "limit: ..." for the least code that does the work.
inline constexpr const char* Ours = "ours";

/// Adds the row `<workload>/<contender>`, whose operation does a thing `items` times. A contender has no '/' in its
/// name.
void Add(std::string workload, std::string contender, std::size_t items, Preparation prepare);

/// The same, for an operation that uses up what it works on: it is done once for each preparation, and so often as the
/// row is repeated.
void AddOnce(std::string workload, std::string contender, std::size_t items, Preparation prepare);

/// The same as `Add`, for an operation that `threads` threads call at once, on what one preparation has made.
void AddThreaded(std::string workload, std::string contender, std::size_t items, int threads, Preparation prepare);

/// Adds a row whose figure is no time: bytes, blocks, or a ratio of times that `measure` takes itself.
void AddFigure(std::string workload, std::string contender, std::function<double()> measure);

/// Keeps the optimiser from leaving out what gives `value`.
template <class T>
inline void Keep(const T& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

} // namespace Rows
