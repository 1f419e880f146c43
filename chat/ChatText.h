#pragma once

#include <QString>

/// The most characters of one chat line that are shown; what is longer was not typed by a person.
constexpr qsizetype kLongestChatLine = 2000;

/// `text` as one line of the transcript can show it, always literally. Line ends stay line ends
/// inside the line, other control characters become visible ("^G"), direction overrides lose their
/// effect, and what is longer than kLongestChatLine is cut and ends in an ellipsis.
QString displayableChat(const QString& text);
