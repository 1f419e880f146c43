#pragma once

#include "BonjourBox.h"

#include <QStringList>

/// An instrument found: `box` is told as the discovery client tells it.
void found(BonjourBox& box, const std::string& name, const std::string& address,
           unsigned int scope = 0);
/// An instrument withdrawn.
void withdrawn(BonjourBox& box, const std::string& name);

/// Every row of a box as "text|host|address|scope|port", a separator as "---".
QStringList rowsOf(const BonjourBox& box);
/// The texts alone.
QStringList textsOf(const BonjourBox& box);

/// What getIP gives, as "address scope port"; "false" when it gives nothing.
QString askedFor(BonjourBox& box);
