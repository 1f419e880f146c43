#include "NewsBrowser.h"

#include "NewsPage.h"

#include <QImage>
#include <QStringDecoder>

NewsBrowser::NewsBrowser() {
    setOpenLinks(false);
    setAccessibleName(tr("News"));
    // The program ends with its main window, whether or not the news are still open.
    setAttribute(Qt::WA_QuitOnClose, false);
}

void NewsBrowser::showPage(const QByteArray& page) {
    const QString text = QStringDecoder::decoderForHtml(page).decode(page);
    if (news_page::isQuickToLayOut(text.toStdString()))
        setHtml(text);
    else
        setPlainText(text);
}

QVariant NewsBrowser::loadResource(int type, const QUrl& name) {
    // Whatever gets nothing looks further by itself: into the address if it is of the kind that
    // carries its data, otherwise into the file system.
    if (name.scheme() == QLatin1String("data"))
        return {};
    if (type != QTextDocument::ImageResource)
        return QByteArray();
    QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return nothing;
}
