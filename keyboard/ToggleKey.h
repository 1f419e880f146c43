#pragma once

#include <QToolButton>

/// The palette's Shift or Ctrl: stays down until clicked again, in the colour of selections while
/// it is down, so that the keypad's state is seen at a glance.
class ToggleKey : public QToolButton {
    Q_OBJECT

public:
    explicit ToggleKey(QWidget* parent = nullptr);

protected:
    void initStyleOption(QStyleOptionToolButton* option) const override;
};
