#pragma once

#include <QTextBrowser>

/// The window that shows the news page. What it shows comes from outside, so it reads no local
/// file on the page's behalf, follows no link by itself, and shows a page that would take too long
/// to lay out as plain text. GUI thread.
class NewsBrowser : public QTextBrowser {
    Q_OBJECT

public:
    NewsBrowser();

    /// Shows a page as it came from the server.
    void showPage(const QByteArray& page);

    /// Only what the page itself carries ("data:") is loaded.
    QVariant loadResource(int type, const QUrl& name) override;
};
