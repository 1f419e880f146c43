#include "UpdateWindow.h"

#include "NameLookup.h"
#include "ReleaseIndex.h"
#include "WebRequest.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QNetworkReply>
#include <QProcess>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpacerItem>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QToolButton>
#include <QUrl>

#include <limits>

namespace {

/// Far above any real index: a server that sends more is not sending an index.
constexpr qint64 maxIndexSize = qint64{1} << 20;
/// What a download may hold in memory before it reaches the file.
constexpr qint64 downloadBuffer = qint64{1} << 20;

/// Of the 400 that the dialog is wide, what the button beside it leaves.
constexpr int statusWidth = 270;

QString downloadFolder() {
    const QDir downloads(QDir::homePath() + QStringLiteral("/Downloads"));
    return downloads.exists() ? downloads.absolutePath()
                              : QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

} // namespace

UpdateWindow::UpdateWindow(const QString& baseUrl, const QString& tag, const QString& version,
                           QWidget* parent, web::Reach reach)
    : QDialog(parent), m_versionLabel(new QLabel(this)), m_statusLabel(new QLabel(this)),
      m_downloadButton(new QPushButton(tr("Download"), this)),
      m_doneButton(new QPushButton(tr("Done"), this)), m_leftArrow(new QToolButton(this)),
      m_rightArrow(new QToolButton(this)), m_progress(std::make_unique<QProgressDialog>(this)),
      m_reach(reach), m_version(version), m_tag(tag), m_downloadFolder(downloadFolder()),
      m_baseUrl(baseUrl) {
    layOut();
    setWindowTitle(tr("Checking for new software"));

    m_progress->reset();
    m_progress->setAutoClose(false);
    m_progress->setAutoReset(false);
    m_progress->setWindowModality(Qt::WindowModal);
    auto* const progressLabel = new QLabel(m_progress.get());
    progressLabel->setTextFormat(Qt::PlainText);
    progressLabel->setAlignment(Qt::AlignCenter);
    m_progress->setLabel(progressLabel);
    connect(m_progress.get(), &QProgressDialog::canceled, this, &UpdateWindow::cancelDownload);
    connect(m_downloadButton, &QPushButton::clicked, this, &UpdateWindow::downloadFV);
    connect(m_doneButton, &QPushButton::clicked, this, &UpdateWindow::doDone);

    setFVLabel(tr("checking..."));
    connect(&m_manager, &QNetworkAccessManager::finished, this, &UpdateWindow::handleNetworkData);
    askForIndex(QUrl(m_baseUrl + QStringLiteral("files.txt")));
}

UpdateWindow::~UpdateWindow() {
    // Replies still under way end with the manager and must not call back into a half-gone dialog.
    m_manager.disconnect(this);
}

void UpdateWindow::layOut() {
    m_versionLabel->setTextFormat(Qt::RichText);
    m_versionLabel->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_statusLabel->setTextFormat(Qt::PlainText);
    // The path of a download may be longer than the screen is wide.
    m_statusLabel->setWordWrap(true);
    // Or the room beside it would be shared out evenly.
    m_statusLabel->setMinimumWidth(statusWidth);
    m_downloadButton->setEnabled(false);
    m_downloadButton->setAutoDefault(false);

    m_leftArrow->setArrowType(Qt::LeftArrow);
    m_rightArrow->setArrowType(Qt::RightArrow);
    for (QToolButton* const arrow : {m_leftArrow, m_rightArrow}) {
        arrow->setEnabled(false);
        arrow->hide();
    }

    auto* const statusRow = new QHBoxLayout;
    statusRow->addWidget(m_statusLabel, 1);
    statusRow->addItem(new QSpacerItem(300, 20, QSizePolicy::Expanding, QSizePolicy::Minimum));
    statusRow->addWidget(m_doneButton);

    auto* const grid = new QGridLayout(this);
    grid->addWidget(m_versionLabel, 0, 0);
    grid->addWidget(m_downloadButton, 0, 1);
    grid->addLayout(statusRow, 1, 0, 1, 2);
    grid->addItem(new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding), 2, 0);
}

QSize UpdateWindow::sizeHint() const {
    return {400, 100};
}

void UpdateWindow::setFVLabel(const QString& status) {
    const QString paragraph =
        QStringLiteral("<p style=\" margin-top:0px; margin-bottom:0px;\">%1</p>");
    const QString running = tr("<b><u>GX-7100 Apps</u></b> Your version is %1");
    m_versionLabel->setText(paragraph.arg(running.arg(m_version.toHtmlEscaped())) +
                            paragraph.arg(status.toHtmlEscaped()));
}

void UpdateWindow::showStatus(const QString& status) {
    m_statusLabel->setText(status);
    // What the layout knows of the label is of the text before.
    layout()->activate();
    resize(width(), std::max(height(), layout()->totalHeightForWidth(width())));
}

void UpdateWindow::showServerError() {
    showStatus(tr("Error accessing server. Please try later."));
    setFVLabel(QString());
}

QNetworkReply* UpdateWindow::get(const QUrl& address) {
    return web::mayBeAsked(address) ? m_manager.get(web::request(address, m_reach.patience))
                                    : nullptr;
}

void UpdateWindow::askForIndex(const QUrl& address) {
    if (!web::mayBeAsked(address)) {
        showServerError();
        return;
    }
    auto* const lookup =
        new NameLookup(address.host(QUrl::FullyEncoded), m_reach.patience, m_reach.resolve);
    lookup->setParent(this);
    connect(lookup, &NameLookup::finished, this, [this, lookup, address](bool found) {
        lookup->deleteLater();
        if (found)
            web::limitSize(get(address), maxIndexSize);
        else
            showServerError();
    });
}

void UpdateWindow::handleNetworkData(QNetworkReply* reply) {
    m_manager.disconnect(this);
    reply->deleteLater();
    if (reply->error() == QNetworkReply::NoError)
        readIndex(reply->readAll());
    else
        showServerError();
}

void UpdateWindow::readIndex(const QByteArray& index) {
    const auto release = release_index::find(
        {index.constData(), static_cast<std::size_t>(index.size())}, m_tag.toStdString());
    if (!release) {
        showServerError();
        return;
    }
    const QString offered = QString::fromStdString(release->version);
    m_fileName = QString::fromStdString(release->fileName);
    switch (static_cast<release_index::Comparison>(compareVersion(m_version, offered))) {
    case release_index::Comparison::Newer:
        setFVLabel(tr("A new version (%1) is available").arg(offered));
        m_downloadButton->setEnabled(true);
        return;
    case release_index::Comparison::Older:
        setFVLabel(tr("The current release is still %1").arg(offered));
        break;
    case release_index::Comparison::Same:
        setFVLabel(tr("Your GX-7100 Apps are up to date"));
        break;
    }
    m_downloadButton->setEnabled(false);
}

int UpdateWindow::compareVersion(QString current, QString offered) {
    return static_cast<int>(release_index::compare(current.toStdString(), offered.toStdString()));
}

void UpdateWindow::downloadFV() {
    downloadFile(m_downloadButton, m_fileName);
}

void UpdateWindow::downloadFile(QPushButton* button, const QString& fileName) {
    if (!release_index::staysInFolder(fileName.toStdString())) {
        showStatus(tr("Could not complete download."));
        return;
    }
    m_installerPath = m_downloadFolder + u'/' + fileName;
    if (QFileInfo::exists(m_installerPath)) {
        tell(tr("%1 is already at %2.").arg(fileName, m_downloadFolder));
        offerInstallation();
        return;
    }
    if (openOutput(fileName))
        startDownload(button, fileName);
}

/// A file's name comes from the server and may look like markup.
void UpdateWindow::tell(const QString& text) {
    QMessageBox box(QMessageBox::Information, tr("Download"), text, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool UpdateWindow::openOutput(const QString& fileName) {
    m_output = std::make_unique<QTemporaryFile>(m_installerPath + QStringLiteral(".XXXXXX"));
    if (m_output->open())
        return true;
    const QString reason = m_output->errorString();
    m_output.reset();
    tell(tr("Unable to save the file %1: %2.").arg(fileName, reason));
    return false;
}

void UpdateWindow::startDownload(QPushButton* button, const QString& fileName) {
    connect(&m_manager, &QNetworkAccessManager::finished, this, &UpdateWindow::manFinishDownload);
    m_reply = get(QUrl(m_baseUrl + QString::fromLatin1(QUrl::toPercentEncoding(fileName))));
    if (!m_reply) {
        m_output.reset();
        showStatus(tr("Could not complete download."));
        return;
    }
    m_reply->setReadBufferSize(downloadBuffer);
    connect(m_reply, &QNetworkReply::downloadProgress, this,
            &UpdateWindow::updateDataTransferProgress);
    connect(m_reply, &QNetworkReply::readyRead, this, &UpdateWindow::continueDownload);
    button->setEnabled(false);
    m_progress->reset();
    m_progress->setLabelText(tr("Downloading %1...").arg(fileName));
    m_progress->exec();
}

void UpdateWindow::continueDownload() {
    if (!m_output || !m_reply)
        return;
    const QByteArray bytes = m_reply->readAll();
    if (m_output->write(bytes) != bytes.size())
        m_reply->abort();
}

void UpdateWindow::updateDataTransferProgress(qint64 done, qint64 total) {
    // The bar counts in int: what is too large for it is shown in parts of the same size.
    const qint64 unit = std::max(total, done) / std::numeric_limits<int>::max() + 1;
    // An unknown size, -1, becomes a busy bar.
    m_progress->setMaximum(static_cast<int>(std::max<qint64>(total, 0) / unit));
    m_progress->setValue(static_cast<int>(done / unit));
}

void UpdateWindow::cancelDownload() {
    if (m_reply)
        m_reply->abort();
}

bool UpdateWindow::storeDownload() {
    const QByteArray rest = m_reply->readAll();
    if (m_output->write(rest) != rest.size() || !m_output->flush())
        return false;
    m_output->setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                             QFile::ReadOther);
    // Never takes the place of a file that has appeared in the meantime.
    if (!m_output->rename(m_installerPath))
        return false;
    m_output->setAutoRemove(false);
    return true;
}

void UpdateWindow::manFinishDownload(QNetworkReply* reply) {
    if (!m_output || reply != m_reply)
        return;
    m_manager.disconnect(this);
    const bool stored = reply->error() == QNetworkReply::NoError && storeDownload();
    showStatus(stored ? tr("Stored in %1").arg(m_installerPath)
                      : tr("Could not complete download."));
    m_output.reset();
    m_progress->hide();
    reply->deleteLater();
    // Offered by name alone, so also when the download has failed.
    offerInstallation();
}

void UpdateWindow::offerInstallation() {
    m_installStarted = openTheUpdate(m_installerPath);
    if (m_installStarted)
        close();
}

bool UpdateWindow::isNewFV2200(const QString& name) {
    return name.endsWith(QLatin1String(".exe")) || m_installerPath.endsWith(QLatin1String(".dmg"));
}

bool UpdateWindow::openTheUpdate(const QString& path) {
    if (!isNewFV2200(path) || !doShutDown())
        return false;
    if (path.endsWith(QLatin1String(".exe"))) {
        // Without the ending, and as one program name whatever spaces are in it.
        return QProcess::startDetached(QString(path).remove(QStringLiteral(".exe")), {});
    }
    return QProcess::startDetached(QStringLiteral("open"), {path});
}

bool UpdateWindow::doShutDown() {
    QMessageBox box(QMessageBox::Question, QCoreApplication::applicationName(),
                    tr("Install this now?"), QMessageBox::Yes | QMessageBox::No, this);
    box.setInformativeText(tr("Click Yes to shutdown %1 and install the new version.")
                               .arg(QCoreApplication::applicationName()));
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void UpdateWindow::doDone() {
    close();
}
