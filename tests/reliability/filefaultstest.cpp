// Files that are not what they should be. The coefficients in force survive every one of them.
#include <atomic>
#include <cstdio>
#include <memory>
#include <set>
#include <thread>

#include <QDir>
#include <QTemporaryDir>
#include <QTextCodec>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"
#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"
#include "tests/support/fullvolume.h"

using namespace ffc::test;

namespace {

constexpr int HOST_WIDTH = 64;
constexpr int HOST_HEIGHT = 32; // a table of 4096 bytes
constexpr qint64 GIBI = qint64{1} << 30;

// One kind of process with coefficients in force and in a file.
class IFileRig {
public:
  virtual ~IFileRig() = default;
  virtual IShadingCorrectionProcess &Process() = 0;
  virtual CScriptedChooser &Chooser() = 0;
  /// What is done to frames now, as bytes.
  virtual std::vector<uint8_t> GetInForce() = 0;
  /// What a file that does not hold this kind's coefficients is answered with.
  virtual std::set<int32_t> GetRefusals() const = 0;
};

class CHostFileRig final : public IFileRig {
public:
  CHostFileRig() : m_chooser(InstallChooser(m_rig.Process()))
  {
    EXPECT_EQ(m_rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
    m_rig.Process().SetExpectGray(200);
    EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
  IShadingCorrectionProcess &Process() override { return m_rig.Process(); }
  CScriptedChooser &Chooser() override { return m_chooser; }
  std::vector<uint8_t> GetInForce() override
  {
    std::vector<uint8_t> listCorrected;
    EXPECT_EQ(m_rig.Correct(m_rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_SUCCESS);
    return listCorrected;
  }
  std::set<int32_t> GetRefusals() const override { return {PLUGIN_STATUS_READ_FILE_ERROR}; }

private:
  CHostRig m_rig{"Mono8", HOST_WIDTH, HOST_HEIGHT};
  CScriptedChooser &m_chooser;
};

template <class TRig>
class CCameraFileRig final : public IFileRig {
public:
  CCameraFileRig() : m_chooser(InstallChooser(m_rig.Process()))
  {
    EXPECT_EQ(m_rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
  IShadingCorrectionProcess &Process() override { return m_rig.Process(); }
  CScriptedChooser &Chooser() override { return m_chooser; }
  std::vector<uint8_t> GetInForce() override { return m_rig.Camera().Correction().GetWritten(); }
  std::set<int32_t> GetRefusals() const override { return {PLUGIN_STATUS_READ_FILE_ERROR, PLUGIN_STATUS_ROI_MISMATCH}; }

private:
  TRig m_rig;
  CScriptedChooser &m_chooser;
};

class FileFaults : public testing::TestWithParam<EMode> {
protected:
  FileFaults()
  {
    switch (GetParam()) {
    case EMode::Host: m_pRig = std::make_unique<CHostFileRig>(); break;
    case EMode::FlatField: m_pRig = std::make_unique<CCameraFileRig<CDeviceRig>>(); break;
    default: m_pRig = std::make_unique<CCameraFileRig<CVignettingRig>>(); break;
    }
    EXPECT_EQ(Save("good.ffc"), PLUGIN_STATUS_SUCCESS);
    m_byteGood = ReadAll(Path("good.ffc"));
    m_listInForce = m_pRig->GetInForce();
  }

  QString Path(const char *pName) const { return m_folder.filePath(QString::fromUtf8(pName)); }
  int32_t Load(const QString &strFile)
  {
    m_pRig->Chooser().Choose(strFile);
    return m_pRig->Process().LoadFromFile();
  }
  int32_t Save(const char *pName)
  {
    m_pRig->Chooser().Choose(Path(pName));
    return m_pRig->Process().SaveToFile();
  }
  void ExpectRefused(const QString &strFile, const std::set<int32_t> &setStatuses)
  {
    const int32_t nStatus = Load(strFile);
    EXPECT_EQ(setStatuses.count(nStatus), 1U) << strFile.toStdString() << ": " << nStatus;
    EXPECT_EQ(m_pRig->GetInForce(), m_listInForce) << strFile.toStdString();
  }
  void MakeSparse(const QString &strFile, qint64 nSize) const
  {
    QFile file(strFile);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(nSize)) << nSize;
  }

  QTemporaryDir m_folder;
  std::unique_ptr<IFileRig> m_pRig;
  QByteArray m_byteGood;
  std::vector<uint8_t> m_listInForce;
};

} // namespace

TEST_P(FileFaults, AFileOfAnyOtherSizeIsRefused)
{
  const qint64 nGood = m_byteGood.size();
  std::set<qint64> setSizes = {0, 1, 23, 24, nGood / 2, nGood - 1};
  if (GetParam() != EMode::FlatField) {
    // Flat-field cameras take a longer file and leave the rest.
    setSizes.insert({nGood + 1, 3 * nGood, GIBI, 2 * GIBI - 1, 2 * GIBI, 4 * GIBI - 1, 4 * GIBI});
  }
  for (const qint64 nSize : setSizes) {
    ASSERT_NO_FATAL_FAILURE(MakeSparse(Path("sized.ffc"), nSize));
    ExpectRefused(Path("sized.ffc"), m_pRig->GetRefusals());
  }
  EXPECT_EQ(Load(Path("good.ffc")), PLUGIN_STATUS_SUCCESS);
}

TEST_P(FileFaults, AHugeFileCostsNoMoreThanItsCoefficients)
{
  ASSERT_NO_FATAL_FAILURE(MakeSparse(Path("huge.ffc"), 4 * GIBI));
  const int32_t nStatus = Load(Path("huge.ffc"));
  EXPECT_EQ(GetParam() == EMode::FlatField, nStatus == 0) << nStatus;
}

TEST_P(FileFaults, WhatIsNoFileIsNotOpened)
{
  QDir().mkpath(Path("folder.ffc"));
  for (const char *pName : {"missing.ffc", "folder.ffc", ".", "good.ffc/inside.ffc"}) {
    ExpectRefused(Path(pName), {PLUGIN_STATUS_OPEN_FILE_ERROR});
  }
  EXPECT_EQ(Save("folder.ffc"), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(Save("missing/a.ffc"), PLUGIN_STATUS_OPEN_FILE_ERROR);
}

TEST_P(FileFaults, AFileThatShrinksAndGrowsWhileItIsReadIsTakenWholeOrNotAtAll)
{
  WriteAll(Path("moving.ffc"), m_byteGood);
  std::atomic<bool> bStop{false};
  std::thread other([&] {
    QFile file(Path("moving.ffc"));
    while (!bStop && file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
      file.resize(m_byteGood.size() / 3);
      file.seek(0);
      file.write(m_byteGood);
      file.close();
    }
  });
  int nTaken = 0;
  std::set<int32_t> setStatuses = m_pRig->GetRefusals();
  setStatuses.insert(0);
  for (int n = 0; n < (IsSoak() ? 20000 : 300); ++n) {
    const int32_t nStatus = Load(Path("moving.ffc"));
    nTaken += nStatus == 0 ? 1 : 0;
    EXPECT_EQ(setStatuses.count(nStatus), 1U) << nStatus;
  }
  bStop = true;
  other.join();
  std::printf("%d of the loads found the file whole\n", nTaken);
  EXPECT_EQ(Load(Path("good.ffc")), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_listInForce.size(), m_pRig->GetInForce().size());
}

TEST_P(FileFaults, AFullVolumeLeavesTheFormerFile)
{
  WriteAll(Path("kept.ffc"), "former");
  for (const uint64_t nRoom : {0U, 1U, 10U}) {
    const CFullVolume full(nRoom);
    const int32_t nStatus = Save("kept.ffc");
    // A camera that has the coefficients and corrects is no failure.
    EXPECT_EQ(nStatus, GetParam() == EMode::FlatField ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_WRITE_FILE_ERROR);
    EXPECT_EQ(ReadAll(Path("kept.ffc")).toStdString(), "former");
  }
  EXPECT_EQ(static_cast<int>(QDir(m_folder.path()).entryList(QDir::Files).size()), 2); // nothing half-written beside
  EXPECT_EQ(Save("kept.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ReadAll(Path("kept.ffc")), m_byteGood);
}

TEST_P(FileFaults, AFolderThatMustNotBeWrittenIsLeftAlone)
{
  if (IsAboveAccessRights()) {
    GTEST_SKIP() << "this user may write everywhere";
  }
  QDir().mkpath(Path("locked"));
  QFile::setPermissions(Path("locked"), QFile::ReadOwner | QFile::ExeOwner);
  EXPECT_EQ(Save("locked/a.ffc"), PLUGIN_STATUS_OPEN_FILE_ERROR);
  QFile::setPermissions(Path("locked"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  EXPECT_TRUE(QDir(Path("locked")).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Modes, FileFaults, testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                         [](const auto &stInfo) { return std::string(GetName(stInfo.param)); });

TEST(ChineseFile, IsSavedAndLoadedUnderTheCodecThatTheChineseDialogSets)
{
  QTextCodec *const pFormer = QTextCodec::codecForLocale();
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB2312"));
  for (const EMode eMode : {EMode::Host, EMode::FlatField, EMode::Vignetting}) {
    CModuleRig rig(eMode);
    EXPECT_EQ(rig.Correct(), "");
    const QString strFile = rig.Path(QString::fromUtf8("平场校正.ffc"));
    rig.Answer().ChooseFile(strFile);
    EXPECT_TRUE(rig.Do(EOperation::SaveFile).listBoxes.empty()) << GetName(eMode);
    EXPECT_TRUE(QFile::exists(strFile)) << GetName(eMode);
    EXPECT_TRUE(rig.Do(EOperation::LoadFile).listBoxes.empty()) << GetName(eMode);
  }
  QTextCodec::setCodecForLocale(pFormer);
}
