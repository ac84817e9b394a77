#include "tools/ffc/correctionmarks.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "frames/correctionmark.h"
#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;
using namespace ffc::tool;

namespace {

class CorrectionMark : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(m_folder.isValid()); }

  QString GetFile() const { return m_folder.filePath("a.ser"); }
  QString GetMark() const { return ffc::frames::GetMarkPath(GetFile()); }

  static ffc::Result<> Write(CMarkFile &mark) { return mark.Write(R"({"flat":"flat.ffc","sha256":"00"})", SHashes()); }

private:
  QTemporaryDir m_folder;
};

} // namespace

TEST_F(CorrectionMark, OfFramesThatAreNotPutInTheirPlaceGoes)
{
  try {
    CMarkFile mark(GetFile());
    ASSERT_TRUE(Write(mark));
    ASSERT_TRUE(QFile::exists(GetMark()));
    throw std::bad_alloc();
  } catch (const std::bad_alloc &) {
  }
  EXPECT_FALSE(QFile::exists(GetMark()));
}

TEST_F(CorrectionMark, OfFramesThatWereCorrectedBeforeIsPutBack)
{
  const QByteArray byteFormer("{\"flat\":\"former.ffc\",\"sha256\":\"11\"}\n");
  WriteBytes(GetMark(), byteFormer);
  {
    CMarkFile mark(GetFile());
    ASSERT_TRUE(Write(mark));
    EXPECT_NE(ReadBytes(GetMark()), byteFormer);
  }
  EXPECT_EQ(ReadBytes(GetMark()), byteFormer);
}

TEST_F(CorrectionMark, OfFramesThatAreInTheirPlaceStays)
{
  {
    CMarkFile mark(GetFile());
    ASSERT_TRUE(Write(mark));
    mark.Keep();
  }
  EXPECT_TRUE(ReadBytes(GetMark()).contains("flat.ffc"));
}
