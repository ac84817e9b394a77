/// \file
/// The records that cross the host interface, and their codes.
///
/// Host and plug-in are built apart: size, packing and offsets of these records are the contract
/// between them, and are checked where they are declared. All are for 64-bit processes.
#pragma once

#include <cstddef>
#include <cstdint>

#include <QMetaType>

class QWidget;

/// Message codes of PLUGIN_MSG.
enum EPluginMsgCode : int32_t {
  PLUGIN_MSG_SHOW_DIALOG = 1,      ///< host to plug-in
  PLUGIN_MSG_HIDE_DIALOG = 2,      ///< host to plug-in
  PLUGIN_MSG_ACQUISITION_ON = 10,  ///< plug-in to host: start the stream
  PLUGIN_MSG_ACQUISITION_OFF = 11, ///< plug-in to host: stop the stream
  PLUGIN_MSG_DEVICE_NAME = 13,     ///< host to plug-in: pText holds the camera's new display name
  PLUGIN_MSG_DIALOG_HIDDEN = 1001, ///< plug-in to host
  PLUGIN_MSG_DIALOG_SHOWN = 1002,  ///< plug-in to host
};

/// Property keys of IPluginExtended::GetProperty.
enum EPluginProperty : uint32_t {
  PLUGIN_PROPERTY_IN_USE = 1003, ///< int: 1 when the dialog is visible or frames are being corrected
};

/// The one mode of IPlugin::ProcessImage.
constexpr uint32_t PLUGIN_PROCESS_MODE_FRAME = 1;

#pragma pack(push, 4)

/// One image, not owned.
struct PLUGIN_IMAGE_INFO {
  int32_t nStatus = 0;      ///< the host's own; not read by the plug-in
  int32_t nPixelFormat = 0; ///< PFNC code
  int32_t nWidth = 0;       ///< pixels per line
  int32_t nHeight = 0;      ///< lines
  int32_t nPayloadSize = 0; ///< bytes in the buffer
  void *pBuffer = nullptr;  ///< tightly packed lines
  uint8_t anReserved[64] = {};
};

/// A message between host and plug-in. Copied by queued connections; pText stays the sender's.
struct PLUGIN_MSG {
  int32_t nMsgCode = 0; ///< EPluginMsgCode
  PLUGIN_IMAGE_INFO stImage1;
  PLUGIN_IMAGE_INFO stImage2;
  const char *pText = nullptr; ///< local 8-bit text, with PLUGIN_MSG_DEVICE_NAME only
  uint8_t anReserved[56] = {};
};

/// Filled by the host and kept alive by it until IPlugin::Uninitialize. The node maps are
/// GenApi::INodeMap pointers.
struct PLUGIN_INIT_PARAM {
  uint8_t anHost1[16] = {};          ///< the host's own
  void *pOutputNodeMap = nullptr;    ///< features of the image as delivered to the plug-in
  void *pStreamNodeMap = nullptr;    ///< features of the stream
  void *pDeviceNodeMap = nullptr;    ///< the camera's features; must not be null
  uint8_t anHost2[76] = {};          ///< the host's own
  uint32_t nLanguage = 0;            ///< 1: Chinese; else English
  QWidget *pParent = nullptr;        ///< parent of the dialog, may be null
  const char *pDeviceName = nullptr; ///< local 8-bit text, may be null
};

/// What ProcessImage did with a frame. The plug-in sets the flag and never clears it: the host clears
/// it before each call.
struct PLUGIN_PROCESS_RESULT {
  int32_t nReserved = 0;  ///< not touched
  uint8_t bCorrected = 0; ///< 1: the output buffer holds a corrected image
};

#pragma pack(pop)

/// File version of the module.
struct PLUGIN_VERSION {
  uint16_t nMajor = 0;
  uint16_t nMinor = 0;
  uint16_t nBuild = 0;
  uint16_t nRevision = 0;
};

static_assert(sizeof(void *) == 8, "the host interface is defined for 64-bit processes");

static_assert(sizeof(PLUGIN_IMAGE_INFO) == 92 && alignof(PLUGIN_IMAGE_INFO) == 4);
static_assert(offsetof(PLUGIN_IMAGE_INFO, nStatus) == 0);
static_assert(offsetof(PLUGIN_IMAGE_INFO, nPixelFormat) == 4);
static_assert(offsetof(PLUGIN_IMAGE_INFO, nWidth) == 8);
static_assert(offsetof(PLUGIN_IMAGE_INFO, nHeight) == 12);
static_assert(offsetof(PLUGIN_IMAGE_INFO, nPayloadSize) == 16);
static_assert(offsetof(PLUGIN_IMAGE_INFO, pBuffer) == 20);
static_assert(offsetof(PLUGIN_IMAGE_INFO, anReserved) == 28);

static_assert(sizeof(PLUGIN_MSG) == 252 && alignof(PLUGIN_MSG) == 4);
static_assert(offsetof(PLUGIN_MSG, nMsgCode) == 0);
static_assert(offsetof(PLUGIN_MSG, stImage1) == 4);
static_assert(offsetof(PLUGIN_MSG, stImage2) == 96);
static_assert(offsetof(PLUGIN_MSG, pText) == 188);
static_assert(offsetof(PLUGIN_MSG, anReserved) == 196);

static_assert(alignof(PLUGIN_INIT_PARAM) == 4 && alignof(PLUGIN_PROCESS_RESULT) == 4);
static_assert(offsetof(PLUGIN_INIT_PARAM, pOutputNodeMap) == 16);
static_assert(offsetof(PLUGIN_INIT_PARAM, pStreamNodeMap) == 24);
static_assert(offsetof(PLUGIN_INIT_PARAM, pDeviceNodeMap) == 32);
static_assert(offsetof(PLUGIN_INIT_PARAM, nLanguage) == 116);
static_assert(offsetof(PLUGIN_INIT_PARAM, pParent) == 120);
static_assert(offsetof(PLUGIN_INIT_PARAM, pDeviceName) == 128);

static_assert(sizeof(PLUGIN_PROCESS_RESULT) == 8);
static_assert(offsetof(PLUGIN_PROCESS_RESULT, bCorrected) == 4);
static_assert(sizeof(PLUGIN_VERSION) == 8);

Q_DECLARE_METATYPE(PLUGIN_MSG)

namespace ffc::pluginobject {

/// A message with all 252 bytes zero but its code, as every sender makes it.
PLUGIN_MSG MakePluginMsg(EPluginMsgCode eCode);

} // namespace ffc::pluginobject
