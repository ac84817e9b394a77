/// \file
/// One camera opened in the viewer, with the plug-in on it.
#pragma once

#include <memory>

#include <QByteArray>
#include <QObject>
#include <QString>

#include "camera/icamera.h"
#include "genapi/softwarenodemap/observednodemap.h"
#include "host/viewer/framepipeline.h"
#include "host/viewer/iacquisitionobserver.h"
#include "host/viewer/pluginmodule.h"

class QWidget;

namespace ffc::host {

/// "ffchost" and its version.
QString GetToolName();

enum class ELanguage : uint32_t { English = 0, Chinese = 1 };

/// Connects a camera, the plug-in and the frame pipeline, and takes them apart in the right order: stream,
/// plug-in object, module, camera. Used on the user-interface thread.
class CViewer : public QObject {
  Q_OBJECT

public:
  explicit CViewer(std::unique_ptr<camera::ICamera> pCamera);
  ~CViewer() override;

  /// \param pObserver outlives the viewer; null for none. Set before Open.
  void SetAcquisitionObserver(IAcquisitionObserver *pObserver) { m_pObserver = pObserver; }

  /// \param pWindow the plug-in's dialog stands over it, and closes with it; outlives the
  ///   viewer; null for none. Set before Open.
  void SetDialogParent(QWidget *pWindow) { m_pDialogParent = pWindow; }

  /// Loads the module and binds its plug-in to the camera.
  /// \param strPluginPath empty: the module beside the executable
  Result<> Open(const QString &strPluginPath, ELanguage eLanguage);
  /// Takes plug-in and camera apart; nothing else but the destructor may be called afterwards. Where the stream was
  /// stopped before, the camera is asked nothing but what the plug-in asks when it goes.
  /// \return the camera, which delivers nothing any more
  std::unique_ptr<camera::ICamera> Dismantle();
  /// Uninitialises the plug-in and binds it anew, as after closing and opening the camera. The stream stops.
  Result<> Reopen();

  void ShowDialog();
  void HideDialog();
  bool IsDialogVisible() const;
  bool HasPlugin() const { return m_bInitialized; }
  /// As the plug-in reports it: it corrects live frames, or its dialog is visible.
  bool IsPluginInUse() const;
  /// Names and versions of host and module.
  QString DescribePrograms() const;
  /// The plug-in's words for a status of its own; empty without a plug-in.
  QString GetStatusText(int32_t nStatus) const;

  Result<> StartStream();
  void StopStream();

  camera::ICamera &GetCamera() { return *m_pCamera; }
  CFramePipeline &GetPipeline() { return m_pipeline; }
  /// Whether the camera started when it was last asked to, by the plug-in or by StartStream.
  Result<> GetStreamState() const { return m_streamState; }

signals:
  /// The plug-in made the stream start or stop.
  void SigStreamChanged();

private slots:
  void SlotPluginMsg(const PLUGIN_MSG &stPluginMsg);

private:
  Result<> Bind();
  void Release();
  void Send(EPluginMsgCode eCode);
  GenApi::INodeMap *WatchDeviceMap();
  void Watch(const genapi::SNodeAccess &stAccess);

  std::unique_ptr<camera::ICamera> m_pCamera;
  CPluginModule m_module;
  CFramePipeline m_pipeline;
  IAcquisitionObserver *m_pObserver = nullptr;
  QWidget *m_pDialogParent = nullptr;
  std::unique_ptr<genapi::CObservedNodeMap> m_pWatchedMap; ///< what the plug-in gets when somebody observes
  bool m_bAcquiring = false;
  PLUGIN_INIT_PARAM m_stInitParam; ///< the plug-in keeps the pointer until Uninitialize
  QByteArray m_byteDeviceName;
  bool m_bInitialized = false;
  Result<> m_streamState;
};

} // namespace ffc::host
