/// \file
/// The built module in a host, with a camera in software and a user at the dialog.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <QCheckBox>
#include <QLabel>
#include <QLibrary>
#include <QPushButton>
#include <QSlider>
#include <QTemporaryDir>

#include "pluginobject/iplugin.h"
#include "tests/pluginobject/shadingcorrection/process/processrig.h"
#include "tests/reliability/accessfault.h"
#include "tests/support/correctingcamera.h"
#include "tests/support/framepump.h"
#include "tests/support/modalanswer.h"

enum class EMode { Host, FlatField, Vignetting };

/// What a user does at the dialog; Reopen closes the camera in the host and opens it again.
enum class EOperation {
  Dark,
  Bright,
  Execute,
  Preview,
  LoadFlash,
  SaveFlash,
  LoadFile,
  SaveFile,
  FrameCount,
  ExpectGray,
  Reopen
};

const char *GetName(EMode eMode);
const char *GetName(EOperation eOperation);
/// Those that the dialog offers for a camera.
std::vector<EOperation> ListOperations(EMode eMode);

/// What a user saw after an operation.
struct SOutcome {
  std::vector<std::string> listBoxes;
  std::string strPrompt; ///< empty when the operation set none
  int32_t nStatus = 0;   ///< of Reopen

  std::string Describe() const;
};

/// Relays the module's messages, by name as a foreign host does.
class CMessageRelay : public QObject {
  Q_OBJECT

public:
  explicit CMessageRelay(std::function<void(int32_t)> fnReceive) : m_fnReceive(std::move(fnReceive)) {}

public slots:
  void SlotReceive(const PLUGIN_MSG &stPluginMsg) { m_fnReceive(stPluginMsg.nMsgCode); }

private:
  std::function<void(int32_t)> m_fnReceive;
};

/// Loads the module by its two exports. The frame thread delivers through ProcessImage while the camera streams,
/// which it does from the beginning. User-interface thread, but for what is said to be otherwise.
class CModuleRig {
public:
  /// Makes a frame, on the frame thread; an empty one is lost on its way. Null: a uniform one.
  using FnFrame = std::function<std::vector<uint8_t>(const ffc::test::CTestCamera &camera, uint32_t nGray)>;

  explicit CModuleRig(EMode eMode, const std::string &strPixelFormat = "Mono8");
  ~CModuleRig();
  CModuleRig(const CModuleRig &) = delete;
  CModuleRig &operator=(const CModuleRig &) = delete;

  EMode GetMode() const { return m_eMode; }
  ffc::test::CTestCamera &Camera() { return *m_pCamera; }
  CAccessFault &Fault() { return m_fault; }
  ffc::test::CModalAnswer &Answer() { return m_answer; }
  IPlugin &Plugin() { return *m_pPlugin; }
  QLibrary &Library() { return m_library; }
  QString Path(const QString &strFile) const { return m_folder.filePath(strFile); }

  /// Initialises the plug-in and shows its dialog.
  int32_t Open();
  void Close();
  /// Destroys the plug-in object, after which nothing can be opened any more.
  void Destroy();
  /// The dialog belongs to this window from the next Open on; null: to none.
  void SetParent(QWidget *pParent) { m_stParam.pParent = pParent; }
  QWidget *Dialog() const { return m_pDialog; }
  /// Brings dialog and camera into a state in which every operation succeeds and has something to change.
  void Prepare(EOperation eOperation);
  /// Does it once, as a user.
  SOutcome Do(EOperation eOperation);
  /// A camera with coefficients in force, in its flash and in a file. \return what went wrong, empty when nothing
  std::string Correct();

  /// Features of these names, of the camera and of its output, are those of another map from now on; null: its own.
  void ReplaceFeatures(const GenApi::INodeMap *pOther);
  /// Frames from now on, as bytes and as the host describes them.
  void SetFrame(FnFrame fnFrame);
  void SetImageInfo(std::function<void(PLUGIN_IMAGE_INFO &)> fnChange);
  void SetRate(double dFramesPerSecond) { m_pPump->SetRate(dFramesPerSecond); }
  uint64_t GetDelivered() const { return m_nDelivered; }
  uint64_t GetCorrected() const { return m_nCorrected; }
  bool IsStreaming() const { return m_bStreaming; }
  void SetStreaming(bool bStreaming);
  /// Called with each message before the rig acts on it.
  void SetMessageHook(std::function<void(int32_t)> fnHook) { m_fnMessageHook = std::move(fnHook); }

  /// The camera's features as texts, but for those that an operation need not put back.
  ffc::test::Settings TakeSettings();
  /// What must not be so between two operations; empty when all is well.
  std::string FindTrouble() const;

  template <class TWidget>
  TWidget *Find(const char *pName) const
  {
    return m_pDialog->findChild<TWidget *>(QString::fromLatin1(pName));
  }

private:
  void Press(const char *pName);
  void Act(EOperation eOperation);
  void HandleMessage(int32_t nCode);
  void Deliver();
  void WaitForPrompt();

  const EMode m_eMode;
  QTemporaryDir m_folder;
  std::unique_ptr<ffc::test::CTestCamera> m_pCamera;
  CAccessFault m_fault;
  CFaultyNodeMap m_deviceMap;
  CFaultyNodeMap m_streamMap;
  CFaultyNodeMap m_outputMap;
  PLUGIN_INIT_PARAM m_stParam;
  ffc::test::CModalAnswer m_answer;
  QLibrary m_library;
  IPlugin *m_pPlugin = nullptr;
  CMessageRelay m_relay;
  QWidget *m_pDialog = nullptr;
  int32_t m_nStatus = 0;
  std::function<void(int32_t)> m_fnMessageHook;
  std::mutex m_mutex; // guards what the frame thread uses
  FnFrame m_fnFrame;
  std::function<void(PLUGIN_IMAGE_INFO &)> m_fnImageInfo;
  bool m_bStreaming = true;
  std::atomic<bool> m_bCapOn{false};
  std::atomic<uint64_t> m_nDelivered{0};
  std::atomic<uint64_t> m_nCorrected{0};
  std::vector<uint8_t> m_listOutput; // frame thread
  std::unique_ptr<ffc::test::CFramePump> m_pPump;
};
