#pragma once

#include <QFrame>
#include <QList>
#include <QString>

#include <memory>
#include <string>
#include <string_view>

class CaptureControl;
class ConnectGX7100;
class ConnectGX7100Serial;
class LCD7100;
class QAction;
class QMenu;
class QSettings;
class TileIcons;
class Ui_ConnectionWidget;

/// One tile of the group window: mirrors one instrument's screen, makes and drops the link to it,
/// turns keys into packets and dispatches the packets that arrive. Owns its link and is the only
/// object that talks to it; knows nothing of other tiles. GUI thread.
///
/// A tile whose frame is red receives the keys typed in the group window, and no other does: look
/// and behaviour come from the same question, receivesKeys().
///
/// The tile whose screen has the keyboard focus is the one that commands of the keyboard act on,
/// and has a ring around its name. Keys typed for the instruments do not depend on it.
class ConnectionWidget : public QFrame {
    Q_OBJECT

public:
    /// `settings` keeps what the capture window shows from run to run; not owned. Without it
    /// nothing is kept.
    explicit ConnectionWidget(QWidget* parent = nullptr, QSettings* settings = nullptr);
    ~ConnectionWidget() override;

    /// Takes a network link over and connects it. `host` is the instrument's name as shown,
    /// `address` its numeric address, scoped by `interfaceIndex` where it is link-local.
    void connectEther(const QString& label, const QString& host, ConnectGX7100* link,
                      const std::string& address, int interfaceIndex, int port);
    /// Takes a serial link over and opens the port.
    void connectSerial(const QString& label, ConnectGX7100Serial* link, const QString& portName);
    /// Takes a link over, and nothing else; a link the tile had before is deleted.
    void _connect(ConnectGX7100* link);

    bool IsConnected() const;
    void Disconnect();
    /// Whether keys that are typed now reach the instrument.
    bool receivesKeys() const;
    /// Whether files of the instrument wait to be saved; they go with the tile.
    bool hasUnsavedFiles() const;
    /// The instrument: its screen label, "@" and its host, or the host alone; empty until the first
    /// connection.
    QString nameText() const;
    const LCD7100& screen() const;
    /// The entries of the context menu, as they are now; owned by the tile.
    QList<QAction*> menuEntries();

    /// Whether the instrument is to receive typed keys. Without an open link the wish is kept, but
    /// nothing is sent and the frame stays as it is.
    void setSendState(bool on);
    /// Has the instrument receive typed keys, or no longer; nothing without an open link.
    void toggleSendState();
    void setColor(const QByteArray& colors);
    void setFontFamily(const QString& family);
    /// Closes the capture window, which thereby stores what it shows. The settings must be alive.
    void closeCaptureWindow();

public slots:
    /// The connect button: drops an open link, otherwise asks for the instrument to connect to.
    void doConnect();
    /// The kill button: asks the owner to remove this tile.
    void suicide();
    void showConnected();
    void showDisconnected();
    void incomingPacket(std::string packet);
    void displayKey(unsigned char group, unsigned char key);
    void keyPressed(unsigned short code);
    /// Sends an instrument packet if this tile's instrument receives keys.
    void signalFor7100(std::string packet);
    /// Shows the window in which the operator saves this screen as PDF files.
    void showCaptureWindow();
    /// Opens the menu of the screen on the screen.
    void showScreenMenu();
    void contextMenu(QPoint position);

signals:
    void killMe(ConnectionWidget* tile);
    void incomingChat(const QString& from, const QString& text);
    void colorChanged(QByteArray colors);
    void fontFamilyChanged(QString family);
    void startCommToAll();
    void stopCommToAll();

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void addMenuEntry(const QString& text, const QString& statusTip,
                      void (ConnectionWidget::*signal)());
    void updateContextMenu();
    void fitTheStrip();
    void drawFocusRing(bool on);
    void announceState();
    void dropLink();
    void showName();
    void showConnectButton(const QString& icon, const QString& toolTip);
    void dispatch(std::string_view packet);
    void incomingBundle(std::string_view body);

    std::unique_ptr<Ui_ConnectionWidget> m_form;
    std::unique_ptr<ConnectGX7100> m_link;
    bool m_sendState = false;
    bool m_serial = false;
    bool m_focusRing = false;
    QString m_host;
    QString m_screenLabel;
    QSettings* m_settings;
    std::unique_ptr<CaptureControl> m_captureWindow;
    std::shared_ptr<TileIcons> m_icons;
    QMenu* m_contextMenu = nullptr;
    QAction* m_sendFile = nullptr;
};
