#include "Rows.h"

#include <benchmark/benchmark.h>
#if __has_include(<valgrind/callgrind.h>)
#    include <valgrind/callgrind.h>
#else // without valgrind nothing is counted
#    define CALLGRIND_START_INSTRUMENTATION static_cast<void>(0)
#    define CALLGRIND_STOP_INSTRUMENTATION static_cast<void>(0)
#    define CALLGRIND_ZERO_STATS static_cast<void>(0)
#    define CALLGRIND_DUMP_STATS_AT(name) static_cast<void>(name)
#endif

#ifdef __GLIBC__
#    include <malloc.h>
#endif

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace Rows
{

namespace
{

struct Row
{
    std::string name;
    std::size_t items = 1;
    int threads = 1;
    Preparation prepare;
    std::function<double()> figure;
    bool once = false;
};

std::vector<Row>& AllRows()
{
    static std::vector<Row> rows;
    return rows;
}

/// What the threads of one run share.
class SharedOperation
{
public:
    explicit SharedOperation(Preparation prepare) : m_prepare(std::move(prepare)) {}

    Operation* Enter()
    {
        const std::lock_guard guard(m_mutex);
        if (m_users++ == 0)
        {
            m_operation = m_prepare();
        }
        return &m_operation;
    }

    void Leave()
    {
        const std::lock_guard guard(m_mutex);
        if (--m_users == 0)
        {
            m_operation = nullptr;
        }
    }

private:
    Preparation m_prepare;
    std::mutex m_mutex;
    int m_users = 0;
    Operation m_operation;
};

void RegisterTimed(const Row& row)
{
    auto shared = std::make_shared<SharedOperation>(row.prepare);
    const auto run = [shared, items = row.items](benchmark::State& state) {
        Operation& operation = *shared->Enter();
        for ([[maybe_unused]] auto _ : state)
        {
            operation();
        }
        shared->Leave();
        state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(items));
    };
    benchmark::internal::Benchmark* registered = benchmark::RegisterBenchmark(row.name.c_str(), run);
    if (row.once)
    {
        registered->Iterations(1);
    }
    if (row.threads > 1)
    {
        registered->Threads(row.threads)->UseRealTime();
    }
}

void RegisterFigure(const Row& row)
{
    const auto run = [figure = row.figure](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state)
        {
            state.counters["figure"] = figure();
        }
    };
    benchmark::RegisterBenchmark(row.name.c_str(), run)->Iterations(1);
}

void CountInstructions(const Row& row)
{
    if (!row.prepare || row.threads > 1)
    {
        return;
    }
    const Operation operation = row.prepare();
    const std::string trigger = row.name + '=' + std::to_string(row.items); // the macro keeps its address only
    if (!row.once)
    {
        operation(); // so that what is done only the first time is not counted
    }
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    operation();
    CALLGRIND_DUMP_STATS_AT(trigger.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
}

/// So that no repetition pays for pages of memory that the one before gave back; a first run in a process does pay.
void KeepFreedMemory()
{
#ifdef __GLIBC__
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
#endif
}

int RunOnce(std::string_view name)
{
    for (const Row& row : AllRows())
    {
        if (row.name == name && row.prepare)
        {
            const Operation operation = row.prepare();
            const auto start = std::chrono::steady_clock::now();
            operation();
            const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
            std::printf("%.3f\n", taken.count() / static_cast<double>(row.items));
            return 0;
        }
    }
    std::fprintf(stderr, "There is no row '%.*s'.\n", static_cast<int>(name.size()), name.data());
    return 1;
}

} // namespace

void Add(std::string workload, std::string contender, std::size_t items, Preparation prepare)
{
    AllRows().push_back({workload + '/' + contender, items, 1, std::move(prepare), nullptr});
}

void AddOnce(std::string workload, std::string contender, std::size_t items, Preparation prepare)
{
    AllRows().push_back({workload + '/' + contender, items, 1, std::move(prepare), nullptr, true});
}

void AddThreaded(std::string workload, std::string contender, std::size_t items, int threads, Preparation prepare)
{
    AllRows().push_back({workload + '/' + contender, items, threads, std::move(prepare), nullptr});
}

void AddFigure(std::string workload, std::string contender, std::function<double()> measure)
{
    AllRows().push_back({workload + '/' + contender, 1, 1, nullptr, std::move(measure)});
}

} // namespace Rows

int main(int argumentCount, char** arguments)
{
    using namespace std::string_view_literals;
    constexpr std::string_view kRunOnce = "--run-once=";
    if (argumentCount == 2 && std::string_view(arguments[1]).starts_with(kRunOnce))
    {
        return Rows::RunOnce(std::string_view(arguments[1]).substr(kRunOnce.size()));
    }
    if (argumentCount >= 2 && arguments[1] == "--count-instructions"sv)
    {
        // A second argument picks the rows with it in their names.
        const std::string_view part = argumentCount > 2 ? arguments[2] : "";
        for (const Rows::Row& row : Rows::AllRows())
        {
            if (row.name.find(part) != std::string::npos)
            {
                Rows::CountInstructions(row);
            }
        }
        return 0;
    }
    Rows::KeepFreedMemory();
    for (const Rows::Row& row : Rows::AllRows())
    {
        row.prepare ? Rows::RegisterTimed(row) : Rows::RegisterFigure(row);
    }
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments))
    {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
