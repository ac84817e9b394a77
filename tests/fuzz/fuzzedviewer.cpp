#include "tests/fuzz/fuzzedviewer.h"

#include <utility>

#include <QLabel>
#include <QPushButton>

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"
#include "pluginobject/statuscode.h"
#include "tests/fuzz/fuzzedfile.h"
#include "tests/fuzz/require.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/support/modalanswer.h"

using ffc::genapi::CSoftwareNodeMap;
using ffc::pluginobject::CFeatureAccess;
using ffc::process::EProcessKind;
using namespace ffc::test;

namespace {

void *ToPointer(CSoftwareNodeMap &map)
{
  return static_cast<GenApi::INodeMap *>(&map);
}

// An application without a display, for a program that has none. It stays: at the program's end the toolkit's own
// statics go before it would.
void MakeApplication()
{
  if (QCoreApplication::instance() == nullptr) {
    static int s_nArgc = 1;
    static char s_acName[] = "fuzzer";
    static char *s_apArgv[] = {s_acName, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication *const APPLICATION = new QApplication(s_nArgc, s_apArgv);
    (void)APPLICATION;
  }
}

} // namespace

// Its process loads the fuzzer's own file without asking anybody.
class CFuzzedViewer::CPlugin : public CShadingCorrectionPlugin {
public:
  explicit CPlugin(CFuzzedViewer &viewer) : m_viewer(viewer) {}

  int32_t InitDialogProcess() override
  {
    m_viewer.Dialog().SetProcessFactory([](EProcessKind, const CFeatureAccess &deviceFeatures,
                                           const CFeatureAccess &streamFeatures,
                                           std::unique_ptr<IShadingCorrectionProcess> &pProcess) {
      auto pHostProcess = std::make_unique<CShadingCorrectionPro_PC>(deviceFeatures, streamFeatures);
      InstallChooser(*pHostProcess, CFuzzedFile::GetFileName());
      pProcess = std::move(pHostProcess);
      return PLUGIN_STATUS_SUCCESS;
    });
    return CShadingCorrectionPlugin::InitDialogProcess();
  }

private:
  CFuzzedViewer &m_viewer;
};

CFuzzedViewer &CFuzzedViewer::Get(bool bColour)
{
  // They go when the application does, if that ends before the program.
  static CFuzzedViewer *s_apViewers[2] = {};
  CFuzzedViewer *&pViewer = s_apViewers[bColour ? 1 : 0];
  if (pViewer == nullptr) {
    MakeApplication();
    pViewer = new CFuzzedViewer(bColour ? "BayerRG12" : "Mono12");
    qAddPostRoutine([] {
      for (auto *&pLeft : s_apViewers) {
        delete std::exchange(pLeft, nullptr);
      }
    });
  }
  return *pViewer;
}

CFuzzedViewer::CFuzzedViewer(const std::string &strPixelFormat) : m_camera(strPixelFormat, WIDTH, HEIGHT)
{
  m_stParam.pOutputNodeMap = ToPointer(m_camera.Output());
  m_stParam.pStreamNodeMap = ToPointer(m_camera.Stream());
  m_stParam.pDeviceNodeMap = ToPointer(m_camera.Device());
  m_stParam.pParent = &m_parent;
  m_pPlugin = std::make_unique<CPlugin>(*this);
  Require(m_pPlugin->Initialize(&m_stParam) == PLUGIN_STATUS_SUCCESS, "the plug-in opens");
  // A gain of 2 and a dark level of 5 for every pixel.
  CExactBuffer table(std::size_t{WIDTH} * HEIGHT * 4);
  for (std::size_t i = 0; i < table.GetSize(); i += 2) {
    table.GetData()[i + 1] = i < table.GetSize() / 2 ? 0x20 : 0;
    table.GetData()[i] = i < table.GetSize() / 2 ? 0 : 5 << 4U;
  }
  CFuzzedFile::Write(table);
  Dialog().Slot_objLoadPC_Button_clicked();
  Require(Dialog().IsApplyingCorrection(), "coefficients from a file start the preview");
}

CFuzzedViewer::~CFuzzedViewer() = default;

CShadingCorrectionDlg &CFuzzedViewer::Dialog() const
{
  return *m_parent.findChild<CShadingCorrectionDlg *>();
}

QString CFuzzedViewer::GetTitle() const
{
  return Dialog().findChild<QLabel *>(QStringLiteral("TitleContent"))->text();
}

void CFuzzedViewer::StartPreview()
{
  if (!Dialog().IsApplyingCorrection()) {
    Dialog().SlotPreviewCorrectionEffect(true);
  }
}

void CFuzzedViewer::Click(const char *pButton)
{
  const CModalAnswer answer;
  Dialog().findChild<QPushButton *>(QString::fromLatin1(pButton))->click();
}
