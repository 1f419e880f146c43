#pragma once

#include <QColor>
#include <QDialog>

#include <memory>

class LCD7100;
class QAbstractButton;
class Ui_LCDColorPicker;

/// The small modeless dialog in which the operator chooses the three colours of a screen. The
/// screen owns it; colours reach the screen when they are applied, not before.
class LCDColorPicker : public QDialog {
    Q_OBJECT

public:
    /// `screen` gets the colours and is the parent.
    explicit LCDColorPicker(LCD7100* screen);
    ~LCDColorPicker() override;

    /// Loads the samples; applies nothing.
    void setColors(QColor text, QColor background, QColor highlight);

public slots:
    /// Restores the default samples, applies the samples, or closes, by the role of `button`.
    void clicked(QAbstractButton* button);

private:
    LCD7100* m_screen;
    std::unique_ptr<Ui_LCDColorPicker> m_form;
};
