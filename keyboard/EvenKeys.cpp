#include "EvenKeys.h"

#include <QEvent>
#include <QGridLayout>
#include <QWidget>

#include <algorithm>

namespace {

/// What one column (or row) must measure so that `size` fits on `span` of them.
int perCell(int size, int span, int spacing) {
    return (size - (span - 1) * spacing + span - 1) / span;
}

} // namespace

EvenKeys::EvenKeys(QGridLayout* grid) : QObject(grid->parentWidget()), m_grid(grid) {
    for (int column = 0; column < grid->columnCount(); ++column) {
        grid->setColumnStretch(column, 1);
    }
    for (int row = 0; row < grid->rowCount(); ++row) {
        grid->setRowStretch(row, 1);
    }
    grid->parentWidget()->installEventFilter(this);
    evenOut();
}

bool EvenKeys::eventFilter(QObject* watched, QEvent* event) {
    // By the time a filter sees the request the layout has already acted on it.
    if (event->type() == QEvent::LayoutRequest) {
        evenOut();
        m_grid->activate();
    }
    return QObject::eventFilter(watched, event);
}

void EvenKeys::evenOut() {
    int width = 0;
    int height = 0;
    for (int i = 0; i < m_grid->count(); ++i) {
        int row = 0;
        int column = 0;
        int rows = 0;
        int columns = 0;
        m_grid->getItemPosition(i, &row, &column, &rows, &columns);
        const QSize size = m_grid->itemAt(i)->minimumSize();
        width = std::max(width, perCell(size.width(), columns, m_grid->horizontalSpacing()));
        height = std::max(height, perCell(size.height(), rows, m_grid->verticalSpacing()));
    }
    // Setting a size asks for the layout anew even where it is the old size: never twice the same.
    for (int column = 0; column < m_grid->columnCount(); ++column) {
        if (m_grid->columnMinimumWidth(column) != width) {
            m_grid->setColumnMinimumWidth(column, width);
        }
    }
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        if (m_grid->rowMinimumHeight(row) != height) {
            m_grid->setRowMinimumHeight(row, height);
        }
    }
}
