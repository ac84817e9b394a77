/// \file
/// A user who chooses files, the bytes of the files, and tests of them.
#pragma once

#include <string>
#include <vector>

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/coefficients/filechooser.h"

namespace ffc::test {

/// Answers with a name, and keeps what was asked.
class CScriptedChooser : public process::IFileChooser {
public:
  QString ChooseFileToOpen(const process::SFileDialogTexts &stTexts) override { return Answer("open", stTexts); }
  QString ChooseFileToSave(const process::SFileDialogTexts &stTexts) override { return Answer("save", stTexts); }

  /// An empty name cancels.
  void Choose(const QString &strFile) { m_strFile = strFile; }
  const std::vector<std::string> &GetQuestions() const { return m_listQuestions; }

private:
  QString Answer(const char *pQuestion, const process::SFileDialogTexts &stTexts)
  {
    m_listQuestions.push_back(std::string(pQuestion) + ": " + stTexts.strCaption.toStdString() + ", " +
                              stTexts.strFilter.toStdString());
    return m_strFile;
  }

  QString m_strFile;
  std::vector<std::string> m_listQuestions;
};

/// Has a process ask a scripted user. \return the user, whom the process owns
template <class TProcess>
CScriptedChooser &InstallChooser(TProcess &process, const QString &strFile = QString())
{
  auto pChooser = std::make_unique<CScriptedChooser>();
  CScriptedChooser &chooser = *pChooser;
  chooser.Choose(strFile);
  process.SetFileChooser(std::move(pChooser));
  return chooser;
}

inline QByteArray ReadAll(const QString &strFile)
{
  QFile file(strFile);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

inline void WriteAll(const QString &strFile, const QByteArray &bytes)
{
  QFile file(strFile);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_EQ(bytes.size(), file.write(bytes));
}

/// For tests of the coefficient files of a process: they are saved and loaded by name, in a folder of their own.
template <class TRig>
class CFileTest : public testing::Test {
protected:
  QString Path(const char *pName) const { return m_folder.filePath(QString::fromUtf8(pName)); }
  int32_t Save(const char *pName)
  {
    m_chooser.Choose(Path(pName));
    return m_rig.Process().SaveToFile();
  }
  int32_t Load(const char *pName)
  {
    m_chooser.Choose(Path(pName));
    return m_rig.Process().LoadFromFile();
  }

  QTemporaryDir m_folder;
  TRig m_rig;
  CScriptedChooser &m_chooser = InstallChooser(m_rig.Process());
};

} // namespace ffc::test
