// The order of the operations of a correction process in the virtual table, as the Itanium C++ ABI keeps it in
// a pointer to a member function.
#include <cstring>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"

namespace {

// QObject's own: metaObject, qt_metacast, qt_metacall, two entries of the destructor, event, eventFilter,
// timerEvent, childEvent, customEvent, connectNotify, disconnectNotify.
constexpr std::size_t QOBJECT_ENTRIES = 12;

// The place of an operation, counted from 1 after QObject's.
template <class TOperation>
std::size_t GetPlace(TOperation fnOperation)
{
  std::size_t nPointer = 0;
  static_assert(sizeof fnOperation >= sizeof nPointer);
  std::memcpy(&nPointer, &fnOperation, sizeof nPointer);
  return (nPointer - 1) / sizeof(void *) - QOBJECT_ENTRIES + 1;
}

} // namespace

TEST(ProcessOrder, IsTheOneThatTheDialogCallsBy)
{
#ifdef _MSC_VER
  GTEST_SKIP() << "this compiler's pointers to members tell no place";
#endif
  using Process = IShadingCorrectionProcess;
  const std::size_t anPlaces[] = {
    GetPlace(&Process::InitProcess),
    GetPlace(&Process::PrepareDeviceParam),
    GetPlace(&Process::RestoreDeviceParam),
    GetPlace(&Process::AcquireDarkImage),
    GetPlace(&Process::AcquireBrightImage),
    GetPlace(&Process::ExecuteCorrection),
    GetPlace(&Process::SetFrameCount),
    GetPlace(&Process::SetExpectGray),
    GetPlace(&Process::LoadFromFlash),
    GetPlace(&Process::SaveToFlash),
    GetPlace(&Process::LoadFromFile),
    GetPlace(&Process::SaveToFile),
    GetPlace(&Process::ReceiveImage),
    GetPlace(&Process::SetImageReady),
    GetPlace(&Process::WaitImageRequest),
    GetPlace(&Process::GetCorrectionInfo),
    GetPlace(&Process::GetImageMaxGray),
    GetPlace(&Process::GetImageGrayDiff),
    GetPlace(&Process::IsBlackLevelDefault),
    GetPlace(&Process::CorrectImage),
    GetPlace(&Process::IsPixelFormatSupported),
    GetPlace(&Process::SetStopFlag),
    GetPlace(&Process::IsColorCamera),
  };
  std::size_t nExpected = 0;
  for (const std::size_t nPlace : anPlaces) {
    EXPECT_EQ(++nExpected, nPlace);
  }
}
