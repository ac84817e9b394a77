// The version query on version resources. This program has none.
#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "platform/moduleversion.h"

using ffc::platform::QueryModuleFileVersion;
using ffc::platform::QueryModuleVersion;

namespace {

namespace fs = std::filesystem;

using Version = std::array<uint16_t, 4>;

constexpr Version UNTOUCHED = {0xABCD, 0xABCD, 0xABCD, 0xABCD};
constexpr const char *NO_STRUCTURE = "Failed to get the content of version structure";
constexpr const char *NO_INFORMATION = "Failed to query version information";

struct SAnswer {
  bool bOk = false;
  Version anVersion{};
  std::string strError = "Version";
};

template <class TQuery>
SAnswer Ask(TQuery fnQuery)
{
  uint16_t anVersion[4];
  std::copy(UNTOUCHED.begin(), UNTOUCHED.end(), anVersion);
  SAnswer stAnswer;
  stAnswer.bOk = fnQuery(anVersion, stAnswer.strError);
  std::copy_n(anVersion, 4, stAnswer.anVersion.begin());
  return stAnswer;
}

SAnswer Query(const fs::path &path)
{
  return Ask([&](auto &anVersion, std::string &strError) {
    return QueryModuleFileVersion(path.u8string(), anVersion, strError);
  });
}

void ExpectRefused(const SAnswer &stAnswer, const char *pError)
{
  EXPECT_FALSE(stAnswer.bOk);
  EXPECT_EQ(stAnswer.strError, pError);
  EXPECT_EQ(stAnswer.anVersion, UNTOUCHED);
}

void ExpectVersion(const SAnswer &stAnswer, const Version &anVersion)
{
  EXPECT_TRUE(stAnswer.bOk);
  EXPECT_EQ(stAnswer.strError, "Version");
  EXPECT_EQ(stAnswer.anVersion, anVersion);
}

std::string ReadFile(const fs::path &path)
{
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

class VersionResource : public testing::Test {
protected:
  VersionResource() : m_path(fs::temp_directory_path() / "ffc_versionresource")
  {
    fs::remove_all(m_path);
    fs::create_directories(m_path);
  }
  ~VersionResource() override { fs::remove_all(m_path); }

  fs::path WriteFile(const std::string &strBytes, const fs::path &name = "file.dll") const
  {
    std::ofstream(m_path / name, std::ios::binary | std::ios::trunc) << strBytes;
    return m_path / name;
  }

  fs::path m_path;
};

} // namespace

TEST_F(VersionResource, AProgramWithoutOneHasNoVersion)
{
  ExpectRefused(Ask([](auto &anVersion, std::string &strError) { return QueryModuleVersion(anVersion, strError); }),
                NO_STRUCTURE);
}

TEST_F(VersionResource, ModuleAndImageLibraryHaveTheVersionOfTheProject)
{
  ExpectVersion(Query(FFC_MODULE_FILE), {FFC_PROJECT_VERSION});
  ExpectVersion(Query(FFC_OMBRIX_FILE), {FFC_PROJECT_VERSION});
}

TEST_F(VersionResource, TheFileVersionCountsAndNotTheProductVersion)
{
  ExpectVersion(Query(FFC_VERSIONED_FILE), {1, 22, 333, 44444});
}

TEST_F(VersionResource, IsFoundUnderAChineseNameToo)
{
  ExpectVersion(Query(WriteFile(ReadFile(FFC_VERSIONED_FILE), fs::u8path("\u5E73\u573A.dll"))), {1, 22, 333, 44444});
}

TEST_F(VersionResource, FilesThatAreNoModulesHaveNone)
{
  ExpectRefused(Query(m_path / "missing.dll"), NO_STRUCTURE);
  ExpectRefused(Query(m_path), NO_STRUCTURE);
  ExpectRefused(Query(""), NO_STRUCTURE);
  ExpectRefused(Query(WriteFile("")), NO_STRUCTURE);
  ExpectRefused(Query(WriteFile("MZ and no more than a text")), NO_STRUCTURE);
  ExpectRefused(Query(WriteFile(std::string(4096, '\0'))), NO_STRUCTURE);
}

TEST_F(VersionResource, ARootWithoutFixedInformationIsNotQueried)
{
  // The root block: its length, the length of its value, a type, and this key in UTF-16.
  const std::string strKey("V\0S\0_\0V\0E\0R\0S\0I\0O\0N\0", 20);
  std::string strBytes = ReadFile(FFC_VERSIONED_FILE);
  const std::size_t nKey = strBytes.find(strKey);
  ASSERT_NE(nKey, std::string::npos);
  strBytes[nKey - 4] = 0;
  ExpectRefused(Query(WriteFile(strBytes)), NO_INFORMATION);
}
