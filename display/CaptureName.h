#pragma once

#include <QString>

#include <optional>

/// Which file the next capture goes to. Pure; any thread.
struct CaptureName {
    QString directory;          ///< ends in a separator
    QString pattern;            ///< every "#" stands for the counter, if there is one
    std::optional<int> counter; ///< nothing: "#" stands for itself

    /// The full path, which always ends in ".pdf" in small letters.
    QString filePath() const;
};
