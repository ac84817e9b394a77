/// \file
/// Loading coefficient files into cameras that correct themselves: whatever is loaded, the camera gets a whole image of
/// its register's length or keeps what it has, and so does the process with its record.
#pragma once

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "pluginobject/statuscode.h"
#include "tests/fuzz/fuzzedfile.h"
#include "tests/fuzz/require.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/support/correctingcamera.h"

constexpr std::size_t RECORD_SIZE = 24;
/// Where the record has the size of the image.
constexpr std::size_t SIZE_WORD = 16;
constexpr int64_t LARGEST_FILE = 1 << 16;
/// More than any record can name.
constexpr int64_t BEYOND_RECORDS = int64_t{1} << 33;

inline void ExchangePairs(uint8_t *pBytes)
{
  for (std::size_t i = 0; i < RECORD_SIZE; i += 2) {
    std::swap(pBytes[i], pBytes[i + 1]);
  }
}

/// A camera that says what it likes about the size of its coefficients and the length of their register.
class CLyingCamera {
public:
  explicit CLyingCamera(ffc::test::ECoefficients eCoefficients) : m_camera("Mono8", 64, 64, {}, eCoefficients)
  {
    m_camera.Integer("FFCCoefficientsSize").OnRead([this] { return m_nSize; });
    m_camera.Device().Find<ffc::genapi::CSoftwareRegister>("FFCValueAll")->Length([this] { return m_nLength; });
  }

  ffc::test::CCorrectingCamera &Get() { return m_camera; }
  void Reset(int64_t nSize)
  {
    m_camera.Correction().SetWritten({});
    m_camera.Enumeration("FlatFieldCorrection").Select("Off");
    m_nSize = nSize;
    m_nLength = nSize;
  }

  int64_t m_nSize = 0;
  int64_t m_nLength = 0;

private:
  ffc::test::CCorrectingCamera m_camera;
};

/// Sizes that a process would take memory for are kept small.
inline int64_t TakeSize(CFuzzInput &input)
{
  const int64_t nSize = input.TakeSide(400);
  return nSize > LARGEST_FILE && nSize < BEYOND_RECORDS ? nSize % LARGEST_FILE : nSize;
}

/// A file of about the size that the camera says, with a record of its own at the end.
inline CExactBuffer TakeFile(CFuzzInput &input, int64_t nSize, bool bExchanged)
{
  const bool bHeld = nSize >= 0 && nSize <= LARGEST_FILE;
  CExactBuffer record = input.TakeBuffer(RECORD_SIZE);
  if (input.TakeBool()) {
    const auto nWord = static_cast<uint32_t>(nSize);
    std::memcpy(record.GetData() + SIZE_WORD, &nWord, sizeof nWord);
    if (bExchanged) {
      ExchangePairs(record.GetData());
    }
  }
  const std::size_t nFitting = bHeld ? static_cast<std::size_t>(nSize) : 0;
  CExactBuffer content = input.TakeBuffer(CFuzzedFile::TakeSizeAround(input, nFitting));
  const std::size_t nRecordBytes = std::min(RECORD_SIZE, content.GetSize());
  std::copy_n(record.GetData() + (RECORD_SIZE - nRecordBytes), nRecordBytes,
              content.GetData() + (content.GetSize() - nRecordBytes));
  return content;
}

/// What the camera must have after a file was taken.
inline std::vector<uint8_t> GetExpected(const CExactBuffer &content, std::size_t nSize, bool bExchanged)
{
  std::vector<uint8_t> listExpected(content.GetData(), content.GetData() + nSize);
  if (bExchanged) {
    ExchangePairs(listExpected.data() + (nSize - RECORD_SIZE));
  }
  return listExpected;
}

inline bool IsRecord(const FFCInfo &stInfo, const uint8_t *pRecord)
{
  return std::memcmp(&stInfo, pRecord, RECORD_SIZE) == 0;
}

/// TProcess is a process that is made from the camera's features alone.
template <class TProcess>
class CDeviceFileRun {
public:
  CDeviceFileRun(CFuzzInput &input, CLyingCamera &camera, bool bExchanged)
    : m_input(input), m_camera(camera), m_bExchanged(bExchanged), m_nSize(Prepare(input, camera)),
      m_process(ffc::pluginobject::CFeatureAccess(&camera.Get().Device())),
      m_chooser(ffc::test::InstallChooser(m_process))
  {
    // One that fails leaves a process that loads nothing.
    (void)m_process.InitProcess();
  }

  void Load()
  {
    if (m_input.TakeBool()) {
      m_camera.m_nLength = TakeSize(m_input);
      m_camera.m_nSize = m_input.TakeBool() ? m_camera.m_nLength : TakeSize(m_input);
    }
    const CExactBuffer content = TakeFile(m_input, m_nSize, m_bExchanged);
    CFuzzedFile::Write(content);
    m_chooser.Choose(CFuzzedFile::TakeName(m_input));
    const std::vector<uint8_t> listBefore = m_camera.Get().Correction().GetWritten();
    const FFCInfo stBefore = m_process.GetCorrectionInfo();
    const int32_t nStatus = m_process.LoadFromFile();
    const std::vector<uint8_t> listAfter = m_camera.Get().Correction().GetWritten();
    const FFCInfo stAfter = m_process.GetCorrectionInfo();
    if (nStatus == PLUGIN_STATUS_SUCCESS) {
      Require(listAfter.size() >= RECORD_SIZE && static_cast<int64_t>(listAfter.size()) == m_camera.m_nLength &&
                listAfter.size() <= content.GetSize(),
              "the camera gets a whole image from the file");
      Require(listAfter == GetExpected(content, listAfter.size(), m_bExchanged), "the image is the file's");
      Require(IsRecord(stAfter, listAfter.data() + (listAfter.size() - RECORD_SIZE)), "the record is the image's");
      Require(m_camera.Get().Enumeration("FlatFieldCorrection").PeekSymbolic() == "On", "the camera corrects");
    } else {
      Require(nStatus == PLUGIN_STATUS_SILENT || nStatus == PLUGIN_STATUS_OPEN_FILE_ERROR ||
                nStatus == PLUGIN_STATUS_READ_FILE_ERROR || nStatus == PLUGIN_STATUS_ROI_MISMATCH ||
                nStatus == PLUGIN_STATUS_INVALID_PARAM,
              "a file that is refused has a reason");
      Require(listAfter == listBefore && std::memcmp(&stBefore, &stAfter, sizeof stBefore) == 0,
              "what is in force stays when a load fails");
    }
  }

private:
  static int64_t Prepare(CFuzzInput &input, CLyingCamera &camera)
  {
    camera.Reset(TakeSize(input));
    return camera.m_nSize;
  }

  CFuzzInput &m_input;
  CLyingCamera &m_camera;
  const bool m_bExchanged;
  const int64_t m_nSize; // when the process was initialised
  TProcess m_process;
  ffc::test::CScriptedChooser &m_chooser;
};
