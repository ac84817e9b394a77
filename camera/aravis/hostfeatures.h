/// \file
/// The features that a host adds to a real camera: its output and its stream.
#pragma once

#include <functional>
#include <string>

#include <GenApi/GenApi.h>

#include "camera/aravis/framequeue.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

/// The output mirrors the camera: what it is set to is what is delivered. Its nodes ask the camera's map, never the
/// other way round; where the camera lacks a feature, so does the output.
class CHostFeatures {
public:
  /// \param deviceMap outlives this
  /// \param fnHandling is called with each written StreamBufferHandlingMode
  CHostFeatures(GenApi::INodeMap &deviceMap, const std::string &strDisplayName,
                std::function<void(EBufferHandling)> fnHandling);

  genapi::CSoftwareNodeMap &GetOutputMap() { return m_outputMap; }
  genapi::CSoftwareNodeMap &GetStreamMap() { return m_streamMap; }

private:
  void AddMirror(const char *pName, GenApi::IInteger *pSource);
  void AddPixelFormat(GenApi::IEnumeration *pSource);

  genapi::CSoftwareNodeMap m_streamMap;
  genapi::CSoftwareNodeMap m_outputMap;
};

} // namespace ffc::camera
