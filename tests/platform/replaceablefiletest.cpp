#include "platform/replaceablefile.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using ffc::platform::IsReplaceable;
using ffc::platform::SyncFile;

namespace {

namespace fs = std::filesystem;

bool IsPathReplaceable(const fs::path &path)
{
  return IsReplaceable({path.string(), path.wstring()});
}

class ReplaceableFile : public testing::Test {
protected:
  ReplaceableFile() : m_path(fs::temp_directory_path() / ("ffc_replaceable_" + std::to_string(std::random_device()())))
  {
    fs::create_directories(m_path);
  }
  ~ReplaceableFile() override { fs::remove_all(m_path); }

  fs::path WriteFile(const char *pName) const
  {
    std::ofstream(m_path / pName) << "content";
    return m_path / pName;
  }

  fs::path m_path;
};

} // namespace

TEST_F(ReplaceableFile, WhatIsNotThereAndWhatIsOnesOwnCanBeReplaced)
{
  EXPECT_TRUE(IsPathReplaceable(m_path / "missing"));
  EXPECT_TRUE(IsPathReplaceable(WriteFile("own")));
}

TEST_F(ReplaceableFile, AFileOfTwoNamesIsNot)
{
  const fs::path file = WriteFile("file");
  fs::create_hard_link(file, m_path / "second name");
  EXPECT_FALSE(IsPathReplaceable(file));
  fs::remove(m_path / "second name");
  EXPECT_TRUE(IsPathReplaceable(file));
}

#ifndef _WIN32
TEST_F(ReplaceableFile, AFileInTheWorkingDirectoryIsLookedAtThere)
{
  WriteFile("own");
  const fs::path former = fs::current_path();
  fs::current_path(m_path);
  EXPECT_TRUE(IsPathReplaceable("own"));
  ASSERT_EQ(chmod(".", S_IRWXU | S_ISGID), 0);
  EXPECT_TRUE(IsPathReplaceable("own")) << "the folder hands on the group that the file has";
  fs::current_path(former);
}

// Where there are other owners to give a file to.
TEST_F(ReplaceableFile, AFileOfAnotherOwnerOrGroupIsNotUnlessTheFolderGivesItsGroup)
{
  constexpr gid_t OTHER = 12345;
  const fs::path file = WriteFile("file");
  if (chown(file.c_str(), getuid(), OTHER) != 0) {
    GTEST_SKIP() << "this user cannot give files away";
  }
  EXPECT_FALSE(IsPathReplaceable(file));
  ASSERT_EQ(chown(m_path.c_str(), getuid(), OTHER), 0);
  EXPECT_FALSE(IsPathReplaceable(file));
  ASSERT_EQ(chmod(m_path.c_str(), S_IRWXU | S_ISGID), 0);
  EXPECT_TRUE(IsPathReplaceable(file));
  ASSERT_EQ(chown(file.c_str(), OTHER, OTHER), 0);
  EXPECT_FALSE(IsPathReplaceable(file));
}

TEST_F(ReplaceableFile, SyncingFailsWhereThereIsNoFileAndNotWhereNothingCanBeSynced)
{
  const int nFile = open(WriteFile("file").c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_GE(nFile, 0);
  EXPECT_TRUE(SyncFile(nFile));
  close(nFile);
  EXPECT_FALSE(SyncFile(-1));
  int anPipe[2] = {};
  ASSERT_EQ(pipe(anPipe), 0);
  EXPECT_TRUE(SyncFile(anPipe[1]));
  close(anPipe[0]);
  close(anPipe[1]);
}
#endif
