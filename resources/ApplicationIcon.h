#pragma once

#include <QIcon>

/// The program's icon with every size that title bars, task bars and switchers ask for, so that
/// none of them has to scale one drawing. Call Q_INIT_RESOURCE(group) first. GUI thread.
QIcon applicationIcon();
