#pragma once

class QVariant;
class QWidget;

/// Windows that come back where they were. GUI thread.
namespace windowgeometry {

/// Puts `window` where a stored saveGeometry() says. What was stored may be damaged, of another
/// type, or come from a desk with other screens: the window is at least as large as its minimum, no
/// larger than its screen, and lies on it. Returns false, and leaves the window as it is, when
/// nothing is stored that can be used.
bool restore(QWidget& window, const QVariant& stored);

} // namespace windowgeometry
