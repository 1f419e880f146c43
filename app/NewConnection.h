#pragma once

#include <QDialog>

#include <memory>

class ConnectionWidget;
class Ui_NewConnection;

/// The dialog in which the operator chooses the instrument of a tile. Modal, made for one run;
/// after it is accepted, makeConnection() builds the link that was chosen.
class NewConnection : public QDialog {
    Q_OBJECT

public:
    explicit NewConnection(QWidget* parent = nullptr);
    ~NewConnection() override;

    /// Fills the dialog in for remaking a connection: its kind, screen label and host (instrument
    /// or serial port).
    void setFor(bool serial, const QString& label, const QString& host);
    /// Builds the chosen link and hands it to the tile, which owns it from then on. Does nothing
    /// when no instrument was chosen.
    void makeConnection(ConnectionWidget* tile);

private:
    void selectPort(const QString& name);
    void selectInstrument(const QString& host);
    void makeSerial(ConnectionWidget* tile);
    void makeEther(ConnectionWidget* tile);
    bool isAddressWanted() const;

    std::unique_ptr<Ui_NewConnection> m_form;
    /// The instrument to remake, while it is only hoped to be found; never an address.
    QString m_awaitedInstrument;
};
