#pragma once

#include "ConnectionWidget.h"
#include "FakeLink.h"
#include "LCD7100.h"

#include <QImage>
#include <QLabel>
#include <QToolButton>

#include <memory>

inline constexpr auto connectIcon = ":/buttons/images/Connect.png";
inline constexpr auto disconnectIcon = ":/buttons/images/Disconnect.png";
inline constexpr auto killIcon = ":/buttons/images/button_cancel.png";

enum class Link { None, Closed, Open };

/// A tile and what a test looks at.
struct Tile {
    Tile() { widget->resize(widget->minimumSize()); }

    FakeLink* give(Link state, const QString& label = {}, const QString& host = {}) {
        if (state == Link::None)
            return nullptr;
        auto* link = new FakeLink;
        widget->connectEther(label, host, link, "192.0.2.1", 0, 7100);
        if (state == Link::Open)
            link->open();
        return link;
    }
    template <typename Widget>
    Widget* find(const char* name) const {
        auto* child = widget->findChild<Widget*>(QLatin1String(name));
        Q_ASSERT(child);
        return child;
    }
    QToolButton* connectButton() const { return find<QToolButton>("connectBtn"); }
    QToolButton* killButton() const { return find<QToolButton>("killBtn"); }
    QLabel* name() const { return find<QLabel>("nameLabel"); }
    LCD7100* display() const { return find<LCD7100>("theDisplay"); }

    std::unique_ptr<ConnectionWidget> widget = std::make_unique<ConnectionWidget>();
};

inline bool shows(const QToolButton* button, const char* icon) {
    const QSize size(24, 24);
    const QImage expected = QIcon(QLatin1String(icon)).pixmap(size).toImage();
    return !expected.isNull() && button->icon().pixmap(size).toImage() == expected;
}

Q_DECLARE_METATYPE(Link)
