#include <string>
#include <vector>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "camera/software/selfcorrection/flashfile.h"
#include "tests/camera/software/camerarig.h"
#include "tests/support/fullvolume.h"

using ffc::camera::ECorrectionMode;
using ffc::camera::ReadFlashFile;
using ffc::camera::SCoefficients;
using ffc::camera::SFlashContent;
using ffc::camera::SSimulatedCameraOptions;
using ffc::camera::WriteFlashFile;
using ffc::test::CCameraRig;
using ffc::test::CFullVolume;
using ffc::test::CPlainUser;
using ffc::test::GetCreationError;
using ffc::test::SmallOptions;

namespace {

class CameraFlash : public testing::Test {
protected:
  CameraFlash()
  {
    m_stOptions = SmallOptions("Mono12", ECorrectionMode::FlatField);
    m_stOptions.strFlashFile = m_dir.filePath("flash").toStdString();
  }

  QString GetPath() const { return QString::fromStdString(m_stOptions.strFlashFile); }
  QByteArray ReadFile() const
  {
    QFile file(GetPath());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  void WriteFile(const QByteArray &byteContent) const
  {
    QFile file(GetPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(byteContent), byteContent.size());
  }
  // A camera that saved all that can be saved, and is gone.
  void FillFlash() const
  {
    CCameraRig rig(m_stOptions);
    rig.WriteRegister(std::vector<uint8_t>(rig.ReadRegister().size(), 3));
    rig.Execute("FFCFlashSave");
    rig.Set("FlatFieldCorrection", "On");
    rig.Set("Gain", "6");
    rig.SaveUserSet("UserSet0");
    rig.Set("UserSetDefault", "UserSet0");
  }
  void ExpectError(const std::string &strPart) const
  {
    const std::string strError = GetCreationError(m_stOptions);
    EXPECT_NE(strError.find(strPart), std::string::npos) << strError;
    EXPECT_NE(strError.find(m_stOptions.strFlashFile), std::string::npos) << strError;
  }

  QTemporaryDir m_dir;
  SSimulatedCameraOptions m_stOptions;
};

// What the camera that the tests use has in its flash; so that a test can put there what no camera would.
constexpr char CAMERA[] = "flat field, Mono, 64 x 48";

} // namespace

TEST_F(CameraFlash, AFileIsMadeWhenSomethingIsSaved)
{
  CCameraRig rig(m_stOptions);
  EXPECT_FALSE(QFile::exists(GetPath()));
  rig.SaveUserSet("UserSet0");
  EXPECT_TRUE(QFile::exists(GetPath()));
  EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files).size(), 1);
}

TEST_F(CameraFlash, ANewCameraGoesOnWithWhatWasSaved)
{
  FillFlash();
  CCameraRig rig(m_stOptions);
  EXPECT_EQ(rig.Get("UserSetDefault"), "UserSet0");
  EXPECT_EQ(rig.Get("Gain"), "6") << "the set to start with is loaded";
  EXPECT_EQ(rig.Get("FlatFieldCorrection"), "On");
  EXPECT_EQ(rig.Get("PixelFormat"), "Mono12");
  EXPECT_EQ(rig.ReadRegister(), std::vector<uint8_t>(rig.ReadRegister().size(), 3)) << "as are the coefficients";
}

TEST_F(CameraFlash, EachThingSurvivesAloneAndAtOnce)
{
  CCameraRig(m_stOptions).Set("UserSetDefault", "UserSet0");
  {
    CCameraRig rig(m_stOptions);
    EXPECT_EQ(rig.Get("UserSetDefault"), "UserSet0");
    EXPECT_EQ(rig.Get("PixelFormat"), "Mono8") << "of the factory's, which the set still is";
    rig.Set("UserSetDefault", "Default");
    rig.Set("Gain", "12");
    rig.SaveUserSet("UserSet0");
  }
  CCameraRig rig(m_stOptions);
  EXPECT_EQ(rig.Get("Gain"), "0") << "starts with the default set";
  EXPECT_EQ(rig.Get("PixelFormat"), "Mono12") << "and the format that was asked for";
  rig.LoadUserSet("UserSet0");
  EXPECT_EQ(rig.Get("Gain"), "12");
  EXPECT_THROW(rig.Execute("FFCFlashLoad"), GenICam::RuntimeException);
}

TEST_F(CameraFlash, WithoutAFileNothingSurvives)
{
  m_stOptions.strFlashFile.clear();
  FillFlash();
  CCameraRig rig(m_stOptions);
  EXPECT_EQ(rig.Get("UserSetDefault"), "Default");
  EXPECT_EQ(rig.Get("Gain"), "0");
  EXPECT_THROW(rig.Execute("FFCFlashLoad"), GenICam::RuntimeException);
}

TEST_F(CameraFlash, LoadingBringsBackTheSavedCoefficients)
{
  for (const bool bFile : {false, true}) {
    auto stOptions = m_stOptions;
    stOptions.strFlashFile = bFile ? stOptions.strFlashFile : std::string();
    CCameraRig rig(stOptions);
    const std::size_t nSize = rig.ReadRegister().size();
    EXPECT_THROW(rig.Execute("FFCFlashLoad"), GenICam::RuntimeException) << "there are none";
    EXPECT_THROW(rig.Execute("FFCFlashSave"), GenICam::RuntimeException) << "there is nothing to save";
    rig.WriteRegister(std::vector<uint8_t>(nSize, 1));
    rig.Execute("FFCFlashSave");
    rig.WriteRegister(std::vector<uint8_t>(nSize, 2));
    rig.Execute("FFCFlashLoad");
    EXPECT_EQ(rig.ReadRegister(), std::vector<uint8_t>(nSize, 1));
  }
}

TEST_F(CameraFlash, CoefficientsOfAnotherRegionAreNotLoaded)
{
  CCameraRig rig(m_stOptions);
  rig.WriteRegister(std::vector<uint8_t>(rig.ReadRegister().size(), 1));
  rig.Execute("FFCFlashSave");
  rig.Set("Width", "32");
  const std::vector<uint8_t> listOther(rig.ReadRegister().size(), 2);
  rig.WriteRegister(listOther);
  EXPECT_THROW(rig.Execute("FFCFlashLoad"), GenICam::RuntimeException);
  EXPECT_EQ(rig.ReadRegister(), listOther) << "nothing has changed";
  rig.Set("FFCBlockSize", "BlockSize_256");
  EXPECT_THROW(rig.Execute("FFCFlashSave"), GenICam::RuntimeException) << "none are held for these blocks";
  rig.Set("Width", "64");
  rig.Set("FFCBlockSize", "BlockSize_1024");
  rig.Execute("FFCFlashLoad");
  EXPECT_EQ(rig.ReadRegister(), std::vector<uint8_t>(rig.ReadRegister().size(), 1));
}

TEST_F(CameraFlash, EveryWrongByteAndEveryMissingEndIsNoticed)
{
  FillFlash();
  const QByteArray byteGood = ReadFile();
  ASSERT_EQ(ReadFlashFile(m_stOptions.strFlashFile, CAMERA).GetError(), "");
  for (int nAt = 0; nAt < byteGood.size(); ++nAt) {
    QByteArray byteBad = byteGood;
    byteBad[nAt] = static_cast<char>(byteBad[nAt] ^ 1);
    WriteFile(byteBad);
    ASSERT_FALSE(ReadFlashFile(m_stOptions.strFlashFile, CAMERA)) << nAt;
    WriteFile(byteGood.left(nAt));
    ASSERT_FALSE(ReadFlashFile(m_stOptions.strFlashFile, CAMERA)) << nAt;
  }
  WriteFile(byteGood + '\0');
  ExpectError("is damaged");
  WriteFile(byteGood);
  CCameraRig rig(m_stOptions);
}

TEST_F(CameraFlash, EachKindOfBadFileHasItsMessage)
{
  FillFlash();
  const QByteArray byteGood = ReadFile();
  WriteFile({});
  ExpectError("is not the flash of a simulated camera");
  WriteFile("some text that has nothing to do with cameras");
  ExpectError("is not the flash of a simulated camera");
  WriteFile(byteGood.left(byteGood.size() - 1));
  ExpectError("is damaged");
  QByteArray byteLater = byteGood;
  byteLater[12] = 9;
  WriteFile(byteLater);
  ExpectError("version");
  ASSERT_TRUE(QFile::resize(GetPath(), 20 << 20));
  ExpectError("is not the flash of a simulated camera");
  ASSERT_TRUE(QFile::remove(GetPath()));
  ASSERT_TRUE(QDir().mkdir(GetPath()));
  ExpectError("is no file");
}

TEST_F(CameraFlash, AFileThatMayNotBeReadIsAnError)
{
  FillFlash();
  ASSERT_TRUE(QFile::setPermissions(GetPath(), QFile::WriteOwner));
  const CPlainUser user(m_dir.path().toStdString());
  if (!user.IsPlain()) {
    GTEST_SKIP() << "this user may read everything";
  }
  ExpectError("cannot be read");
}

TEST_F(CameraFlash, BelongsToOneKindOfCamera)
{
  FillFlash();
  const SSimulatedCameraOptions stGood = m_stOptions;
  m_stOptions.eMode = ECorrectionMode::Vignetting;
  ExpectError("another camera");
  m_stOptions = stGood;
  m_stOptions.strPixelFormat = "BayerRG8";
  ExpectError("another camera");
  m_stOptions = stGood;
  m_stOptions.nHeight = 64;
  ExpectError("another camera (flat field, Mono, 64 x 48, not flat field, Mono, 64 x 64)");
  m_stOptions = stGood;
  m_stOptions.strPixelFormat = "Mono16";
  EXPECT_EQ(CCameraRig(m_stOptions).Get("PixelFormat"), "Mono12") << "the set to start with decides";
}

TEST_F(CameraFlash, ContentThatDoesNotFitTheCameraIsAnError)
{
  FillFlash();
  const auto content = ReadFlashFile(m_stOptions.strFlashFile, CAMERA);
  ASSERT_TRUE(content) << content.GetError();
  const SFlashContent &stGood = content.GetValue();
  const auto expectError = [&](auto fnChange, const char *pPart) {
    SFlashContent stBad = stGood;
    fnChange(stBad);
    ASSERT_EQ(WriteFlashFile(m_stOptions.strFlashFile, CAMERA, stBad).GetError(), "");
    const std::string strError = GetCreationError(m_stOptions);
    EXPECT_NE(strError.find(pPart), std::string::npos) << strError;
  };
  expectError([](SFlashContent &st) { st.mapUserSets["UserSet0"]["Width"] = int64_t{1000}; }, "UserSet0");
  expectError([](SFlashContent &st) { st.mapUserSets["UserSet0"].erase("Gain"); }, "UserSet0");
  expectError([](SFlashContent &st) { st.mapUserSets["UserSet0"]["Gain"] = int64_t{1}; }, "UserSet0");
  expectError([](SFlashContent &st) { st.strStartSet = "UserSet9"; }, "UserSet9");
  const auto changeCoefficients = [](SFlashContent &st, auto fnChange) {
    SCoefficients stCoefficients = *st.pCoefficients;
    fnChange(stCoefficients);
    st.pCoefficients = std::make_shared<const SCoefficients>(stCoefficients);
  };
  expectError(
    [&](SFlashContent &st) { changeCoefficients(st, [](SCoefficients &stBad) { stBad.listRegister.pop_back(); }); },
    "is damaged");
  expectError(
    [&](SFlashContent &st) { changeCoefficients(st, [](SCoefficients &stBad) { stBad.stLayout.nBlockSide = 0; }); },
    "is damaged");
  ASSERT_EQ(WriteFlashFile(m_stOptions.strFlashFile, CAMERA, stGood).GetError(), "");
  EXPECT_EQ(CCameraRig(m_stOptions).Get("Gain"), "6");
}

TEST_F(CameraFlash, AFailedWriteThrowsAndChangesNothing)
{
  FillFlash();
  const QByteArray byteGood = ReadFile();
  CCameraRig rig(m_stOptions);
  const std::size_t nSize = rig.ReadRegister().size();
  rig.WriteRegister(std::vector<uint8_t>(nSize, 9));
  rig.Set("Gain", "20");
  {
    const CFullVolume fullVolume(50);
    EXPECT_THROW(rig.Execute("FFCFlashSave"), GenICam::RuntimeException);
    EXPECT_THROW(rig.SaveUserSet("UserSet0"), GenICam::RuntimeException);
    EXPECT_THROW(rig.Set("UserSetDefault", "Default"), GenICam::RuntimeException);
  }
  EXPECT_EQ(ReadFile(), byteGood);
  EXPECT_EQ(rig.Get("UserSetDefault"), "UserSet0");
  rig.LoadUserSet("UserSet0");
  EXPECT_EQ(rig.Get("Gain"), "6");
  rig.Execute("FFCFlashLoad");
  EXPECT_EQ(rig.ReadRegister(), std::vector<uint8_t>(nSize, 3));
  rig.Set("UserSetDefault", "Default");
  EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files).size(), 1) << "nothing is left lying about";
}

TEST_F(CameraFlash, AFolderThatIsNotThereIsAnErrorOfTheFirstSave)
{
  m_stOptions.strFlashFile = m_dir.filePath("missing/flash").toStdString();
  CCameraRig rig(m_stOptions);
  EXPECT_THROW(rig.SaveUserSet("UserSet0"), GenICam::RuntimeException);
}
