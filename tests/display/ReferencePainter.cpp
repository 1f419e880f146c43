#include "ReferencePainter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <random>

namespace {

/// The places that lines run along and end at: the edges of the cell, its centre, and the pairs of
/// double lines to both sides of the centre.
struct Places {
    double x0, xl, xc, xr, x1;
    double y0, yu, yc, yd, y1;

    Places(double x, double y, double width, double height, double d)
        : x0(x), xl(x + width / 2 - d), xc(x + width / 2), xr(x + width / 2 + d), x1(x + width),
          y0(y), yu(y + height / 2 - d), yc(y + height / 2), yd(y + height / 2 + d),
          y1(y + height) {}
};

bool drawBoxPiece(QPainter& p, int code, const Places& c) {
    const auto h = [&](double y, double from, double to) {
        p.drawLine(QPointF(from, y), QPointF(to, y));
    };
    const auto v = [&](double x, double from, double to) {
        p.drawLine(QPointF(x, from), QPointF(x, to));
    };
    switch (code) {
    case 179:
        v(c.xc, c.y0, c.y1);
        return true;
    case 191:
        h(c.yc, c.x0, c.xc);
        v(c.xc, c.yc, c.y1);
        return true;
    case 192:
        v(c.xc, c.y0, c.yc);
        h(c.yc, c.xc, c.x1);
        return true;
    case 193:
        h(c.yc, c.x0, c.x1);
        v(c.xc, c.y0, c.yc);
        return true;
    case 194:
        h(c.yc, c.x0, c.x1);
        v(c.xc, c.yc, c.y1);
        return true;
    case 195:
        v(c.xc, c.y0, c.y1);
        h(c.yc, c.xc, c.x1);
        return true;
    case 196:
        h(c.yc, c.x0, c.x1);
        return true;
    case 197:
        h(c.yc, c.x0, c.x1);
        v(c.xc, c.y0, c.y1);
        return true;
    case 217:
        h(c.yc, c.x0, c.xc);
        v(c.xc, c.y0, c.yc);
        return true;
    case 218:
        h(c.yc, c.xc, c.x1);
        v(c.xc, c.yc, c.y1);
        return true;
    case 185:
        v(c.xr, c.y0, c.y1);
        v(c.xl, c.y0, c.yu);
        h(c.yu, c.x0, c.xl);
        v(c.xl, c.yd, c.y1);
        h(c.yd, c.x0, c.xl);
        return true;
    case 186:
        v(c.xl, c.y0, c.y1);
        v(c.xr, c.y0, c.y1);
        return true;
    case 187:
        h(c.yu, c.x0, c.xr);
        v(c.xr, c.yu, c.y1);
        h(c.yd, c.x0, c.xl);
        v(c.xl, c.yd, c.y1);
        return true;
    case 188:
        h(c.yd, c.x0, c.xr);
        v(c.xr, c.y0, c.yd);
        h(c.yu, c.x0, c.xl);
        v(c.xl, c.y0, c.yu);
        return true;
    case 200:
        v(c.xl, c.y0, c.yd);
        h(c.yd, c.xl, c.x1);
        v(c.xr, c.y0, c.yu);
        h(c.yu, c.xr, c.x1);
        return true;
    case 201:
        h(c.yu, c.xl, c.x1);
        v(c.xl, c.yu, c.y1);
        h(c.yd, c.xr, c.x1);
        v(c.xr, c.yd, c.y1);
        return true;
    case 202:
        h(c.yd, c.x0, c.x1);
        h(c.yu, c.x0, c.xl);
        v(c.xl, c.y0, c.yu);
        h(c.yu, c.xr, c.x1);
        v(c.xr, c.y0, c.yu);
        return true;
    case 203:
        h(c.yu, c.x0, c.x1);
        h(c.yd, c.x0, c.xl);
        v(c.xl, c.yd, c.y1);
        h(c.yd, c.xr, c.x1);
        v(c.xr, c.yd, c.y1);
        return true;
    case 204:
        v(c.xl, c.y0, c.y1);
        v(c.xr, c.y0, c.yu);
        h(c.yu, c.xr, c.x1);
        v(c.xr, c.yd, c.y1);
        h(c.yd, c.xr, c.x1);
        return true;
    case 205:
        h(c.yu, c.x0, c.x1);
        h(c.yd, c.x0, c.x1);
        return true;
    case 206:
        v(c.xl, c.y0, c.yu);
        h(c.yu, c.x0, c.xl);
        v(c.xr, c.y0, c.yu);
        h(c.yu, c.xr, c.x1);
        v(c.xl, c.yd, c.y1);
        h(c.yd, c.x0, c.xl);
        v(c.xr, c.yd, c.y1);
        h(c.yd, c.xr, c.x1);
        return true;
    default:
        return false;
    }
}

QChar letter(int code) {
    switch (code) {
    case 4:
        return QChar(0x25C6);
    case 9:
        return QChar(0x25FE);
    case 16:
        return QChar(0x25B6);
    case 17:
        return QChar(0x25C2);
    case 24:
        return QChar(0x2191);
    case 25:
        return QChar(0x2193);
    case 26:
        return QChar(0x2192);
    case 27:
        return QChar(0x2190);
    case 30:
        return QChar(0x25B2);
    case 31:
        return QChar(0x25BC);
    case 127:
        return QChar(0x0394);
    case 227:
        return QChar(0x03C0);
    case 230:
        return QChar(0x00B5);
    case 248:
        return QChar(0x00B0);
    default:
        return QChar(code);
    }
}

void drawCell(QPainter& p, int code, double x, double y, double cw, double ch,
              const QColor& foreground) {
    const double d = cw / 8;
    switch (code) {
    case 0:
    case 32:
        return;
    case 219:
        p.fillRect(QRectF(x, y, cw + d, ch + d), foreground);
        return;
    case 220:
        p.fillRect(QRectF(x, y + ch / 2, cw + d, ch / 2 + d), foreground);
        return;
    case 221:
        p.fillRect(QRectF(x, y, cw / 2 + d, ch + d), foreground);
        return;
    case 222:
        p.fillRect(QRectF(x + cw / 2, y, cw / 2 + d, ch + d), foreground);
        return;
    case 223:
        p.fillRect(QRectF(x, y, cw + d, ch / 2 + d), foreground);
        return;
    default:
        break;
    }
    if (!drawBoxPiece(p, code, Places(x, y, cw, ch, d)))
        p.drawText(QRectF(x, y, cw, ch), Qt::AlignHCenter | Qt::AlignVCenter, letter(code));
}

int at(const std::string& bytes, std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
}

} // namespace

int ReferencePainter::pixelSize(const QString& family, const QSize& size, int columns, int rows) {
    QFont large(family);
    large.setPixelSize(100);
    const QRectF w = QFontMetricsF(large).boundingRect(QStringLiteral("W"));
    const double r = w.height() / w.width();
    const double cw = static_cast<double>(size.width()) / columns;
    const double ch = static_cast<double>(size.height()) / rows;
    return std::max(1, static_cast<int>(r > ch / cw ? 0.9 * ch : 0.9 * r * cw));
}

QImage ReferencePainter::paint(const ReferenceScreen& screen, const QSize& size) {
    return paint(screen, size, pixelSize(screen.family, size, screen.columns, screen.rows));
}

QImage ReferencePainter::paint(const ReferenceScreen& screen, const QSize& size, int letterSize) {
    const QColor foregrounds[] = {screen.textColor, screen.background, screen.highlight,
                                  screen.background};
    const QColor backgrounds[] = {screen.background, screen.textColor, screen.background,
                                  screen.highlight};
    const double cw = static_cast<double>(size.width()) / screen.columns;
    const double ch = static_cast<double>(size.height()) / screen.rows;

    QImage image(size, QImage::Format_RGB32);
    QPainter p(&image);
    QFont font(screen.family);
    font.setPixelSize(letterSize);
    p.setFont(font);
    double y = 0;
    for (int row = 0; row < screen.rows; ++row) {
        double x = 0;
        for (int column = 0; column < screen.columns; ++column) {
            const auto i =
                static_cast<std::size_t>(row) * static_cast<std::size_t>(screen.columns) +
                static_cast<std::size_t>(column);
            const int a = at(screen.attr, i) < 4 ? at(screen.attr, i) : 0;
            p.fillRect(QRectF(x, y, cw + cw / 8, ch + cw / 8), backgrounds[a]);
            p.setPen(foregrounds[a]);
            drawCell(p, at(screen.text, i), x, y, cw, ch, foregrounds[a]);
            x += cw;
        }
        y += ch;
    }
    return image;
}

ReferenceScreen ReferencePainter::randomScreen(unsigned seed, int cells) {
    std::mt19937 random(seed);
    ReferenceScreen screen;
    for (int i = 0; i < cells; ++i) {
        screen.text += static_cast<char>(random() & 0xFF);
        // Now and then one that is no attribute.
        screen.attr += static_cast<char>(random() % 16 == 0 ? random() & 0xFF : random() % 4);
    }
    return screen;
}
