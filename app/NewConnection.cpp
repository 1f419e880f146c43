#include "NewConnection.h"

#include "ConnectGX7100Ethernet.h"
#include "ConnectGX7100Serial.h"
#include "ConnectionWidget.h"
#include "ui_NewConnection.h"

#include <QHostAddress>
#include <QLineEdit>
#include <QSerialPortInfo>

#include <memory>
#include <string>

namespace {

/// Instruments listen here, whatever port they announce.
constexpr int instrumentPort = 7100;

/// Whether `host` can be connected to as it is; any other is the name of an instrument. A plain
/// number would do for an address, but is more likely a name.
bool isAddress(const QString& host) {
    return (host.contains('.') || host.contains(':')) && !QHostAddress(host).isNull();
}

} // namespace

NewConnection::NewConnection(QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui_NewConnection>()) {
    m_form->setupUi(this);
    // First: the service takes its time for the answer, and looking for ports takes some too.
    m_form->etherList->start(QStringLiteral("_gx7100._tcp"), QStringLiteral("local."));
    m_form->serialPorts->clear();
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
        m_form->serialPorts->addItem(port.portName());

    // Whoever picks an instrument or a port means that kind of connection.
    const auto meansEther = [this] { m_form->etherButton->setChecked(true); };
    connect(m_form->etherList, &QComboBox::activated, this, meansEther);
    connect(m_form->etherList->lineEdit(), &QLineEdit::textEdited, this, meansEther);
    connect(m_form->serialPorts, &QComboBox::activated, this,
            [this] { m_form->serialButton->setChecked(true); });
}

NewConnection::~NewConnection() = default;

void NewConnection::setFor(bool serial, const QString& label, const QString& host) {
    setWindowTitle(tr("Remake Connection"));
    m_form->nameEdit->setText(label);
    (serial ? m_form->serialButton : m_form->etherButton)->setChecked(true);
    if (serial)
        selectPort(host);
    else if (!host.isEmpty())
        selectInstrument(host);
}

void NewConnection::selectPort(const QString& name) {
    const int row = m_form->serialPorts->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (row >= 0)
        m_form->serialPorts->setCurrentIndex(row);
}

void NewConnection::selectInstrument(const QString& host) {
    m_form->etherList->setDefault(host);
    // Not on the list: an address that was typed, or the instrument has not been found yet. Its
    // name holds the place, so that in the meantime no other is offered in its stead.
    if (!isAddress(host))
        m_awaitedInstrument = host;
    if (m_form->etherList->currentText() != host)
        m_form->etherList->setEditText(host);
}

void NewConnection::makeConnection(ConnectionWidget* tile) {
    if (m_form->serialButton->isChecked())
        makeSerial(tile);
    else
        makeEther(tile);
}

void NewConnection::makeSerial(ConnectionWidget* tile) {
    auto link = std::make_unique<ConnectGX7100Serial>(tile);
    tile->connectSerial(m_form->nameEdit->text(), link.release(),
                        m_form->serialPorts->currentText());
}

/// Whether the row is an instrument's, or the one to type into with something typed.
bool NewConnection::isAddressWanted() const {
    const BonjourBox& list = *m_form->etherList;
    if (list.currentIndex() != list.count() - 1 || list.lineEdit()->isModified())
        return true;
    const QString text = list.currentText();
    return text != BonjourBox::tr("Other...") && text != m_awaitedInstrument;
}

void NewConnection::makeEther(ConnectionWidget* tile) {
    if (!isAddressWanted())
        return;
    std::string address;
    int interfaceIndex = 0;
    int announcedPort = 0;
    if (!m_form->etherList->getIP(address, &interfaceIndex, &announcedPort) || address.empty())
        return;
    auto link = std::make_unique<ConnectGX7100Ethernet>(tile, "Generic", "GX-7100");
    // The tile connects once more: the second request waits in the link's queue and gives an
    // instrument that refuses the first a second try.
    link->Connect(address, interfaceIndex, instrumentPort);
    tile->connectEther(m_form->nameEdit->text(), m_form->etherList->currentText(), link.release(),
                       address, interfaceIndex, instrumentPort);
}
