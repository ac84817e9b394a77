// The records that a host passes to the plug-in: frames whose numbers say anything, in buffers of exactly the stated
// size, and messages of any bytes.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include <QTextCodec>

#include "pluginobject/statuscode.h"
#include "tests/fuzz/fuzzedviewer.h"
#include "tests/fuzz/fuzzinput.h"
#include "tests/fuzz/fuzztargets.h"
#include "tests/fuzz/require.h"

namespace {

constexpr int32_t LARGEST_BUFFER = 1 << 14;
constexpr uint8_t UNTOUCHED = 0xA5;
constexpr int32_t RESERVED = 0x1234;
constexpr int MOST_STEPS = 24;

// What a step's byte stands for; the rest are frames. An acquisition takes as long as a hundred frames.
constexpr uint8_t MESSAGE_END = 0x60;
constexpr uint8_t PREVIEW_END = 0x70;
constexpr uint8_t ACQUISITION_END = 0x74;

constexpr int32_t FORMATS[] = {0x01100005, 0x01100011, 0x01080001, 0x01080009, 0x010C0006, 0x01100003,
                               0x0110000D, 0x01100007, 0x0110002F, 0x02180014, 0x01010037, 0};
constexpr int32_t CODES[] = {1, 2, 13, 13, 13, 13, 0, 10, 11, 1001, 1002, 1003, -1};
constexpr int32_t EDGES[] = {0, 1, -1, INT32_MAX, INT32_MIN, 0x10000, 0x8000};

// The numbers of a frame, and the size of its buffer.
struct SFuzzedFrame {
  int32_t nPixelFormat;
  int32_t nWidth;
  int32_t nHeight;
  int32_t nPayloadSize;
};

int32_t TakeNear(CFuzzInput &input, int32_t nUsual)
{
  const auto nKind = input.Take<uint8_t>();
  if (nKind < 0xC0) {
    return nUsual;
  }
  return nKind < 0xE0 ? nUsual + nKind % 7 - 3 : nKind < 0xF8 ? input.Pick(EDGES) : input.Take<int32_t>();
}

SFuzzedFrame TakeFrame(CFuzzInput &input, CFuzzedViewer &viewer)
{
  const auto nFormat = static_cast<int32_t>(viewer.Camera().GetPixelFormat());
  SFuzzedFrame stFrame = {};
  const auto nKind = input.Take<uint8_t>();
  stFrame.nPixelFormat = nKind < 0x80 ? nFormat : nKind < 0xF0 ? input.Pick(FORMATS) : input.Take<int32_t>();
  stFrame.nWidth = TakeNear(input, CFuzzedViewer::WIDTH);
  stFrame.nHeight = TakeNear(input, CFuzzedViewer::HEIGHT);
  stFrame.nPayloadSize = std::min(TakeNear(input, CFuzzedViewer::WIDTH * CFuzzedViewer::HEIGHT * 2), LARGEST_BUFFER);
  return stFrame;
}

PLUGIN_IMAGE_INFO Describe(const SFuzzedFrame &stFrame, CExactBuffer &buffer)
{
  PLUGIN_IMAGE_INFO stImage;
  std::memset(static_cast<void *>(&stImage), 0xEE, sizeof stImage);
  stImage.nPixelFormat = stFrame.nPixelFormat;
  stImage.nWidth = stFrame.nWidth;
  stImage.nHeight = stFrame.nHeight;
  stImage.nPayloadSize = stFrame.nPayloadSize;
  stImage.pBuffer = buffer.GetData();
  return stImage;
}

// One frame, into a buffer of its own or into itself. From any thread.
void Deliver(CFuzzedViewer &viewer, const SFuzzedFrame &stFrame, const CExactBuffer &pixels, uint8_t nFlags)
{
  CExactBuffer source(pixels.GetSize());
  std::copy_n(pixels.GetData(), pixels.GetSize(), source.GetData());
  CExactBuffer destination(pixels.GetSize(), UNTOUCHED);
  PLUGIN_IMAGE_INFO stInput = Describe(stFrame, source);
  PLUGIN_IMAGE_INFO stOutput = Describe(stFrame, (nFlags & 1U) != 0 ? source : destination);
  if ((nFlags & 0xE0U) == 0xE0U) {
    ((nFlags & 2U) != 0 ? stInput : stOutput).pBuffer = nullptr;
  }
  const uint32_t nMode = (nFlags & 0x1CU) == 0x1CU ? nFlags : PLUGIN_PROCESS_MODE_FRAME;
  PLUGIN_PROCESS_RESULT stResult;
  stResult.nReserved = RESERVED;
  const int32_t nStatus = viewer.Plugin().ProcessImage(&stInput, &stOutput, nMode, &stResult);
  Require(nStatus == PLUGIN_STATUS_SUCCESS || nStatus == PLUGIN_STATUS_INVALID_PARAM, "one of two statuses");
  Require(stResult.nReserved == RESERVED && stResult.bCorrected <= 1, "only the flag is written");
  if (stResult.bCorrected == 1) {
    Require(nStatus == PLUGIN_STATUS_SUCCESS && stFrame.nWidth == CFuzzedViewer::WIDTH &&
              stFrame.nHeight == CFuzzedViewer::HEIGHT,
            "only frames of the kept size are corrected");
  } else {
    const bool bSame = std::equal(pixels.GetData(), pixels.GetData() + pixels.GetSize(), source.GetData());
    Require(bSame && destination.IsFilledWith(UNTOUCHED), "nothing is written to a frame that is not corrected");
  }
}

CExactBuffer TakePixels(CFuzzInput &input, const SFuzzedFrame &stFrame)
{
  return input.TakeBuffer(static_cast<std::size_t>(std::max(stFrame.nPayloadSize, 0)));
}

void DeliverOne(CFuzzInput &input, CFuzzedViewer &viewer)
{
  const SFuzzedFrame stFrame = TakeFrame(input, viewer);
  const auto nFlags = input.Take<uint8_t>();
  Deliver(viewer, stFrame, TakePixels(input, stFrame), nFlags);
}

// A title is what the host wrote, in its code page.
void SendMessage(CFuzzInput &input, CFuzzedViewer &viewer)
{
  QTextCodec *const pCodec = QTextCodec::codecForLocale();
  if (input.TakeBool()) {
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB2312"));
  }
  const int32_t nCode = input.TakeBool() ? input.Pick(CODES) : input.Take<int32_t>();
  std::vector<uint8_t> listText = input.TakeBytes(input.Take<uint8_t>());
  listText.push_back(0);
  CExactBuffer text(listText.size());
  std::copy(listText.begin(), listText.end(), text.GetData());
  const auto *const pText = reinterpret_cast<const char *>(text.GetData());
  // What else the record says is nobody's business, pointers included.
  PLUGIN_MSG stMessage;
  std::memset(static_cast<void *>(&stMessage), 0xEE, sizeof stMessage);
  stMessage.nMsgCode = nCode;
  stMessage.pText = input.TakeBool() ? pText : nullptr;
  const QString strBefore = viewer.GetTitle();
  viewer.Plugin().SlotProcessDemoMsg(stMessage);
  const bool bNamed = nCode == PLUGIN_MSG_DEVICE_NAME && stMessage.pText != nullptr;
  const QString strExpected =
    QStringLiteral("Flat Field Correction Plugin  ") + QString::fromLocal8Bit(reinterpret_cast<const char *>(pText));
  QTextCodec::setCodecForLocale(pCodec);
  Require(viewer.GetTitle() == (bNamed ? strExpected : strBefore), "the title is what the host wrote");
  Require(viewer.Plugin().IsDialogVisible() != viewer.Plugin().IsDialogHidden(), "a dialog is visible or hidden");
}

// An acquisition that is handed hostile frames, with a good one after each so that it comes to an end.
void Acquire(CFuzzInput &input, CFuzzedViewer &viewer)
{
  struct SDelivery {
    SFuzzedFrame stFrame;
    CExactBuffer pixels;
    uint8_t nFlags;
  };
  std::vector<SDelivery> listDeliveries;
  const bool bDark = input.TakeBool();
  const SFuzzedFrame stGood = {static_cast<int32_t>(viewer.Camera().GetPixelFormat()), CFuzzedViewer::WIDTH,
                               CFuzzedViewer::HEIGHT, CFuzzedViewer::WIDTH * CFuzzedViewer::HEIGHT * 2};
  for (int i = 0; i < 4; ++i) {
    const SFuzzedFrame stFrame = TakeFrame(input, viewer);
    const auto nFlags = input.Take<uint8_t>();
    listDeliveries.push_back({stFrame, TakePixels(input, stFrame), nFlags});
    listDeliveries.push_back({stGood, TakePixels(input, stGood), 0});
  }
  std::atomic<bool> bStop{false};
  std::thread frames([&] {
    for (std::size_t i = 0; !bStop; i = (i + 1) % listDeliveries.size()) {
      const SDelivery &stDelivery = listDeliveries[i];
      Deliver(viewer, stDelivery.stFrame, stDelivery.pixels, stDelivery.nFlags);
      std::this_thread::yield();
    }
  });
  viewer.Click(bDark ? "AcquisitionDarkFrame_Button" : "AcquisitionBrightFrame_Button");
  bStop = true;
  frames.join();
}

} // namespace

void FuzzPluginRecords(const uint8_t *pData, std::size_t nSize)
{
  CFuzzInput input(pData, nSize);
  CFuzzedViewer &viewer = CFuzzedViewer::Get(input.TakeBool());
  viewer.StartPreview();
  bool bAcquired = false;
  for (int nStep = 0; nStep < MOST_STEPS && input.HasMore(); ++nStep) {
    const auto nStepKind = input.Take<uint8_t>();
    if (nStepKind < MESSAGE_END) {
      SendMessage(input, viewer);
    } else if (nStepKind < PREVIEW_END) {
      viewer.StartPreview();
    } else if (nStepKind < ACQUISITION_END && !bAcquired) {
      Acquire(input, viewer);
      bAcquired = true;
    } else {
      DeliverOne(input, viewer);
    }
  }
  QCoreApplication::processEvents();
}
