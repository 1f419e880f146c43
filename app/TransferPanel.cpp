#include "TransferPanel.h"

#include "ConnectGX7100Serial.h"
#include "Packet.h"
#include "ReceivedFile.h"
#include "XferClass.h"
#include "ui_TransferPanel.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

namespace {
constexpr int tickPeriod = 500;
/// How long a message is shown instead of the progress, milliseconds.
constexpr qint64 readingTime = 5000;
} // namespace

TransferPanel::TransferPanel(QWidget* parent)
    : QWidget(parent), m_form(std::make_unique<Ui_TransferPanel>()) {
    m_form->setupUi(this);
    // Like the tile's name: the window text's colour is the frame's.
    m_form->statusLabel->setForegroundRole(QPalette::ButtonText);
    m_clock.start();
    m_ticker.setInterval(tickPeriod);
    connect(&m_ticker, &QTimer::timeout, this, &TransferPanel::refresh);
    connect(m_form->cancelBtn, &QToolButton::clicked, this, &TransferPanel::cancel);
    connect(m_form->saveBtn, &QToolButton::clicked, this, &TransferPanel::askWhereToSave);
    refresh();
}

TransferPanel::~TransferPanel() = default;

void TransferPanel::watch(ConnectGX7100Serial* link, const QString& origin) {
    if (m_link)
        m_link->disconnect(this);
    m_link = link;
    m_origin = origin;
    m_progress = {};
    m_note.clear();
    connect(link, &ConnectGX7100::fxstatus, this, &TransferPanel::showStatus);
    connect(link, &ConnectGX7100::signalFrom, this, &TransferPanel::takePacket);
    connect(link, &ConnectGX7100::disconnected, this, &TransferPanel::linkClosed);
    refresh();
}

bool TransferPanel::canSend() const {
    return m_link && m_link->IsOpen() && !m_progress.isBusy();
}

std::string TransferPanel::filePacket(const QByteArray& contents) {
    // The builder ends its text at a NUL, so the contents must not pass through it.
    return ConnectGX7100::sendBackChannel("CATCH", {}) + contents.toStdString();
}

void TransferPanel::askForFile() {
    if (!canSend() || m_dialog)
        return;
    m_dialog = new QFileDialog(this, tr("Send File"));
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setFileMode(QFileDialog::ExistingFile);
    connect(m_dialog, &QFileDialog::fileSelected, this, &TransferPanel::sendFile);
    m_dialog->open();
}

void TransferPanel::sendFile(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    // While the operator looked for the file the line may have gone, or a file may have come.
    if (!canSend()) {
        const QString reason =
            m_progress.isBusy() ? tr("another file is on its way") : tr("the connection has ended");
        tell(tr("%1 was not sent: %2").arg(name, reason), tr("Not sent"));
        return;
    }
    const std::optional<QByteArray> contents = readFile(path, name);
    if (!contents)
        return;
    m_note.clear();
    m_progress.announce(name, contents->size());
    m_link->slotTo(filePacket(*contents));
    refresh();
}

/// All of a file, or nothing when it cannot be sent and the operator has been told why.
std::optional<QByteArray> TransferPanel::readFile(const QString& path, const QString& name) {
    // Opening a pipe would wait for whoever writes into it.
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        tell(tr("%1: not an ordinary file").arg(name), tr("Not a file"));
        return std::nullopt;
    }
    QFile file(path);
    QByteArray contents;
    // One byte more than may be tells a file that is too large, whatever its size is said to be.
    if (file.open(QIODevice::ReadOnly))
        contents = file.read(XferClass::maxFileSize + 1);
    // What breaks off in the middle is not sent as if it were all.
    if (file.error() != QFileDevice::NoError) {
        tell(tr("%1: %2").arg(name, file.errorString()), file.errorString());
        return std::nullopt;
    }
    if (contents.size() > XferClass::maxFileSize) {
        tell(tr("%1: a file for an instrument has at most %2")
                 .arg(name, TransferProgress::sizeText(XferClass::maxFileSize)),
             tr("Too large"));
        return std::nullopt;
    }
    return contents;
}

void TransferPanel::tell(const QString& note, const QString& inShort) {
    m_note = QStringList{note, inShort};
    m_toldAt = m_clock.elapsed();
    refresh();
}

void TransferPanel::showStatus(int status, int value) {
    // The outcome is news; a block leaves time to read what was told.
    if (status == 0)
        m_note.clear();
    m_progress.update(status, value, m_clock.elapsed());
    refresh();
}

void TransferPanel::takePacket(const std::string& packet) {
    const auto view = packet::parse(packet);
    if (!view || view->type != "FXFR")
        return;
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const bool kept =
        m_unsaved.add({receivedfile::suggestedName(m_origin, time),
                       QByteArray(view->body.data(), static_cast<qsizetype>(view->body.size()))});
    if (kept)
        refresh();
    else
        tell(tr("Not kept: save the others first"), tr("Not kept"));
}

void TransferPanel::linkClosed() {
    if (m_progress.state() == TransferProgress::State::Waiting)
        m_progress.giveUp(tr("the connection has ended"));
    refresh();
}

/// While a file is on its way this stops it; afterwards it puts the outcome away.
void TransferPanel::cancel() {
    if (!m_progress.isBusy()) {
        m_progress = {};
        m_note.clear();
        m_unsaved.clear();
        refresh();
        return;
    }
    if (m_link) {
        m_link->withdrawFiles();
        m_link->stopXfer();
    }
    if (m_progress.state() == TransferProgress::State::Waiting)
        m_progress.giveUp(XferClass::ErrorText(XferClass::Aborted));
    refresh();
}

void TransferPanel::askWhereToSave() {
    if (m_unsaved.isEmpty() || m_dialog)
        return;
    // The dialog itself asks before a file that exists is replaced.
    m_dialog = new QFileDialog(this, tr("Save File"));
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setAcceptMode(QFileDialog::AcceptSave);
    m_dialog->selectFile(m_unsaved.first().suggestedName);
    connect(m_dialog, &QFileDialog::fileSelected, this, &TransferPanel::saveFirst);
    m_dialog->open();
}

void TransferPanel::saveFirst(const QString& path) {
    if (m_unsaved.isEmpty())
        return;
    const QString name = QFileInfo(path).fileName();
    const QString error = receivedfile::save(path, m_unsaved.first().contents);
    // A file that could not be saved can be saved elsewhere.
    if (error.isEmpty())
        m_unsaved.removeFirst();
    if (error.isEmpty())
        tell(tr("%1 was saved").arg(name), tr("Saved"));
    else
        tell(tr("%1: %2").arg(name, error), error);
}

void TransferPanel::refresh() {
    const bool busy = m_progress.isBusy();
    const int percent = m_progress.percent();
    if (busy && m_clock.elapsed() - m_toldAt > readingTime)
        m_note.clear();
    m_form->progressBar->setVisible(busy);
    m_form->progressBar->setRange(0, percent < 0 ? 0 : 100);
    m_form->progressBar->setValue(percent);
    refreshButtons();
    const QStringList wordings = m_note.isEmpty() ? m_progress.wordings(m_clock.elapsed()) : m_note;
    const QString text = wordings.value(0);
    m_form->statusLabel->setWordings(wordings);
    // A file's name may be long and may look like markup.
    m_form->statusLabel->setToolTip(QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()));
    setVisible(busy || !text.isEmpty() || !m_unsaved.isEmpty());
    if (busy != m_ticker.isActive())
        busy ? m_ticker.start() : m_ticker.stop();
}

void TransferPanel::refreshButtons() {
    const qsizetype unsaved = m_unsaved.count();
    m_form->saveBtn->setVisible(unsaved > 0);
    m_form->saveBtn->setText(unsaved > 1 ? tr("Save... (%1)").arg(unsaved) : tr("Save..."));
    if (m_progress.isBusy()) {
        m_form->cancelBtn->setText(tr("Cancel"));
        m_form->cancelBtn->setToolTip(tr("Stop the file transfer"));
    } else {
        m_form->cancelBtn->setText(unsaved > 0 ? tr("Discard") : tr("Close"));
        m_form->cancelBtn->setToolTip(unsaved > 0 ? tr("Throws away what was not saved")
                                                  : QString());
    }
}
