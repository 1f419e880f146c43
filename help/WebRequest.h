#pragma once

#include "NameLookup.h"

#include <QNetworkRequest>
#include <QUrl>

#include <chrono>

class QNetworkReply;

/// How this program asks the maker's server for anything.
namespace web {

/// How far a server is looked for.
struct Reach {
    /// How long it may say nothing before it counts as one that cannot be reached.
    std::chrono::milliseconds patience = std::chrono::seconds(30);
    /// Who knows whether its name has an address.
    NameLookup::Resolve resolve = &NameLookup::systemResolve;
};

/// Whether an address is one that may be asked: http or https, and a host.
bool mayBeAsked(const QUrl& address);

/// A request that is never led from https to http.
QNetworkRequest request(const QUrl& address, std::chrono::milliseconds patience);

/// Ends `reply` with an error as soon as it holds more than `bytes` unread. Call it on the thread
/// of the reply.
void limitSize(QNetworkReply* reply, qint64 bytes);

} // namespace web
