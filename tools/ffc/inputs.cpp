#include "tools/ffc/inputs.h"

#include <array>
#include <cstdio>
#include <new>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include "frames/fileio.h"
#include "frames/ifilekind.h"

namespace ffc::tool {
namespace {

QStringList ListFramesIn(const QString &strFolder, bool bRaw)
{
  QStringList listSuffixes;
  for (const frames::IFileKind *pKind : frames::ListFileKinds()) {
    listSuffixes << pKind->GetSuffixes();
  }
  if (bRaw) {
    listSuffixes = QStringList{QStringLiteral("raw"), QStringLiteral("bin")};
  }
  return frames::ListNames(QDir(strFolder), QString(), listSuffixes);
}

/// Files that a pattern of the shell's kind stands for.
QStringList ListMatching(const QDir &dir, const QString &strPattern)
{
  const QRegularExpression expression(QRegularExpression::wildcardToRegularExpression(strPattern),
                                      QRegularExpression::CaseInsensitiveOption);
  QStringList listNames;
  for (const QString &strName : frames::ListFiles(dir)) {
    const QRegularExpressionMatch match = expression.match(strName);
    if (expression.isValid() && !match.isValid()) {
      throw std::bad_alloc(); // else the file would be left out
    }
    if (match.hasMatch()) {
      listNames << strName;
    }
  }
  return listNames;
}

/// \return full names; empty when there is nothing
QStringList Expand(const QString &strName, bool bRaw)
{
  const QFileInfo info(strName);
  if (info.isDir()) {
    QStringList listFiles;
    for (const QString &strFile : ListFramesIn(strName, bRaw)) {
      listFiles << QDir(strName).filePath(strFile);
    }
    return listFiles;
  }
  if (info.exists()) {
    return {strName};
  }
  QStringList listFiles;
  const QDir dir = info.dir();
  if (strName.contains('*') || strName.contains('?') || strName.contains('[')) {
    for (const QString &strFile : ListMatching(dir, info.fileName())) {
      listFiles << dir.filePath(strFile);
    }
  }
  return listFiles;
}

/// By the language's own means: a pipe that ends is an error to a QFile on Windows.
Result<QByteArray> ReadStandardInput()
{
  QByteArray byteContent;
  std::array<char, 4096> acPart{};
  while (const std::size_t nRead = std::fread(acPart.data(), 1, acPart.size(), stdin)) {
    byteContent.append(acPart.data(), static_cast<int>(nRead));
  }
  return std::ferror(stdin) != 0 ? Result<QByteArray>(Failure("cannot be read.")) : byteContent;
}

Result<std::vector<std::string>> ReadNames(const std::string &strFile)
{
  QFile file(QString::fromStdString(strFile));
  const Result<QByteArray> names = strFile == "-" ? ReadStandardInput() : frames::ReadWhole(file);
  if (!names) {
    return Failure("The list \"" + strFile + "\" " + names.GetError());
  }
  const QByteArray &byteNames = names.GetValue();
  std::vector<std::string> listNames;
  for (QByteArray byteName : byteNames.split(byteNames.contains('\0') ? '\0' : '\n')) {
    if (byteName.endsWith('\r')) {
      byteName.chop(1);
    }
    if (!byteName.isEmpty()) {
      listNames.push_back(byteName.toStdString());
    }
  }
  return listNames;
}

} // namespace

Result<QStringList> ListFiles(const std::vector<std::string> &listNames, bool bRaw)
{
  QStringList listFiles;
  QSet<QString> setSeen;
  for (const std::string &strName : listNames) {
    const QStringList listExpanded = Expand(QString::fromStdString(strName), bRaw);
    if (listExpanded.isEmpty()) {
      return Failure("There are no frames behind \"" + strName +
                     "\": name a file, a folder with frames, or a pattern.");
    }
    for (const QString &strFile : listExpanded) {
      const QString strFull = QFileInfo(strFile).absoluteFilePath();
      if (!setSeen.contains(strFull)) {
        setSeen.insert(strFull);
        listFiles << strFile;
      }
    }
  }
  return listFiles;
}

Result<QStringList> ListInputs(const SOptions &stOptions)
{
  std::vector<std::string> listNames = stOptions.listFrames;
  if (!stOptions.strFilesFrom.empty()) {
    const Result<std::vector<std::string>> listMore = ReadNames(stOptions.strFilesFrom);
    if (!listMore) {
      return listMore.GetFailure();
    }
    listNames.insert(listNames.end(), listMore.GetValue().begin(), listMore.GetValue().end());
  }
  Result<QStringList> listAll = ListFiles(listNames, stOptions.raw.has_value());
  if (!listAll) {
    return listAll;
  }
  if (listAll.GetValue().isEmpty()) {
    return Failure("There are no frames: the list \"" + stOptions.strFilesFrom + "\" names none.");
  }
  QStringList listFiles;
  for (int n = static_cast<int>(stOptions.nShard) - 1; n < listAll.GetValue().size();
       n += static_cast<int>(stOptions.nShards)) {
    listFiles << listAll.GetValue()[n];
  }
  return listFiles;
}

const frames::IFileKind *FindKind(const QString &strPath, const SOptions &stOptions)
{
  return stOptions.raw ? &*stOptions.raw : frames::FindFileKind(strPath);
}

Result<std::unique_ptr<frames::IFrameReader>> OpenFrames(const QString &strPath, const SOptions &stOptions)
{
  const frames::IFileKind *pKind = FindKind(strPath, stOptions);
  if (pKind == nullptr) {
    return Failure(MakeSentence(strPath, "has an ending that no kind of frames has; for frames without a header, "
                                         "state --raw WIDTHxHEIGHT:FORMAT."));
  }
  Result<std::unique_ptr<frames::IFrameReader>> reader = pKind->Open(strPath);
  if (!reader) {
    return Failure(MakeSentence(strPath, reader.GetError()));
  }
  return reader;
}

QString MakeSentence(const QString &strFile, const std::string &strEnd)
{
  return QStringLiteral("The file \"%1\" %2").arg(strFile, QString::fromStdString(strEnd));
}

} // namespace ffc::tool
