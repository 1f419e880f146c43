#include "WebRequest.h"

#include <QNetworkReply>

namespace web {

bool mayBeAsked(const QUrl& address) {
    const bool web =
        address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
    return web && !address.host().isEmpty();
}

QNetworkRequest request(const QUrl& address, std::chrono::milliseconds patience) {
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(static_cast<int>(patience.count()));
    return request;
}

void limitSize(QNetworkReply* reply, qint64 bytes) {
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, bytes] {
        if (reply->bytesAvailable() > bytes)
            reply->abort();
    });
}

} // namespace web
