#pragma once

#include <QObject>

class QGridLayout;

/// Keeps all columns of a grid of keys equally wide and all its rows equally high, as wide and as
/// high as the most demanding key needs, also when the font or the style changes. A key over
/// several columns is so many units wide, and the spaces between them.
///
/// Lives as long as the widget that has the layout.
class EvenKeys : public QObject {
    Q_OBJECT

public:
    explicit EvenKeys(QGridLayout* grid);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void evenOut();

    QGridLayout* m_grid;
};
