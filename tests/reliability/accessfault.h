/// \file
/// Accesses to a camera's features that go wrong.
#pragma once

#include <cstdint>
#include <optional>

#include <GenApi/GenApi.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "tests/support/failnthaccess.h"
#include "tests/support/refusals.h"

/// Counts the accesses of all maps that it is given to, and fails some of them. On one thread.
class CAccessFault {
public:
  static constexpr uint64_t FOR_EVER = UINT64_MAX;

  /// Fails the accesses nFirst to nLast from now on, counted from 1.
  /// \param eFailure what they throw; none: look-ups give no node, and all others succeed
  void Arm(uint64_t nFirst, uint64_t nLast, std::optional<ffc::test::EAccessFailure> eFailure);
  /// Counts from 0 again and fails nothing.
  void Disarm() { Arm(0, 0, std::nullopt); }
  uint64_t GetCount() const { return m_nCount; }
  /// Whether an access has failed since Arm.
  bool HasFailed() const { return m_bFailed; }

  /// What the maps refuse besides, whatever the count.
  CRefusals &Refusals() { return m_refusals; }

  /// One access. \return whether a look-up shall give no node; throws when it shall fail otherwise
  bool Count(const ffc::genapi::SNodeAccess &stAccess);

private:
  uint64_t m_nFirst = 0;
  uint64_t m_nLast = 0;
  std::optional<ffc::test::EAccessFailure> m_eFailure;
  uint64_t m_nCount = 0;
  bool m_bFailed = false;
  CRefusals m_refusals;
};

/// A node map whose accesses a fault may fail.
class CFaultyNodeMap final : public GenApi::INodeMap {
public:
  /// \param inner, fault outlive this map
  CFaultyNodeMap(GenApi::INodeMap &inner, CAccessFault &fault);

  /// Nodes of these names come from another map from now on, which outlives the replacement; null: none does.
  void Replace(const GenApi::INodeMap *pOther) { m_pOther = pOther; }

  GenApi::INode *GetNode(const GenICam::gcstring &strName) const override;
  void GetNodes(GenApi::NodeList_t &listNodes) const override { m_observed.GetNodes(listNodes); }

private:
  ffc::genapi::CObservedNodeMap m_observed;
  const GenApi::INodeMap *m_pOther = nullptr;
  mutable bool m_bNoNode = false; // the look-up under way gives none
};
