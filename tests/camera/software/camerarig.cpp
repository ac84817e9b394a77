#include "tests/camera/software/camerarig.h"

#include <gtest/gtest.h>

namespace ffc::test {

camera::SSimulatedCameraOptions SmallOptions(const std::string &strFormat, camera::ECorrectionMode eMode)
{
  camera::SSimulatedCameraOptions stOptions;
  stOptions.strPixelFormat = strFormat;
  stOptions.nWidth = 64;
  stOptions.nHeight = 48;
  stOptions.dFrameRate = 1000.0;
  stOptions.eMode = eMode;
  return stOptions;
}

CCameraRig::CCameraRig(const camera::SSimulatedCameraOptions &stOptions)
{
  auto created = camera::CreateSimulatedCamera(stOptions);
  EXPECT_EQ(created.GetError(), "");
  m_pCamera = std::move(created).GetValue();
  m_pCollector = std::make_unique<ffc::test::CFrameCollector>(*m_pCamera);
}

std::string CCameraRig::GetOutput(const char *pName)
{
  return dynamic_cast<GenApi::IValue *>(m_pCamera->GetOutputNodeMap()->GetNode(pName))->ToString(true).c_str();
}

std::vector<std::string> CCameraRig::GetEntries(const char *pName)
{
  GenApi::NodeList_t listEntries;
  Device<GenApi::IEnumeration>(pName).GetEntries(listEntries);
  std::vector<std::string> listNames;
  for (GenApi::INode *pEntry : listEntries) {
    listNames.emplace_back(dynamic_cast<GenApi::IEnumEntry *>(pEntry)->GetSymbolic().c_str());
  }
  return listNames;
}

std::vector<uint8_t> CCameraRig::ReadRegister()
{
  auto &node = Device<GenApi::IRegister>("FFCValueAll");
  std::vector<uint8_t> listBytes(static_cast<std::size_t>(node.GetLength()));
  node.Get(listBytes.data(), node.GetLength(), true);
  return listBytes;
}

void CCameraRig::WriteRegister(const std::vector<uint8_t> &listBytes)
{
  Device<GenApi::IRegister>("FFCValueAll").Set(listBytes.data(), static_cast<int64_t>(listBytes.size()));
}

void CCameraRig::SaveUserSet(const char *pName)
{
  Set("UserSetSelector", pName);
  Execute("UserSetSave");
}

void CCameraRig::LoadUserSet(const char *pName)
{
  Set("UserSetSelector", pName);
  Execute("UserSetLoad");
}

SKeptFrame CCameraRig::TakeTriggered()
{
  EXPECT_EQ(Get("TriggerMode"), "On");
  EXPECT_EQ(m_pCamera->Start().GetError(), "");
  m_pCollector->Expect(1);
  Execute("TriggerSoftware");
  const auto listFrames = m_pCollector->Collect();
  EXPECT_EQ(listFrames.size(), 1U);
  return listFrames.empty() ? SKeptFrame() : listFrames[0];
}

std::string GetCreationError(const camera::SSimulatedCameraOptions &stOptions)
{
  const auto created = camera::CreateSimulatedCamera(stOptions);
  EXPECT_FALSE(created);
  return created.GetError();
}

} // namespace ffc::test
