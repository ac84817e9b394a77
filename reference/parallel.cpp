#include "reference/parallel.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "platform/workerthread.h"

namespace ffc::reference {
namespace {

struct SWork {
  const FnItem &fnItem;
  uint32_t nItems;
  std::atomic<uint32_t> nNext{0};

  void Run(uint32_t nWorker)
  {
    for (uint32_t nItem = nNext++; nItem < nItems; nItem = nNext++) {
      fnItem(nItem, nWorker);
    }
  }
};

struct SWorker {
  platform::CWorkerThread thread;
  SWork *pWork = nullptr;
  uint32_t nWorker = 0;

  static void Run(void *pContext)
  {
    auto *pWorker = static_cast<SWorker *>(pContext);
    pWorker->pWork->Run(pWorker->nWorker);
  }
};

} // namespace

void ForEachItem(uint32_t nItems, uint32_t nThreads, const FnItem &fnItem)
{
  SWork stWork{fnItem, nItems};
  std::array<SWorker, MAX_THREADS> aWorkers;
  const uint32_t nWorkers = std::min({nThreads, nItems, MAX_THREADS});
  uint32_t nStarted = 1;
  for (uint32_t n = 1; n < nWorkers; ++n) {
    // One that the system does not start leaves its place to the next, and its work to all others.
    SWorker &worker = aWorkers[nStarted];
    worker.pWork = &stWork;
    worker.nWorker = nStarted;
    nStarted += static_cast<uint32_t>(worker.thread.Start(SWorker::Run, &worker));
  }
  stWork.Run(0);
  for (uint32_t n = 1; n < nStarted; ++n) {
    aWorkers[n].thread.Join();
  }
}

} // namespace ffc::reference
