#include "FlexLabel.h"

QString FlexLabel::label(unsigned char state) const {
    return m_labels.value(state, text());
}
