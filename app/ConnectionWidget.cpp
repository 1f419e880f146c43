#include "ConnectionWidget.h"

#include "CaptureControl.h"
#include "ConnectGX7100Serial.h"
#include "NewConnection.h"
#include "Packet.h"
#include "ScreenUpdate.h"
#include "TileAccessible.h"
#include "TileIcons.h"
#include "ui_ConnectionWidget.h"

#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyleOptionFocusRect>

#include <algorithm>

namespace {

/// Room for the row of buttons below the display, and for the frame.
constexpr int extraHeight = 32;
constexpr int extraWidth = 4;

constexpr int frameLine = 2;
/// At least so much of the name is shown.
constexpr int nameLetters = 8;

constexpr int ringMargin = 3;

/// A byte of an item as a number; one that did not arrive counts as 0.
int signedByte(std::string_view data, std::size_t index) {
    return index < data.size() ? static_cast<signed char>(data[index]) : 0;
}

} // namespace

ConnectionWidget::ConnectionWidget(QWidget* parent, QSettings* settings)
    : QFrame(parent), m_form(std::make_unique<Ui_ConnectionWidget>()), m_settings(settings),
      m_icons(TileIcons::shared()), m_contextMenu(new QMenu(this)) {
    m_form->setupUi(this);
    LCD7100* display = m_form->theDisplay;
    // The frame's colour is this widget's window text; the name must not turn red with it.
    m_form->nameLabel->setForegroundRole(QPalette::ButtonText);
    // However much there is to tell of a file transfer.
    m_form->nameLabel->setMinimumWidth(nameLetters * fontMetrics().averageCharWidth());
    fitTheStrip();
    m_form->killBtn->setIcon(m_icons->icon(QStringLiteral(":/buttons/images/button_cancel.png")));
    showConnectButton(QStringLiteral(":/buttons/images/Connect.png"), tr("Connect"));

    connect(m_form->connectBtn, &QToolButton::clicked, this, &ConnectionWidget::doConnect);
    connect(display, &LCD7100::MakeKey, this, &ConnectionWidget::displayKey);
    connect(m_form->killBtn, &QToolButton::clicked, this, &ConnectionWidget::suicide);
    connect(display, &LCD7100::showScreenCapture, this, &ConnectionWidget::showCaptureWindow);
    connect(display, &LCD7100::fontFamilyChanged, this, &ConnectionWidget::fontFamilyChanged);
    connect(display, &LCD7100::colorChanged, this, &ConnectionWidget::colorChanged);
    connect(display, &LCD7100::drawFocusRing, this, &ConnectionWidget::drawFocusRing);
    QAccessible::installFactory(&TileAccessible::create);
    setFocusProxy(display);
    setSendState(false);

    addMenuEntry(tr("Open kbd comm to all"), tr("Send the keys to every connected instrument"),
                 &ConnectionWidget::startCommToAll);
    addMenuEntry(tr("Close kbd comm to all"), tr("Send the keys to no instrument"),
                 &ConnectionWidget::stopCommToAll);
    m_sendFile = new QAction(tr("Send File..."), this);
    m_sendFile->setStatusTip(tr("Send a file to this instrument"));
    connect(m_sendFile, &QAction::triggered, m_form->transferPanel, &TransferPanel::askForFile);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &ConnectionWidget::contextMenu);
}

/// Large letters need a higher strip, which must not cover the screen.
void ConnectionWidget::fitTheStrip() {
    const LCD7100* display = m_form->theDisplay;
    m_form->nameLabel->setMinimumHeight(m_form->nameLabel->fontMetrics().height());
    const int contents = layout()->minimumSize().grownBy(contentsMargins()).height();
    setMinimumSize(display->minimumWidth() + extraWidth,
                   std::max(display->minimumHeight() + extraHeight, contents));
}

bool ConnectionWidget::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::FontChange)
        fitTheStrip();
    return QFrame::event(event);
}

void ConnectionWidget::addMenuEntry(const QString& text, const QString& statusTip,
                                    void (ConnectionWidget::*signal)()) {
    // Not a child of the menu, which is a window of its own: the status bar to tell is this one's.
    auto* action = new QAction(text, this);
    action->setStatusTip(statusTip);
    connect(action, &QAction::triggered, this, signal);
    m_contextMenu->addAction(action);
}

ConnectionWidget::~ConnectionWidget() {
    // A link that says goodbye while it is deleted must not find a half-destroyed tile.
    if (m_link)
        m_link->disconnect(this);
}

void ConnectionWidget::connectEther(const QString& label, const QString& host, ConnectGX7100* link,
                                    const std::string& address, int interfaceIndex, int port) {
    m_serial = false;
    m_host = host;
    m_screenLabel = label;
    _connect(link);
    m_link->Connect(address, interfaceIndex, port);
    // An attempt under way already takes what is sent; the frame must say so.
    setSendState(m_sendState);
    showName();
}

void ConnectionWidget::connectSerial(const QString& label, ConnectGX7100Serial* link,
                                     const QString& portName) {
    m_serial = true;
    m_host = portName;
    m_screenLabel = label;
    _connect(link);
    m_form->transferPanel->watch(link, nameText());
    m_link->Connect(portName);
    showName();
}

void ConnectionWidget::_connect(ConnectGX7100* link) {
    if (link == m_link.get())
        return;
    if (m_link) {
        dropLink();
        showDisconnected();
    }
    m_link.reset(link);
    connect(link, &ConnectGX7100::connected, this, &ConnectionWidget::showConnected);
    connect(link, &ConnectGX7100::disconnected, this, &ConnectionWidget::showDisconnected);
    // Not the slot itself, which would have each packet copied.
    connect(link, &ConnectGX7100::signalFrom, this,
            [this](const std::string& packet) { dispatch(packet); });
    setSendState(m_sendState);
}

bool ConnectionWidget::IsConnected() const {
    return m_link && m_link->IsOpen();
}

void ConnectionWidget::Disconnect() {
    if (!m_link)
        return;
    m_link->Disconnect();
    // The link may take its time to say so, but it takes no more keys.
    if (!IsConnected())
        setSendState(false);
}

bool ConnectionWidget::hasUnsavedFiles() const {
    return m_form->transferPanel->hasUnsavedFiles();
}

void ConnectionWidget::setSendState(bool on) {
    m_sendState = on;
    announceState();
    if (on && !receivesKeys())
        return;
    setFrameStyle(on ? static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain)
                     : static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Raised));
    setLineWidth(frameLine);
    QPalette colors = palette();
    colors.setBrush(QPalette::WindowText, on ? Qt::red : Qt::black);
    setPalette(colors);
}

void ConnectionWidget::toggleSendState() {
    if (IsConnected())
        setSendState(!m_sendState);
}

void ConnectionWidget::setColor(const QByteArray& colors) {
    m_form->theDisplay->setColors(colors);
}

void ConnectionWidget::setFontFamily(const QString& family) {
    m_form->theDisplay->setFontFamily(family);
}

void ConnectionWidget::doConnect() {
    if (IsConnected()) {
        Disconnect();
        return;
    }
    dropLink();
    // The tile, and the dialog with it, may be removed while the dialog is open.
    const QPointer<NewConnection> dialog = new NewConnection(this);
    dialog->setFor(m_serial, m_screenLabel, m_host);
    const int result = dialog->exec();
    if (!dialog)
        return;
    if (result == QDialog::Accepted)
        dialog->makeConnection(this);
    delete dialog;
}

void ConnectionWidget::suicide() {
    emit killMe(this);
}

void ConnectionWidget::showConnected() {
    showConnectButton(QStringLiteral(":/buttons/images/Disconnect.png"), tr("Disconnect"));
    m_form->killBtn->hide();
    setSendState(m_sendState);
    updateContextMenu();
}

void ConnectionWidget::showDisconnected() {
    showConnectButton(QStringLiteral(":/buttons/images/Connect.png"), tr("Connect"));
    m_form->theDisplay->clearDisplay();
    setSendState(false);
    m_form->killBtn->show();
    updateContextMenu();
}

void ConnectionWidget::incomingPacket(std::string packet) {
    dispatch(packet);
}

void ConnectionWidget::dispatch(std::string_view packet) {
    const auto view = packet::parse(packet);
    if (!view)
        return;
    if (view->type == "CHAT")
        emit incomingChat(nameText(), QString::fromLatin1(packet::untilNul(view->body)));
    else if (view->type == "BNDL")
        incomingBundle(view->body);
}

void ConnectionWidget::displayKey(unsigned char group, unsigned char key) {
    keyPressed(static_cast<unsigned short>((group << 8U) + key));
}

void ConnectionWidget::keyPressed(unsigned short code) {
    signalFor7100(ConnectGX7100::sendKey(code));
}

void ConnectionWidget::signalFor7100(std::string packet) {
    if (receivesKeys())
        m_link->slotTo(packet);
    else if (frameShape() == QFrame::Box)
        // The link has closed and has yet to say so.
        setSendState(false);
}

void ConnectionWidget::showCaptureWindow() {
    if (!m_captureWindow) {
        m_captureWindow = std::make_unique<CaptureControl>(m_settings, nullptr);
        connect(m_captureWindow.get(), &CaptureControl::capture, m_form->theDisplay,
                &LCD7100::capture);
    }
    // The tile may have been connected anew since.
    m_captureWindow->setWindowTitle(m_form->nameLabel->text());
    m_captureWindow->setWindowState(m_captureWindow->windowState() & ~Qt::WindowMinimized);
    m_captureWindow->show();
    m_captureWindow->raise();
    m_captureWindow->activateWindow();
}

void ConnectionWidget::closeCaptureWindow() {
    if (m_captureWindow)
        m_captureWindow->close();
}

void ConnectionWidget::contextMenu(QPoint /*position*/) {
    updateContextMenu();
    m_contextMenu->popup(QCursor::pos());
}

void ConnectionWidget::mousePressEvent(QMouseEvent* event) {
    const bool onDisplay = m_form->theDisplay->geometry().contains(event->position().toPoint());
    if (event->button() != Qt::LeftButton || onDisplay || !IsConnected()) {
        QFrame::mousePressEvent(event);
        return;
    }
    toggleSendState();
    setFocus(Qt::MouseFocusReason);
}

void ConnectionWidget::drawFocusRing(bool on) {
    m_focusRing = on;
    update();
}

void ConnectionWidget::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    if (!m_focusRing)
        return;
    QStyleOptionFocusRect ring;
    ring.initFrom(this);
    ring.rect = m_form->nameLabel->geometry().adjusted(-ringMargin, 0, ringMargin, 0);
    // Many styles leave the ring away unless the focus was moved with Tab.
    ring.state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &ring, &painter, this);
}

void ConnectionWidget::showScreenMenu() {
    m_form->theDisplay->showMenuOnScreen();
}

QList<QAction*> ConnectionWidget::menuEntries() {
    updateContextMenu();
    return m_contextMenu->actions();
}

/// Files travel on serial lines only, and every other tile's menu has its two entries and no more.
void ConnectionWidget::updateContextMenu() {
    if (m_serial && IsConnected())
        m_contextMenu->addAction(m_sendFile);
    else
        m_contextMenu->removeAction(m_sendFile);
    m_sendFile->setEnabled(m_form->transferPanel->canSend());
}

bool ConnectionWidget::receivesKeys() const {
    return m_sendState && IsConnected();
}

const LCD7100& ConnectionWidget::screen() const {
    return *m_form->theDisplay;
}

void ConnectionWidget::dropLink() {
    if (!m_link)
        return;
    m_link->disconnect(this);
    // It may be one of the link's own signals that led here.
    m_link.release()->deleteLater();
}

QString ConnectionWidget::nameText() const {
    return m_screenLabel.isEmpty() ? m_host : m_screenLabel + QLatin1Char('@') + m_host;
}

void ConnectionWidget::showName() {
    m_form->nameLabel->setText(nameText());
    // A long name is cut off in the tile; a tool tip would take a received name for markup.
    m_form->nameLabel->setToolTip(QStringLiteral("<qt>%1</qt>").arg(nameText().toHtmlEscaped()));
    QAccessibleEvent renamed(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&renamed);
    announceState();
}

/// The screen is what gets the focus, so it says how its tile stands.
void ConnectionWidget::announceState() {
    const QString spoken =
        TileAccessible::name(*this) + QStringLiteral(", ") + TileAccessible::state(*this);
    if (spoken == m_form->theDisplay->accessibleName())
        return;
    m_form->theDisplay->setAccessibleName(spoken);
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
}

void ConnectionWidget::showConnectButton(const QString& icon, const QString& toolTip) {
    m_form->connectBtn->setIcon(m_icons->icon(icon));
    m_form->connectBtn->setToolTip(toolTip);
    // Its text says "Connect" whatever it does.
    m_form->connectBtn->setAccessibleName(toolTip);
}

void ConnectionWidget::incomingBundle(std::string_view body) {
    LCD7100* display = m_form->theDisplay;
    const ScreenUpdate update = ScreenUpdate::of(body);
    if (update.textMode)
        display->setTextMode(*update.textMode);
    if (update.text)
        display->setTextWait(*update.text);
    if (update.attributes)
        display->setAttrWait(*update.attributes);
    if (update.cursor)
        display->setCursorWait(signedByte(*update.cursor, 0), signedByte(*update.cursor, 1),
                               signedByte(*update.cursor, 2));
    if (update.graphics)
        display->setFullGraphics(*update.graphics);
    if (update.redraw)
        display->redraw(false);
}
