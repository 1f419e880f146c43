#pragma once

#include <QToolButton>

/// A key outside the palette's blocks: it takes its modifiers from the computer keyboard at the
/// moment it is pressed, and brings the family's colours with it.
class KELButton : public QToolButton {
    Q_OBJECT

public:
    explicit KELButton(QWidget* parent = nullptr);

    void setCode(unsigned char code) { m_code = code; }

signals:
    /// Pressed with the left or the right mouse button: the two bytes of the key code.
    void MakeKey(unsigned char group, unsigned char key);

protected:
    void mousePressEvent(QMouseEvent* event) override;

    /// Emits MakeKey() for a press with these modifiers held.
    virtual void press(bool shift, bool meta);

private:
    unsigned char m_code = 0;
};
