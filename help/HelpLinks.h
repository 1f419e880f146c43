#pragma once

#include <QString>

/// The download area: the release index and the installers are relative to it. Ends in "/".
extern QString downloadSource;
/// The maker's news page.
extern QString newsSource;
/// The maker's web site.
extern QString webSite;
