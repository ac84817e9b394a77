#include "tests/fuzz/fuzzedfile.h"

#include <algorithm>

#include <QFile>
#include <QTemporaryDir>

#include "tests/fuzz/require.h"

namespace {

const QTemporaryDir &GetFolder()
{
  static const QTemporaryDir FOLDER;
  return FOLDER;
}

} // namespace

QString CFuzzedFile::GetFileName()
{
  return GetFolder().filePath(QStringLiteral("fuzzed.ffc"));
}

QString CFuzzedFile::GetFolderName()
{
  return GetFolder().path();
}

QString CFuzzedFile::GetMissingName()
{
  return GetFolder().filePath(QStringLiteral("missing.ffc"));
}

QString CFuzzedFile::TakeName(CFuzzInput &input)
{
  switch (input.Take<uint8_t>()) {
  case 0xFD: return GetFolderName();
  case 0xFE: return GetMissingName();
  case 0xFF: return QString();
  default: return GetFileName();
  }
}

void CFuzzedFile::Write(const CExactBuffer &content)
{
  const auto nSize = static_cast<qint64>(content.GetSize());
  QFile file(GetFileName());
  Require(file.open(QIODevice::WriteOnly) &&
            file.write(reinterpret_cast<const char *>(content.GetData()), nSize) == nSize,
          "the target can write its own file");
}

std::size_t CFuzzedFile::TakeSizeAround(CFuzzInput &input, std::size_t nFitting)
{
  const auto nKind = input.Take<uint8_t>();
  if (nKind < 0xC0) {
    return nFitting;
  }
  return nKind < 0xF0 ? nFitting + nKind % 5 - std::min<std::size_t>(nFitting, 2) : input.Take<uint16_t>() % 4096U;
}
