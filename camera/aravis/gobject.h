/// \file
/// Owners of what the camera library hands out.
#pragma once

#include <memory>

#include <glib-object.h>

namespace ffc::camera {

struct SObjectRelease {
  void operator()(void *pObject) const { g_object_unref(pObject); }
};

/// Owns one reference.
template <class TObject>
using CObjectPointer = std::unique_ptr<TObject, SObjectRelease>;

/// One more reference to an object that somebody else owns too.
template <class TObject>
CObjectPointer<TObject> ShareObject(TObject *pObject)
{
  return CObjectPointer<TObject>(static_cast<TObject *>(g_object_ref(pObject)));
}

/// Where one call of the library leaves its error.
class CErrorSlot {
public:
  CErrorSlot() = default;
  ~CErrorSlot() { g_clear_error(&m_pError); }
  CErrorSlot(const CErrorSlot &) = delete;
  CErrorSlot &operator=(const CErrorSlot &) = delete;

  GError **Out() { return &m_pError; }
  /// Null when the call succeeded.
  const GError *Get() const { return m_pError; }
  /// Empty when the call succeeded.
  const char *GetMessage() const { return m_pError == nullptr ? "" : m_pError->message; }

private:
  GError *m_pError = nullptr;
};

} // namespace ffc::camera
