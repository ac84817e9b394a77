/// \file
/// Asking the user for a coefficient file.
#pragma once

#include <QString>

namespace ffc::process {

/// The texts of a file dialog, translated by whoever asks.
struct SFileDialogTexts {
  QString strCaption;
  QString strFilter;
};

/// Where a process gets file names from; replaceable, so that a process can be driven without a user.
class IFileChooser {
public:
  virtual ~IFileChooser() = default;
  /// \return the chosen file's name, empty when the user cancelled
  virtual QString ChooseFileToOpen(const SFileDialogTexts &stTexts) = 0;
  virtual QString ChooseFileToSave(const SFileDialogTexts &stTexts) = 0;
};

/// Asks with Qt's file dialogs, modal and without a parent, starting in the folder of coefficient files.
/// User-interface thread only.
class CFileDialogChooser : public IFileChooser {
public:
  QString ChooseFileToOpen(const SFileDialogTexts &stTexts) override;
  QString ChooseFileToSave(const SFileDialogTexts &stTexts) override;
};

} // namespace ffc::process
