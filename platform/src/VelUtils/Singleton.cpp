#include "VelUtils/Singleton.h"

#include <algorithm>
#include <vector>

namespace VelUtils
{

namespace
{

/// A module that uses a record, with the type as that module spells it: a type's name lives in a module, so the one
/// of a module that is gone must not be looked at again.
struct User
{
    std::type_index type;
    SingletonLibrary::ResetCallback* reset;
};

struct Entry
{
    std::unique_ptr<SingletonRecord> record;
    std::vector<User> users;
};

struct Table
{
    std::mutex lock;
    std::vector<Entry> entries;
};

Table& GetTable()
{
    static Table& table = *new Table;
    return table;
}

bool Uses(const Entry& entry, const SingletonLibrary::ResetCallback* reset)
{
    return std::any_of(entry.users.begin(), entry.users.end(), [&](const User& user) { return user.reset == reset; });
}

} // namespace

SingletonRecord* SingletonLibrary::GetEntryForType(std::type_index type,
                                                   Delegate<std::unique_ptr<SingletonRecord>()> makeRecord, bool create,
                                                   ResetCallback* reset)
{
    Table& table = GetTable();
    const std::lock_guard guard(table.lock);
    for (Entry& entry : table.entries)
    {
        const auto isType = [&](const User& user) { return user.type == type; };
        if (std::any_of(entry.users.begin(), entry.users.end(), isType))
        {
            if (!Uses(entry, reset))
            {
                entry.users.push_back({type, reset});
            }
            return entry.record.get();
        }
    }
    if (!create)
    {
        return nullptr;
    }
    Entry made;
    made.record = makeRecord();
    made.users.push_back({type, reset});
    table.entries.push_back(std::move(made));
    return table.entries.back().record.get();
}

void SingletonLibrary::NotifySingletonModuleUnloaded(ResetCallback* reset)
{
    {
        Table& table = GetTable();
        const std::lock_guard guard(table.lock);
        const auto uses = [&](const Entry& entry) { return Uses(entry, reset); };
        if (std::none_of(table.entries.begin(), table.entries.end(), uses))
        {
            return;
        }
    }
    // Without the lock: the callback is the module's own code.
    if (*reset)
    {
        (*reset)();
    }
    RemoveCallback(reset);
}

void SingletonLibrary::RemoveCallback(ResetCallback* reset) noexcept
{
    Table& table = GetTable();
    const std::lock_guard guard(table.lock);
    for (Entry& entry : table.entries)
    {
        std::erase_if(entry.users, [&](const User& user) { return user.reset == reset; });
    }
    std::erase_if(table.entries, [](const Entry& entry) { return entry.users.empty(); });
}

} // namespace VelUtils
