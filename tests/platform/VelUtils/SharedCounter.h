#pragma once

// A class with singletons that several modules share.

#include "VelUtils/Singleton.h"

#include <atomic>

class SharedCounter
{
public:
    std::atomic<int> count{0};

private:
    template <class T, int N>
    friend class VelUtils::Singleton;

    SharedCounter() = default;
    ~SharedCounter() = default;
};
