#include <cstdlib>
#include <iostream>

#include <QApplication>

#include "host/desktop.h"
#include "host/headless/headlessrun.h"
#include "host/options/cameraopening.h"
#include "host/options/commandline.h"
#include "host/options/language.h"
#include "host/viewer/settingsrescue.h"
#include "host/window/mainwindow.h"
#include "host/window/windowtour.h"

using namespace ffc::host;

namespace {

int Fail(const QString &strError)
{
  std::cerr << "ffchost: " << strError.toStdString() << std::endl;
  return EXIT_FAILURE;
}

/// A run without a person prints its own lines only; the toolkit's remarks about its surroundings are none.
void DropRemarks(QtMsgType eType, const QMessageLogContext &, const QString &strMessage)
{
  if (eType == QtCriticalMsg || eType == QtFatalMsg) {
    std::cerr << strMessage.toStdString() << std::endl;
  }
}

int RunHeadless(const SHostOptions &stOptions)
{
  CProgressLine progress(IsErrorStreamTerminal() ? &std::cerr : nullptr);
  CHeadlessRun run(stOptions, OpenCamera, progress);
  const QString strError = run.Run();
  if (!strError.isEmpty()) {
    return Fail(strError);
  }
  std::cout << run.GetSummary().toStdString();
  std::cout << "  written to " << stOptions.strOutFolder << std::endl;
  return EXIT_SUCCESS;
}

/// Gives the camera its user's settings back.
int RunRescue(const SHostOptions &stOptions)
{
  const SOpenedCamera stOpened = OpenCamera(stOptions);
  if (stOpened.pCamera == nullptr) {
    return Fail(stOpened.strError);
  }
  CSettingsRescue rescue(*stOpened.pCamera->GetDeviceNodeMap());
  const QString strError = rescue.Restore();
  if (!strError.isEmpty()) {
    return Fail(strError);
  }
  for (const QString &strChange : rescue.GetChanges()) {
    std::cout << strChange.toStdString() << '\n';
  }
  std::cout << (rescue.GetChanges().isEmpty() ? "The camera has the settings of UserSet0 already."
                                              : "The camera has the settings of UserSet0 again.")
            << std::endl;
  return EXIT_SUCCESS;
}

int RunLive(const SHostOptions &stOptions)
{
  CLanguage language(stOptions.bChinese);
  CMainWindow window(stOptions, OpenCamera);
  const QString strError = window.OpenCamera(stOptions);
  if (!strError.isEmpty()) {
    return Fail(strError);
  }
  window.show();
  if (!stOptions.strTourFolder.empty()) {
    const QString strTourError = CWindowTour(window, QString::fromStdString(stOptions.strTourFolder)).Run();
    return strTourError.isEmpty() ? EXIT_SUCCESS : Fail(strTourError);
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
  if (stCommandLine.stOptions.bListCameras) {
    std::cout << DescribeRealCameras() << std::flush;
    return EXIT_SUCCESS;
  }
  const bool bRescue = stCommandLine.stOptions.bRestoreSettings;
  const bool bHeadless = stCommandLine.stOptions.bHeadless || bRescue || !HasDisplay();
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
  if (bRescue) {
    return RunRescue(stCommandLine.stOptions);
  }
  return bHeadless ? RunHeadless(stCommandLine.stOptions) : RunLive(stCommandLine.stOptions);
}
