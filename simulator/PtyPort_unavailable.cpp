#include "PtyPort.h"

PtyPort::PtyPort(QObject* parent) : QObject(parent) {}

PtyPort::~PtyPort() = default;

bool PtyPort::create() {
    m_errorString = tr("this system has no pseudo terminals");
    return false;
}

void PtyPort::write(const std::string& /*bytes*/) {}
void PtyPort::readAvailable() {}
void PtyPort::writeAvailable() {}
void PtyPort::lookWhetherOpen() {}
void PtyPort::setOpen(bool /*open*/) {}
