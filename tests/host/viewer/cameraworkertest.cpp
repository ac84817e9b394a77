#include "host/viewer/cameraworker.h"

#include <new>

#include <QTest>

#include <gtest/gtest.h>

using namespace ffc::host;

TEST(CameraWorker, OneThatWasNeverUsedEndsAtOnce)
{
  CCameraWorker worker(nullptr);
  worker.Finish();
}

TEST(CameraWorker, WorkThatRunsOutOfMemoryEndsWithoutAResultAndTheNextIsDone)
{
  CCameraWorker worker(nullptr);
  worker.RunLive([] { throw std::bad_alloc(); });
  worker.Post([]() -> std::function<void()> { throw std::bad_alloc(); });
  bool bDone = false;
  worker.Post([&]() -> std::function<void()> { return [&bDone] { bDone = true; }; });
  EXPECT_TRUE(QTest::qWaitFor([&] { return bDone; }));
}
