/// \file
/// One piece of work after the other, on several threads.
#pragma once

#include <cstdint>
#include <functional>

namespace ffc::reference {

constexpr uint32_t MAX_THREADS = 64;

/// \param nItem each number below the count once
/// \param nWorker below the number of threads; no two calls with one number run at a time. Throws nothing.
using FnItem = std::function<void(uint32_t nItem, uint32_t nWorker)>;

/// Works on all items and returns when all are done. Where a thread cannot start, the others do its work.
/// \param nThreads the caller's among them; more than MAX_THREADS count as that, 0 as 1
void ForEachItem(uint32_t nItems, uint32_t nThreads, const FnItem &fnItem);

} // namespace ffc::reference
