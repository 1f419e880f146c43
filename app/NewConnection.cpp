#include "NewConnection.h"

#include "ConnectGX7100Ethernet.h"
#include "ConnectionWidget.h"
#include "ui_NewConnection.h"

#include <memory>
#include <string>

namespace {

/// Instruments listen here, whatever port they announce.
constexpr int instrumentPort = 7100;

/// Whether the last row of the list, the one to type an address into, is as it was offered.
bool isUntouched(const BonjourBox& list) {
    return list.currentIndex() == list.count() - 1 &&
           list.currentText() == BonjourBox::tr("Other...");
}

} // namespace

NewConnection::NewConnection(QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui_NewConnection>()) {
    m_form->setupUi(this);
    m_form->serialButton->setEnabled(false);
    m_form->serialPorts->setEnabled(false);
    m_form->etherList->start(QStringLiteral("_gx7100._tcp"), QStringLiteral("local."));
}

NewConnection::~NewConnection() = default;

void NewConnection::setFor(bool serial, const QString& label, const QString& host) {
    setWindowTitle(tr("Remake Connection"));
    m_form->nameEdit->setText(label);
    (serial ? m_form->serialButton : m_form->etherButton)->setChecked(true);
    if (serial || host.isEmpty())
        return;
    m_form->etherList->setDefault(host);
    // What is not on the list was typed.
    if (m_form->etherList->currentText() != host)
        m_form->etherList->setEditText(host);
}

void NewConnection::makeConnection(ConnectionWidget* tile) {
    if (isUntouched(*m_form->etherList))
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
