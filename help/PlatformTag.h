#pragma once

#include <QString>

/// The tag under which the release index lists the installers for the platform this runs on.
QString platformTag();
