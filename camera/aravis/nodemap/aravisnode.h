/// \file
/// What the adapters of all kinds of nodes have in common.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <type_traits>

#include <GenApi/GenApi.h>
#include <arv.h>

#include "camera/aravis/cameralink.h"
#include "camera/aravis/gobject.h"
#include "camera/aravis/nodemap/nodeexaminer.h"
#include "camera/idescribednode.h"
#include "genapi/softwarenodemap/nodeguard.h"

namespace ffc::camera {

/// What the nodes of one map share. The library has no lock of its own: every use of a node, reading its name
/// apart, holds this one.
struct SNodeMapState {
  std::recursive_mutex mutex;
  std::shared_ptr<CCameraLink> pLink;
  CNodeExaminer examiner;
};

/// One node of the library behind the checks that it leaves out. Only with the lock held, unless said otherwise.
class CAravisNodeCore {
public:
  CAravisNodeCore(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  /// From any thread.
  genapi::CNodeGuard::Lock Acquire() const { return m_guard.Acquire(); }
  /// Takes the lock. NA when the camera cannot tell.
  GenApi::EAccessMode GetAccessMode() const;
  /// Name and exceptions; its lock is the map's.
  const genapi::CNodeGuard &Guard() const { return m_guard; }

  /// AccessException for a node that is not implemented or not available, or whose description cannot be used;
  /// RuntimeException when the camera is lost.
  void CheckAvailable() const { CheckNow(); }
  /// Throws only when the camera is lost.
  bool IsAvailable() const;
  /// Also AccessException when verified and not readable.
  void CheckReadable(bool bVerify) const { m_guard.CheckReadable(CheckNow(), bVerify); }
  /// Also AccessException when verified and not writable, and always when the description has no way to write.
  void CheckWritable(bool bVerify) const;

  /// Runs fnCall(GError **) and turns its error into the exception that GenApi has for it.
  template <class TCall>
  auto Call(TCall fnCall) const
  {
    CErrorSlot error;
    if constexpr (std::is_void_v<decltype(fnCall(error.Out()))>) {
      fnCall(error.Out());
      Judge(error);
    } else {
      auto result = fnCall(error.Out());
      Judge(error);
      return result;
    }
  }

  /// The same for a minimum, maximum or increment that the description need not have: then the library returns
  /// the widest there is.
  template <class TCall>
  auto CallForLimit(TCall fnCall) const
  {
    CErrorSlot error;
    auto result = fnCall(error.Out());
    if (!g_error_matches(error.Get(), ARV_GC_ERROR, ARV_GC_ERROR_PROPERTY_NOT_DEFINED)) {
      Judge(error);
    }
    return result;
  }

  std::string GetToolTip() const
  {
    const char *pText = arv_gc_feature_node_get_tooltip(m_pNode);
    return pText == nullptr ? std::string() : std::string(pText);
  }

private:
  GenApi::EAccessMode CheckNow() const;
  void CheckLengths() const;
  void Judge(const CErrorSlot &error) const;

  ArvGcFeatureNode *m_pNode;
  genapi::CNodeGuard m_guard;
  CCameraLink &m_link;
  std::string m_strFault;                      ///< of its description; empty: none
  std::vector<ArvGcRegister *> m_listVariable; ///< whose length the camera tells
};

/// A node with one GenApi interface.
template <class TInterface>
class CAravisNode : public GenApi::INode, public TInterface, public IDescribedNode {
public:
  GenICam::gcstring GetName(bool = false) const override { return m_core.Guard().GetName().c_str(); }
  GenApi::INode *GetNode() override { return this; }
  std::string GetToolTip() const override { return m_core.GetToolTip(); }
  GenApi::EAccessMode GetAccessMode() const override { return m_core.GetAccessMode(); }

protected:
  CAravisNode(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
    : m_core(pNode, std::move(strName), state)
  {
  }

  CAravisNodeCore m_core;
};

/// A node without a value, such as a category.
class CAravisPlainNode final : public GenApi::INode {
public:
  CAravisPlainNode(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
    : m_core(pNode, std::move(strName), state)
  {
  }

  GenICam::gcstring GetName(bool = false) const override { return m_core.Guard().GetName().c_str(); }
  GenApi::EAccessMode GetAccessMode() const override { return m_core.GetAccessMode(); }

private:
  CAravisNodeCore m_core;
};

} // namespace ffc::camera
