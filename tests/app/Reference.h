#pragma once

#include "InstrumentScreen.h"
#include "LCD7100.h"

#include <QImage>

/// A display that is told directly what an instrument shows; its cursor is left out.
class Reference {
public:
    Reference(const InstrumentScreen& screen, const QSize& size) {
        m_display.resize(size);
        m_display.show();
        if (screen.graphics()) {
            m_display.setTextMode(false);
            m_display.setFullGraphics(screen.graphics()->bytes());
        } else {
            m_display.setTextWait(screen.text());
            m_display.setAttrWait(screen.attributes());
            m_display.redraw(false);
        }
    }
    QImage image() { return m_display.grab().toImage(); }

private:
    LCD7100 m_display;
};
