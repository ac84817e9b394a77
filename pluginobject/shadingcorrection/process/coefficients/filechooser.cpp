#include "pluginobject/shadingcorrection/process/coefficients/filechooser.h"

#include <QFileDialog>

namespace ffc::process {

namespace {

const auto DEFAULT_FOLDER = QStringLiteral("./resource/tqplugins/FlatFieldCorrection/");
const auto DEFAULT_FILE = QStringLiteral("./resource/tqplugins/FlatFieldCorrection/FlatFieldCorrection.ffc");

} // namespace

QString CFileDialogChooser::ChooseFileToOpen(const SFileDialogTexts &stTexts)
{
  return QFileDialog::getOpenFileName(nullptr, stTexts.strCaption, DEFAULT_FOLDER, stTexts.strFilter);
}

QString CFileDialogChooser::ChooseFileToSave(const SFileDialogTexts &stTexts)
{
  return QFileDialog::getSaveFileName(nullptr, stTexts.strCaption, DEFAULT_FILE, stTexts.strFilter);
}

} // namespace ffc::process
