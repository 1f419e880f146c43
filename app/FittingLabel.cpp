#include "FittingLabel.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

void FittingLabel::setWordings(const QStringList& wordings) {
    if (wordings == m_wordings)
        return;
    m_wordings = wordings;
    setText(wordings.value(0));
    update();
}

QString FittingLabel::shown(int width) const {
    const auto fits = [this, width](const QString& wording) {
        return fontMetrics().horizontalAdvance(wording) <= width;
    };
    const auto found = std::ranges::find_if(m_wordings, fits);
    if (found != m_wordings.end())
        return *found;
    const QString shortest = m_wordings.isEmpty() ? text() : m_wordings.last();
    return fontMetrics().elidedText(shortest, Qt::ElideMiddle, width);
}

QSize FittingLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

void FittingLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect room = contentsRect();
    style()->drawItemText(&painter, room,
                          static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
                          palette(), isEnabled(), shown(room.width()), foregroundRole());
}
