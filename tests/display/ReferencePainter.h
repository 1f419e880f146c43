#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

#include <string>

/// A character screen as the tests hand it to ReferencePainter.
struct ReferenceScreen {
    std::string text;
    std::string attr;
    QString family = QStringLiteral("Arial");
    QColor textColor = Qt::blue;
    QColor background = QColor(224, 224, 224);
    QColor highlight = Qt::red;
    int columns = 40;
    int rows = 8;
};

/// The rules for painting a character screen, written down once more as plainly as they can be:
/// every cell from nothing, every box piece line by line. Slow, and the judge of what is faster.
namespace ReferencePainter {

/// The size of the letters for a screen of this size.
int pixelSize(const QString& family, const QSize& size, int columns = 40, int rows = 8);

/// The whole screen, in letters of that size.
QImage paint(const ReferenceScreen& screen, const QSize& size);

/// The whole screen, in letters of a given size.
QImage paint(const ReferenceScreen& screen, const QSize& size, int letterSize);

/// A screen of `cells` random codes and attributes, the same ones for the same seed.
ReferenceScreen randomScreen(unsigned seed, int cells = 320);

} // namespace ReferencePainter
