#pragma once

#include <QString>

/// What the operator wants of one saved picture of a screen: a value, passed from the capture
/// dialog to the screen.
struct CaptureInfo {
    QString fileName;        ///< full path of the PDF file
    double width = 0;        ///< in inches; both sizes 0: the size of the screen's widget
    double height = 0;       ///< in inches
    bool showCursor = false; ///< in text mode only
    int border = 0;          ///< pixels on all four sides

    friend bool operator==(const CaptureInfo&, const CaptureInfo&) = default;
};
