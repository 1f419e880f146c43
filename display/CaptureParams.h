#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What the capture dialog remembers between runs. A field without a value was not in the record
/// that was read, be it older or damaged, and leaves the dialog's control as it is.
struct CaptureParams {
    std::optional<bool> sizeChecked;
    std::optional<QString> height;
    std::optional<QString> width;
    std::optional<bool> cursorChecked;
    std::optional<QString> previousFile;
    std::optional<bool> incrementChecked;
    std::optional<int> counter;
    std::optional<QString> fileName;
    std::optional<QString> directory;
    std::optional<int> border;         ///< since version 2
    std::optional<bool> borderChecked; ///< since version 3
    std::optional<int> units;          ///< since version 3; 0 inches, 1 cm

    friend bool operator==(const CaptureParams&, const CaptureParams&) = default;

    /// A record of version 3; fields without a value are written as 0, false or empty.
    QByteArray toBytes() const;

    /// Reads a record of any version, as far as it is whole.
    static CaptureParams fromBytes(const QByteArray& bytes);
};
