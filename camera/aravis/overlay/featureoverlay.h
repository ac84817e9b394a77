/// \file
/// A camera's features under the names and in the units that the plug-in expects.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <GenApi/GenApi.h>

#include "camera/aravis/nodemap/aravisnodemap.h"
#include "camera/aravis/overlay/floatalias.h"
#include "camera/featurenote.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

/// Stands before a camera's own node map. Nodes that the plug-in needs, and that the camera has under a name, as a
/// kind of number or in a unit from before the present standard names, answer under the present ones; a Gain or a
/// TriggerMode that it lacks altogether is supplied; a colour filter that is none is hidden. Everything else passes
/// through. What a description has is decided once, when this is made, and nothing is written for it.
class CFeatureOverlay final : public GenApi::INodeMap {
public:
  /// \param map outlives this
  explicit CFeatureOverlay(const CAravisNodeMap &map);
  CFeatureOverlay(const CFeatureOverlay &) = delete;
  CFeatureOverlay &operator=(const CFeatureOverlay &) = delete;

  GenApi::INode *GetNode(const GenICam::gcstring &strName) const override;
  /// What the camera has, a node that stands for another in its place; at the end what it has under other names only.
  void GetNodes(GenApi::NodeList_t &listNodes) const override;

  /// What is not as the camera has it, in the order of the plug-in's use.
  const std::vector<SFeatureNote> &GetNotes() const { return m_listNotes; }

private:
  struct SCandidate {
    SFloatSource stSource;
    std::string strText; ///< the source in words; empty: as it is
  };

  void AddExposureTime();
  void AddGain();
  void AddTriggerMode();
  void AddColorFilter();
  void AddBalanceRatio();
  void CheckIntegers();
  std::optional<SCandidate> MakeCandidate(const char *pName, const char *pUnitText, double dFactor) const;
  std::optional<SCandidate> FindExposure() const;
  void Use(const char *pFeature, const SCandidate &stCandidate);
  void Replace(const char *pFeature, GenApi::INode *pNode);
  void Note(SFeatureNote::EKind eKind, const char *pFeature, const std::string &strSource);
  GenApi::INode *FindThere(const char *pName) const;

  const CAravisNodeMap &m_map;
  genapi::CSoftwareNodeMap m_supplied;
  std::vector<std::unique_ptr<GenApi::INode>> m_listOwn;
  std::map<std::string, GenApi::INode *> m_mapReplaced; ///< null: there is no such node any more
  std::vector<SFeatureNote> m_listNotes;
};

} // namespace ffc::camera
