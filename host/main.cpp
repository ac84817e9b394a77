#include <cstdlib>
#include <iostream>
#include <optional>

#include <QApplication>

#include "host/desktop.h"
#include "host/headless/headlessrun.h"
#include "host/headless/recordrun.h"
#include "host/options/cameraopening.h"
#include "host/options/commandline.h"
#include "host/options/language.h"
#include "host/viewer/settingsrescue.h"
#include "host/window/appearance.h"
#include "host/window/mainwindow.h"
#include "host/window/screenshotrun.h"

using namespace ffc::host;

namespace {

constexpr int EXIT_USAGE = 2;
constexpr int EXIT_LIMIT = 4; ///< the image is less even than was asked for, or was dark
constexpr int EXIT_LOSS = 5;  ///< frames were lost while others were recorded

int Fail(const ffc::Failure &failure)
{
  std::cerr << "ffchost: " << failure.GetText() << std::endl;
  return EXIT_FAILURE;
}

/// A run without a person prints its own lines only, not the toolkit's remarks about the display and its fonts.
void DropRemarks(QtMsgType eType, const QMessageLogContext &, const QString &strMessage)
{
  if (eType == QtCriticalMsg || eType == QtFatalMsg) {
    std::cerr << strMessage.toStdString() << std::endl;
  }
}

int RunHeadless(const SHeadlessOptions &stOptions)
{
  CProgressLine progress(IsErrorStreamTerminal() ? &std::cerr : nullptr);
  CHeadlessRun run(stOptions, OpenCamera, progress);
  const SWorkflowOptions &stWorkflow = stOptions.stWorkflow;
  CTerminalAttendant attendant(std::cin, std::cout,
                               stWorkflow.bWait ? std::nullopt : std::optional<double>(stWorkflow.dDarkDelay));
  if (!stOptions.stCamera.strCameraId.empty()) {
    run.SetLensAttendant([&attendant](bool bCovered) { return attendant.Cover(bCovered); });
  }
  const ffc::Result<> result = run.Run();
  if (!result) {
    return Fail(result.GetFailure());
  }
  std::cout << run.GetSummary().toStdString();
  std::cout << "  written to " << stOptions.stWorkflow.strOutFolder << std::endl;
  return run.IsWithinLimit() ? EXIT_SUCCESS : EXIT_LIMIT;
}

int RunRecording(const SHeadlessOptions &stOptions)
{
  CProgressLine progress(IsErrorStreamTerminal() ? &std::cerr : nullptr);
  CRecordRun run(stOptions, OpenCamera, progress);
  const ffc::Result<> result = run.Run();
  std::cout << run.GetSummary().toStdString() << std::flush;
  if (!result) {
    return Fail(result.GetFailure());
  }
  return run.GetCounts().GetLost() == 0 ? EXIT_SUCCESS : EXIT_LOSS;
}

/// Gives the camera its user's settings back.
int RunRescue(const SCameraOptions &stCamera)
{
  const OpenedCamera opened = OpenCamera(stCamera);
  if (!opened) {
    return Fail(opened.GetFailure());
  }
  const ffc::Result<QStringList> changes = CSettingsRescue(*opened.GetValue()->GetDeviceNodeMap()).Restore();
  if (!changes) {
    return Fail(changes.GetFailure());
  }
  for (const QString &strChange : changes.GetValue()) {
    std::cout << strChange.toStdString() << '\n';
  }
  std::cout << (changes.GetValue().isEmpty() ? "The camera has the settings of UserSet0 already."
                                             : "The camera has the settings of UserSet0 again.")
            << std::endl;
  return EXIT_SUCCESS;
}

int RunLive(const SCommandLine &stCommandLine)
{
  const SCameraOptions &stCamera = stCommandLine.stOptions.stCamera;
  const SPluginOptions &stPlugin = stCommandLine.stOptions.stPlugin;
  const std::string &strScreenshots = stCommandLine.stTask.strScreenshots;
  CLanguage language(stPlugin.bChinese);
  ApplyLook(RestoreLook());
  CMainWindow window(stCamera, stPlugin, OpenCamera);
  window.SetPreset(stCommandLine.stPreset);
  const ffc::Result<> opened = window.OpenCamera(stCamera);
  if (!opened) {
    return Fail(opened.GetFailure());
  }
  window.show();
  if (!strScreenshots.empty()) {
    const ffc::Result<> result = CScreenshotRun(window, QString::fromStdString(strScreenshots)).Run();
    return result ? EXIT_SUCCESS : Fail(result.GetFailure());
  }
  return QApplication::exec();
}

} // namespace

int main(int nArguments, char **pArguments)
{
  const SCommandLine stCommandLine = ParseCommandLine(nArguments, pArguments);
  if (!stCommandLine.bRun) {
    std::ostream &stream = stCommandLine.nExitCode == 0 ? std::cout : std::cerr;
    stream << (stCommandLine.nExitCode == 0 ? "" : "ffchost: ") << stCommandLine.strText << std::endl;
    return stCommandLine.nExitCode;
  }
  if (stCommandLine.stTask.bListCameras) {
    std::cout << DescribeRealCameras(stCommandLine.stTask.bVerbose) << std::flush;
    return EXIT_SUCCESS;
  }
  const bool bRescue = stCommandLine.stTask.bRestoreSettings;
  const bool bRecord = stCommandLine.stOptions.stRecording.nFrames > 0;
  const bool bHeadless = stCommandLine.stTask.bHeadless || bRescue || bRecord || !HasDisplay();
  if (!bHeadless && !stCommandLine.strNotInWindow.empty()) {
    std::cerr << "ffchost: " << stCommandLine.strNotInWindow << " belongs to --headless" << std::endl;
    return EXIT_USAGE;
  }
  if (bHeadless && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    PrepareOffScreen();
  }
  if (bHeadless) {
    qInstallMessageHandler(DropRemarks);
  }
  // A file dialog of the desktop's own could not be driven.
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, bHeadless);
  // Without the options: the toolkit has one of its own called --plugin.
  int nToolkitArguments = 1;
  const QApplication app(nToolkitArguments, pArguments);
  // Where the window remembers how it was left.
  QCoreApplication::setOrganizationName(QStringLiteral("FlatFieldCorrection"));
  QCoreApplication::setApplicationName(QStringLiteral("ffchost"));
  const SHeadlessOptions &stOptions = stCommandLine.stOptions;
  if (bRescue) {
    return RunRescue(stOptions.stCamera);
  }
  if (bRecord) {
    return RunRecording(stOptions);
  }
  return bHeadless ? RunHeadless(stOptions) : RunLive(stCommandLine);
}
