/// \file
/// What the user draws on the image.
#pragma once

#include <QLine>
#include <QPainter>
#include <QRect>

#include "host/window/viewtransform.h"

namespace ffc::host {

/// What dragging on the image does.
enum class EImageTool { Pan, Region, Line };

/// A region whose samples are measured, and a line whose profile is plotted, in pixels of the image. Either may be
/// missing.
class CImageMarks {
public:
  void SetTool(EImageTool eTool) { m_eTool = eTool; }
  EImageTool GetTool() const { return m_eTool; }

  /// Begins another region or line, as the tool says.
  void Begin(const QPoint &ptPixel);
  /// The other end of what was begun.
  void Extend(const QPoint &ptPixel);
  void Clear();
  /// Forgets what does not lie in an image of this size.
  void SetImageSize(const QSize &szImage);

  /// Empty: none.
  QRect GetRegion() const { return m_rcRegion; }
  bool HasLine() const { return m_bLine; }
  QLine GetLine() const { return m_line; }

  void Paint(QPainter &painter, const CViewTransform &transform) const;

private:
  EImageTool m_eTool = EImageTool::Pan;
  QPoint m_ptBegin;
  QRect m_rcRegion;
  QLine m_line;
  bool m_bLine = false;
};

} // namespace ffc::host
