#pragma once

#include <QNetworkRequest>
#include <QUrl>

#include <chrono>

class QNetworkReply;

/// How this program asks the maker's server for anything.
namespace web {

/// How long a server may say nothing before it counts as one that cannot be reached.
inline constexpr std::chrono::milliseconds defaultPatience = std::chrono::seconds(30);

/// Whether an address is one that may be asked: http or https.
bool mayBeAsked(const QUrl& address);

/// A request that is never led from https to http.
QNetworkRequest request(const QUrl& address, std::chrono::milliseconds patience);

/// Ends `reply` with an error as soon as it holds more than `bytes` unread. Call it on the thread
/// of the reply.
void limitSize(QNetworkReply* reply, qint64 bytes);

} // namespace web
