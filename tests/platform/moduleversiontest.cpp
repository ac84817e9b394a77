#include "platform/moduleversion.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <vector>

#include <elf.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/moduleversionrecord.h"

using ffc::platform::QueryModuleFileVersion;
using ffc::platform::QueryModuleVersion;
using ffc::platform::SModuleVersionRecord;

namespace {

namespace fs = std::filesystem;

constexpr uint16_t UNTOUCHED = 0xABCD;
constexpr const char *NO_STRUCTURE = "Failed to get the content of version structure";
constexpr const char *NO_INFORMATION = "Failed to query version information";

struct SAnswer {
  bool bOk = false;
  std::array<uint16_t, 4> anVersion{};
  std::string strError;
};

SAnswer Query(const fs::path &path)
{
  uint16_t anVersion[4] = {UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED};
  SAnswer stAnswer;
  stAnswer.strError = "Version";
  stAnswer.bOk = QueryModuleFileVersion(path.string(), anVersion, stAnswer.strError);
  std::copy_n(anVersion, 4, stAnswer.anVersion.begin());
  return stAnswer;
}

void ExpectRefused(const SAnswer &stAnswer, const char *pError)
{
  EXPECT_FALSE(stAnswer.bOk);
  EXPECT_EQ(stAnswer.strError, pError);
  EXPECT_EQ(stAnswer.anVersion, (std::array<uint16_t, 4>{UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED}));
}

void ExpectRefusedOrVersion(const SAnswer &stAnswer)
{
  if (!stAnswer.bOk) {
    ExpectRefused(stAnswer, stAnswer.strError == NO_INFORMATION ? NO_INFORMATION : NO_STRUCTURE);
  }
}

// The smallest file with a version: a header, the record, the section names, and three sections (none, the
// record, the names).
struct STinyModule {
  Elf64_Ehdr stHeader = {};
  SModuleVersionRecord stRecord = {FFC_VERSION_SIGNATURE, {1, 22, 333, 4444}};
  char acNames[32] = "\0" FFC_VERSION_SECTION "\0.shstrtab";
  Elf64_Shdr astSections[3] = {};

  STinyModule()
  {
    std::memcpy(stHeader.e_ident, ELFMAG, SELFMAG);
    stHeader.e_ident[EI_CLASS] = ELFCLASS64;
    stHeader.e_ident[EI_DATA] = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? ELFDATA2LSB : ELFDATA2MSB;
    stHeader.e_shoff = offsetof(STinyModule, astSections);
    stHeader.e_shentsize = sizeof(Elf64_Shdr);
    stHeader.e_shnum = 3;
    stHeader.e_shstrndx = 2;
    SetSection(astSections[1], 1, SHT_PROGBITS, offsetof(STinyModule, stRecord), sizeof stRecord);
    SetSection(astSections[2], 1 + sizeof FFC_VERSION_SECTION, SHT_STRTAB, offsetof(STinyModule, acNames),
               sizeof acNames);
  }

private:
  static void SetSection(Elf64_Shdr &stSection, std::size_t nName, uint32_t nType, std::size_t nOffset,
                         std::size_t nSize)
  {
    stSection.sh_name = static_cast<Elf64_Word>(nName);
    stSection.sh_type = nType;
    stSection.sh_offset = nOffset;
    stSection.sh_size = nSize;
  }
};

std::string ToBytes(const STinyModule &stModule)
{
  return std::string(reinterpret_cast<const char *>(&stModule), sizeof stModule);
}

std::string ReadFile(const fs::path &path)
{
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

class ModuleVersion : public testing::Test {
protected:
  ModuleVersion() : m_path(fs::temp_directory_path() / ("ffc_moduleversion_" + std::to_string(getpid())))
  {
    fs::create_directories(m_path);
  }
  ~ModuleVersion() override { fs::remove_all(m_path); }

  fs::path WriteFile(const std::string &strBytes) const
  {
    std::ofstream(m_path / "file", std::ios::binary | std::ios::trunc) << strBytes;
    return m_path / "file";
  }

  SAnswer QueryBytes(const std::string &strBytes) const { return Query(WriteFile(strBytes)); }
  SAnswer QueryModule(const STinyModule &stModule) const { return QueryBytes(ToBytes(stModule)); }

  fs::path m_path;
};

} // namespace

TEST_F(ModuleVersion, AProgramWithoutARecordHasNone)
{
  uint16_t anVersion[4] = {UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED};
  std::string strError = "Version";
  EXPECT_FALSE(QueryModuleVersion(anVersion, strError));
  EXPECT_EQ(strError, NO_STRUCTURE);
  EXPECT_TRUE(std::all_of(std::begin(anVersion), std::end(anVersion), [](uint16_t n) { return n == UNTOUCHED; }));
}

TEST_F(ModuleVersion, TheBuiltModuleHasTheVersionOfTheProject)
{
  const SAnswer stAnswer = Query(FFC_MODULE_FILE);
  EXPECT_TRUE(stAnswer.bOk);
  EXPECT_EQ(stAnswer.strError, "Version");
  EXPECT_EQ(stAnswer.anVersion, (std::array<uint16_t, 4>{FFC_PROJECT_VERSION}));
}

TEST_F(ModuleVersion, IsReadFromASmallestFileWithARecord)
{
  const SAnswer stAnswer = QueryModule(STinyModule());
  EXPECT_TRUE(stAnswer.bOk);
  EXPECT_EQ(stAnswer.strError, "Version");
  EXPECT_EQ(stAnswer.anVersion, (std::array<uint16_t, 4>{1, 22, 333, 4444}));
}

TEST_F(ModuleVersion, FilesThatAreNoModulesHaveNone)
{
  ExpectRefused(Query(m_path / "missing"), NO_STRUCTURE);
  ExpectRefused(Query(m_path), NO_STRUCTURE);
  ExpectRefused(Query(""), NO_STRUCTURE);
  ExpectRefused(QueryBytes(""), NO_STRUCTURE);
  ExpectRefused(QueryBytes("A text of some length that says nothing of versions but FFCVERS and .ffc_version.\n"),
                NO_STRUCTURE);
  ExpectRefused(QueryBytes(std::string(4096, '\0')), NO_STRUCTURE);
}

TEST_F(ModuleVersion, AForeignSignatureIsNotQueried)
{
  for (std::size_t i = 0; i < sizeof SModuleVersionRecord::acSignature; ++i) {
    STinyModule stModule;
    stModule.stRecord.acSignature[i] ^= 1;
    ExpectRefused(QueryModule(stModule), NO_INFORMATION);
  }
}

TEST_F(ModuleVersion, ARecordThatIsTooShortIsNotQueried)
{
  for (std::size_t nSize = 1; nSize < sizeof(SModuleVersionRecord); ++nSize) {
    STinyModule stModule;
    stModule.astSections[1].sh_size = nSize;
    ExpectRefused(QueryModule(stModule), NO_INFORMATION);
  }
}

TEST_F(ModuleVersion, ALongerRecordIsReadFromItsBeginning)
{
  STinyModule stModule;
  stModule.astSections[1].sh_size = sizeof(SModuleVersionRecord) + 8;
  EXPECT_TRUE(QueryModule(stModule).bOk);
}

TEST_F(ModuleVersion, ASectionWithoutContentOrOfAbsurdSizeCountsAsMissing)
{
  STinyModule stModule;
  stModule.astSections[1].sh_size = 0;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  stModule.astSections[1].sh_size = 4097;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  stModule.astSections[1].sh_size = ~uint64_t{0};
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  stModule = STinyModule();
  stModule.astSections[1].sh_type = SHT_NOBITS;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
}

TEST_F(ModuleVersion, ANameThatOnlyBeginsLikeTheSectionIsAnother)
{
  STinyModule stModule;
  stModule.acNames[sizeof FFC_VERSION_SECTION] = 'x';
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
}

TEST_F(ModuleVersion, HeadersOfOtherSystemsAreRefused)
{
  STinyModule stModule;
  stModule.stHeader.e_ident[EI_CLASS] = ELFCLASS32;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  stModule = STinyModule();
  stModule.stHeader.e_ident[EI_DATA] ^= ELFDATA2LSB ^ ELFDATA2MSB;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  stModule = STinyModule();
  stModule.stHeader.e_shentsize = sizeof(Elf32_Shdr);
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
}

TEST_F(ModuleVersion, OffsetsBeyondTheFileAndBeyondAllFilesAreRefused)
{
  for (const uint64_t nOffset : {uint64_t{sizeof(STinyModule)}, uint64_t{1} << 40, uint64_t{INT64_MAX},
                                 uint64_t{INT64_MAX} + 1, ~uint64_t{0}, ~uint64_t{0} - 8}) {
    STinyModule stModule;
    stModule.stHeader.e_shoff = nOffset;
    ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
    stModule = STinyModule();
    stModule.astSections[1].sh_offset = nOffset;
    ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
    stModule = STinyModule();
    stModule.astSections[2].sh_offset = nOffset;
    ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  }
}

TEST_F(ModuleVersion, IndicesBeyondTheSectionTableAreRefused)
{
  STinyModule stModule;
  stModule.stHeader.e_shstrndx = 0xFFFF;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  stModule = STinyModule();
  stModule.stHeader.e_shnum = 0;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
  stModule.stHeader.e_shnum = 0xFFFF;
  stModule.astSections[1].sh_name = 0xFFFFFFFF;
  ExpectRefused(QueryModule(stModule), NO_STRUCTURE);
}

TEST_F(ModuleVersion, ASmallestFileCutAnywhereIsRefused)
{
  const std::string strWhole = ToBytes(STinyModule());
  for (std::size_t nLength = 0; nLength < strWhole.size(); ++nLength) {
    const SAnswer stAnswer = QueryBytes(strWhole.substr(0, nLength));
    ExpectRefused(stAnswer, NO_STRUCTURE);
  }
}

TEST_F(ModuleVersion, TheBuiltModuleCutInItsFirstKilobyteOrItsSectionTableDoesNoHarm)
{
  const std::string strWhole = ReadFile(FFC_MODULE_FILE);
  ASSERT_GT(strWhole.size(), sizeof(Elf64_Ehdr));
  Elf64_Ehdr stHeader;
  std::memcpy(&stHeader, strWhole.data(), sizeof stHeader);
  for (std::size_t nLength = 0; nLength <= 1024; ++nLength) {
    ExpectRefused(QueryBytes(strWhole.substr(0, nLength)), NO_STRUCTURE);
  }
  // Cut from the end on, so that the file is written once.
  const fs::path path = WriteFile(strWhole);
  for (std::size_t nLength = strWhole.size(); nLength-- > stHeader.e_shoff;) {
    fs::resize_file(path, nLength);
    ExpectRefusedOrVersion(Query(path));
  }
}

TEST_F(ModuleVersion, ASmallestFileWithAnyByteChangedDoesNoHarm)
{
  const std::string strWhole = ToBytes(STinyModule());
  for (std::size_t i = 0; i < strWhole.size(); ++i) {
    for (const unsigned nMask : {0x01U, 0x80U, 0xFFU}) {
      std::string strDamaged = strWhole;
      strDamaged[i] = static_cast<char>(static_cast<unsigned char>(strDamaged[i]) ^ nMask);
      ExpectRefusedOrVersion(QueryBytes(strDamaged));
    }
  }
}

TEST_F(ModuleVersion, SmallestFilesWithManyBytesChangedDoNoHarm)
{
  constexpr int ROUNDS = 5000;
  const std::string strWhole = ToBytes(STinyModule());
  std::mt19937 random(20240611);
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    std::string strDamaged = strWhole;
    for (auto nChanges = 1 + random() % 12; nChanges > 0; --nChanges) {
      // The first bytes stay: a file that fails at once tells nothing.
      const std::size_t nPosition = EI_NIDENT + random() % (strWhole.size() - EI_NIDENT);
      strDamaged[nPosition] = static_cast<char>(random() % 3 == 0 ? 0xFF : random());
    }
    ExpectRefusedOrVersion(QueryBytes(strDamaged));
  }
}
