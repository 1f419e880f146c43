#pragma once

#include "TransferProgress.h"
#include "UnsavedFiles.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>
#include <string>

class ConnectGX7100Serial;
class QFileDialog;
class Ui_TransferPanel;

/// The strip of a tile that shows a file transfer over a serial link: how far it is, a button that
/// stops it, in the end how it went, and the files that have arrived until they are saved.
///
/// Listens to the link on its own account, beside the tile. Hidden while there is nothing to show.
/// It never opens a dialog of its own accord: what the operator types is meant for instruments.
class TransferPanel : public QWidget {
    Q_OBJECT

public:
    explicit TransferPanel(QWidget* parent = nullptr);
    ~TransferPanel() override;

    /// Shows the transfers of this link from now on; not owned. `origin` is what the tile calls the
    /// instrument, for the names of files.
    void watch(ConnectGX7100Serial* link, const QString& origin);

    /// Whether a file may be sent now: the link is open and no other file is on its way.
    bool canSend() const;
    /// Whether files have arrived that were neither saved nor thrown away.
    bool hasUnsavedFiles() const { return !m_unsaved.isEmpty(); }
    /// Asks the operator for a file and sends it.
    void askForFile();
    /// Announces a file to the instrument, which then asks for it.
    void sendFile(const QString& path);

    /// The packet that announces a file and carries it to the link: the line "ID:CATCH" with the
    /// file behind it, NULs and all.
    static std::string filePacket(const QByteArray& contents);

private:
    void showStatus(int status, int value);
    void takePacket(const std::string& packet);
    void linkClosed();
    void cancel();
    std::optional<QByteArray> readFile(const QString& path, const QString& name);
    void tell(const QString& note, const QString& inShort);
    void askWhereToSave();
    void saveFirst(const QString& path);
    void refresh();
    void refreshButtons();

    std::unique_ptr<Ui_TransferPanel> m_form;
    QPointer<ConnectGX7100Serial> m_link;
    QString m_origin;
    TransferProgress m_progress;
    QStringList m_note; ///< what to tell instead of the progress
    qint64 m_toldAt = 0;
    UnsavedFiles m_unsaved;
    QPointer<QFileDialog> m_dialog;
    QElapsedTimer m_clock;
    QTimer m_ticker;
};
