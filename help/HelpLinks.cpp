#include "HelpLinks.h"

QString downloadSource = QStringLiteral(GX_SERVER "/projects/7100/");
QString newsSource = QStringLiteral(GX_SERVER "/projects/7100/docs/summary.html");
QString webSite = QStringLiteral(GX_WEB_SITE);
